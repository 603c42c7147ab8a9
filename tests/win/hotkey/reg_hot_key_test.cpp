// cRegHotKey on the system's RegisterHotKey, global atoms and a real window's messages.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/object_error.h"
#include "base/unique_handle_win.h"
#include "hotkey/reg_hot_key_win.h"
#include "support/driver.h"

namespace tl::wintest {
namespace {

// A top-level window of the test's own that notes the WM_HOTKEY its own procedure receives.
class NotingWindow {
  public:
    explicit NotingWindow(std::vector<std::string>& log) {
        WNDCLASSA wc{};
        wc.lpfnWndProc = &NotingWindow::proc;
        wc.hInstance = ::GetModuleHandleA(nullptr);
        wc.lpszClassName = "TessalineHotKeyTestWindow";
        ::RegisterClassA(&wc);
        window_.reset(::CreateWindowExA(0, wc.lpszClassName, "hot key test", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100,
                                        nullptr, nullptr, wc.hInstance, nullptr));
        ::SetWindowLongPtrA(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&log));
    }
    HotKeyWindow get() const { return toHotKeyWindow(window_.get()); }
    HWND hwnd() const { return window_.get(); }

  private:
    static LRESULT CALLBACK proc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
        auto* log = reinterpret_cast<std::vector<std::string>*>(::GetWindowLongPtrA(hwnd, GWLP_USERDATA));
        if (msg == WM_HOTKEY && log) {
            log->push_back("window " + std::to_string(static_cast<int>(wParam)));
        }
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    unique_hwnd window_;
};

class RegHotKey : public ::testing::Test {
  protected:
    RegHotKey() {
        hk.HotKeyPress = [this](const std::string& name, uint32_t modifiers, uint32_t key) {
            log.push_back("event " + name + " " + std::to_string(modifiers) + " " + std::to_string(key));
        };
        hk.Attach(window.get());
    }

    std::vector<std::string> log;
    NotingWindow window{log};
    cRegHotKey hk{win32HotKeyPlatform()};
};

TEST_F(RegHotKey, AKeyPressReachesTheEventBeforeTheWindowsOwnProcedure) {
    hk.RegisterKey("switch", VK_F9, MOD_CONTROL | MOD_ALT);
    ASSERT_TRUE(pressKeys({VK_CONTROL, VK_MENU}, VK_F9));
    ASSERT_TRUE(waitFor([&] { return log.size() >= 2; }, seconds(5))) << "the hot key press did not arrive";
    EXPECT_EQ(log, (std::vector<std::string>{"event switch 3 " + std::to_string(VK_F9),
                                             "window " + std::to_string(hk.record(1).atom)}));
}

TEST_F(RegHotKey, ACombinationHeldByAnotherRegistrarIsRefusedUntilCleared) {
    hk.RegisterKey("switch", VK_F10, MOD_CONTROL | MOD_ALT);
    const std::string atomName = hk.record(1).atomName;
    EXPECT_NE(::GlobalFindAtomA(atomName.c_str()), 0) << "the key's atom exists while it is registered";

    std::vector<std::string> otherLog;
    NotingWindow otherWindow(otherLog);
    cRegHotKey other(win32HotKeyPlatform());
    other.Attach(otherWindow.get());
    try {
        other.RegisterKey("switch", VK_F10, MOD_CONTROL | MOD_ALT);
        ADD_FAILURE() << "a combination already held was registered twice";
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
    // A cleared registrar no longer hears its window: the window's procedure alone does.
    ::PostMessageA(window.hwnd(), WM_HOTKEY, 0x77, 0);
    log.clear();
    EXPECT_TRUE(waitFor([&] { return !log.empty(); }, seconds(5)));
    EXPECT_EQ(log, std::vector<std::string>{"window 119"});
}

}  // namespace
}  // namespace tl::wintest
