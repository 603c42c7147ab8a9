#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/settings.h"
#include "base/object_error.h"
#include "base/unique_handle_win.h"
#include "hotkey/hot_key_input.h"
#include "hotkey/reg_hot_key_win.h"

namespace tl::wintest {
namespace {

// A top-level window of the test's own that notes the WM_HOTKEY its own procedure receives.
class NotingWindow {
  public:
    explicit NotingWindow(std::vector<std::string>& log) {
        static const char* kClass = "TessalineHotKeyTestWindow";
        WNDCLASSA wc{};
        wc.lpfnWndProc = &NotingWindow::proc;
        wc.hInstance = ::GetModuleHandleA(nullptr);
        wc.lpszClassName = kClass;
        ::RegisterClassA(&wc);
        window_.reset(::CreateWindowExA(0, kClass, "hot key test", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100, nullptr,
                                        nullptr, wc.hInstance, nullptr));
        ::SetWindowLongPtrA(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&log));
    }
    HWND get() const { return window_.get(); }

  private:
    static LRESULT CALLBACK proc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
        if (msg == WM_HOTKEY) {
            if (auto* log = reinterpret_cast<std::vector<std::string>*>(::GetWindowLongPtrA(hwnd, GWLP_USERDATA))) {
                log->push_back("window " + std::to_string(static_cast<int>(wParam)));
            }
        }
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    unique_hwnd window_;
};

class RegHotKeyWin : public ::testing::Test {
  protected:
    RegHotKeyWin() {
        hk.HotKeyPress = [this](const std::string& name, uint32_t modifiers, uint32_t key) {
            log.push_back("event " + name + " " + std::to_string(modifiers) + " " + std::to_string(key));
        };
    }

    std::vector<std::string> log;
    NotingWindow window{log};
    cRegHotKey hk{win32HotKeyPlatform()};
};

TEST_F(RegHotKeyWin, KeyPressReachesTheEventBeforeTheWindowsOwnProcedure) {
    ASSERT_NE(window.get(), nullptr);
    hk.Attach(toHotKeyWindow(window.get()));
    hk.RegisterKey("switch", VK_F9, MOD_CONTROL | MOD_ALT);
    const int atom = hk.record(1).atom;

    ASSERT_TRUE(pressKeys({VK_CONTROL, VK_MENU}, VK_F9));
    ASSERT_TRUE(pumpUntil([&] { return log.size() >= 2; })) << "the hot key press did not arrive";
    const std::vector<std::string> expected = {"event switch 3 " + std::to_string(VK_F9),
                                               "window " + std::to_string(atom)};
    EXPECT_EQ(log, expected);
}

TEST_F(RegHotKeyWin, CombinationHeldByAnotherRegistrarIsRefusedUntilCleared) {
    hk.Attach(toHotKeyWindow(window.get()));
    hk.RegisterKey("switch", VK_F10, MOD_CONTROL | MOD_ALT);
    const std::string atomName = hk.record(1).atomName;
    EXPECT_NE(::GlobalFindAtomA(atomName.c_str()), 0) << "the key's atom exists while it is registered";

    std::vector<std::string> otherLog;
    NotingWindow otherWindow(otherLog);
    cRegHotKey other(win32HotKeyPlatform());
    other.Attach(toHotKeyWindow(otherWindow.get()));
    try {
        other.RegisterKey("switch", VK_F10, MOD_CONTROL | MOD_ALT);
        FAIL() << "a combination already held was registered twice";
    } catch (const ObjectError& e) {
        EXPECT_EQ(e.code(), 1051);
        EXPECT_EQ(e.number(), 0x8004041Bu);
        EXPECT_EQ(e.source(), "win_tests.cRegHotKey");
        EXPECT_EQ(e.description().rfind("Failed to Register Hot Key", 0), 0u) << e.description();
    }
    EXPECT_EQ(other.count(), 0);

    hk.Clear();
    EXPECT_EQ(::GlobalFindAtomA(atomName.c_str()), 0) << "clearing deletes the atom";
    EXPECT_NO_THROW(other.RegisterKey("switch", VK_F10, MOD_CONTROL | MOD_ALT));
}

TEST_F(RegHotKeyWin, SystemAndUnknownIdentifiersAreNamedAsSuch) {
    hk.Attach(toHotKeyWindow(window.get()));
    ::PostMessageA(window.get(), WM_HOTKEY, static_cast<WPARAM>(IDHOT_SNAPDESKTOP), 0);
    ::PostMessageA(window.get(), WM_HOTKEY, static_cast<WPARAM>(IDHOT_SNAPWINDOW), 0);
    ::PostMessageA(window.get(), WM_HOTKEY, 0x77, MAKELPARAM(MOD_SHIFT, VK_F11));
    ASSERT_TRUE(pumpUntil([&] { return log.size() >= 6; }));
    EXPECT_EQ(log[0], "event Desktop Snapshot 0 44");
    EXPECT_EQ(log[2], "event Window Snapshot 4 44");
    EXPECT_EQ(log[4], "event Unknown HotKey 4 " + std::to_string(VK_F11));
}

TEST_F(RegHotKeyWin, ClearedRegistrarNoLongerHearsTheWindow) {
    hk.Attach(toHotKeyWindow(window.get()));
    hk.Clear();
    ::PostMessageA(window.get(), WM_HOTKEY, 0x77, 0);
    ASSERT_TRUE(pumpUntil([&] { return !log.empty(); }));
    EXPECT_EQ(log, std::vector<std::string>{"window 119"});
}

TEST_F(RegHotKeyWin, RestoreAndActivateBringsBackAHiddenMinimisedWindow) {
    ::ShowWindow(window.get(), SW_MINIMIZE);
    ::ShowWindow(window.get(), SW_HIDE);
    hk.RestoreAndActivate(toHotKeyWindow(window.get()));
    pumpUntil([&] { return !::IsIconic(window.get()); }, std::chrono::seconds(2));
    EXPECT_TRUE(::IsWindowVisible(window.get()));
    EXPECT_FALSE(::IsIconic(window.get()));
}

TEST(SwitchHotKeyWin, SettingsKeyPressCallsBackAndRemovalFreesTheCombination) {
    std::vector<std::string> log;
    NotingWindow window(log);
    Settings settings;
    settings.HotKey = VK_F12;
    settings.HotKeyMod = MOD_CONTROL | MOD_SHIFT;
    int switches = 0;
    Win32SwitchHotKey hotKey;
    hotKey.registerFromSettings(window.get(), settings, [&] { ++switches; });
    ASSERT_TRUE(hotKey.isRegistered());

    ASSERT_TRUE(pressKeys({VK_CONTROL, VK_SHIFT}, VK_F12));
    ASSERT_TRUE(pumpUntil([&] { return switches == 1; })) << "the press did not switch";

    hotKey.remove();
    EXPECT_TRUE(::RegisterHotKey(window.get(), 1, MOD_CONTROL | MOD_SHIFT, VK_F12))
        << "the combination is still held after removal";
    ::UnregisterHotKey(window.get(), 1);
}

}  // namespace
}  // namespace tl::wintest
