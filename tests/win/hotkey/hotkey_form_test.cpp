// frmHotkey on this process's thread, with the real msctls_hotkey32 field typed into from the keyboard.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "app/program_win.h"
#include "app/settings.h"
#include "base/window_win.h"
#include "hotkey/hotkey_form_win.h"
#include "support/driver.h"

namespace tl::wintest {
namespace {

class HotkeyDialog : public ::testing::Test {
  protected:
    HotkeyDialog() {
        Program& p = program();
        p.app.programDir = dir.path();
        loadSettings(p.app, p.settingsFile(), p.fs, p.ui, '.');  // a first run: every default
        original = dir.read("setup.pref");
    }

    // Opens the dialog; user(dialog, field) plays the user on a second thread once it shows. Whether Ok
    // stored the key.
    bool run(const std::function<void(HWND, HWND)>& user) {
        Driver player([&] {
            HWND dialog = waitForOwnWindow("TessalineHotkey", "Hot key");
            HWND field = findChild(dialog, HOTKEY_CLASSA);
            if (dialog && field) {
                user(dialog, field);
            }
            if (!waitFor([&] { return !::IsWindow(dialog); }, seconds(5))) {
                ::PostMessageA(dialog, WM_CLOSE, 0, 0);
            }
        });
        return showHotkeyDialog(nullptr);
    }

    // Types the combination once the field has the focus; what the field then shows.
    static LRESULT type(HWND dialog, HWND field, std::initializer_list<WORD> modifiers, WORD key) {
        waitFor([&] {
            GUITHREADINFO info{};
            info.cbSize = sizeof info;
            return ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info) && info.hwndFocus == field;
        });
        const LRESULT before = ::SendMessageA(field, HKM_GETHOTKEY, 0, 0);
        pressKeys(modifiers, key);
        waitFor([&] { return ::SendMessageA(field, HKM_GETHOTKEY, 0, 0) != before; }, seconds(5));
        return ::SendMessageA(field, HKM_GETHOTKEY, 0, 0);
    }

    ProgramDir dir{false};
    std::string original;
};

std::string hotKeyLines(const std::vector<std::string>& lines) {
    std::string found;
    for (const std::string& line : lines) {
        found += line.rfind("HotKey", 0) == 0 ? line + ";" : "";
    }
    return found;
}

TEST_F(HotkeyDialog, OkStoresTheTypedCombinationWithTheFieldsOwnModifierBits) {
    std::string label;
    LRESULT shownAtLoad = 0;
    LRESULT typed = 0;
    const bool stored = run([&](HWND dialog, HWND field) {
        label = windowText(findChild(dialog, "Static"));
        shownAtLoad = ::SendMessageA(field, HKM_GETHOTKEY, 0, 0);
        typed = type(dialog, field, {VK_CONTROL, VK_MENU}, VK_F7);
        clickButton(findChild(dialog, "Button", "&Ok"));
    });
    EXPECT_EQ(label, "Press the key combination you want to trigger a change in the wallpaper");
    EXPECT_EQ(shownAtLoad, 0x0353) << "the field shows HotKey 83 with HotKeyMod 3 as its own flags";
    EXPECT_EQ(typed, MAKEWORD(VK_F7, HOTKEYF_CONTROL | HOTKEYF_ALT));
    EXPECT_TRUE(stored);
    // RegisterHotKey's flags for Ctrl+Alt would be 3; the field's 6 is stored as it is.
    EXPECT_EQ(hotKeyLines(dir.lines("setup.pref")), "HotKey=118;HotKeyMod=6;");
    EXPECT_EQ(program().app.settings.HotKeyMod, 6);
}

TEST_F(HotkeyDialog, CancelAndEscapeChangeNothing) {
    for (bool escape : {false, true}) {
        LRESULT typed = 0;
        const bool stored = run([&](HWND dialog, HWND field) {
            typed = type(dialog, field, {VK_SHIFT}, VK_F8);
            if (escape) {
                pressKeys({}, VK_ESCAPE);
            } else {
                clickButton(findChild(dialog, "Button", "&Cancel"));
            }
        });
        EXPECT_EQ(typed, MAKEWORD(VK_F8, HOTKEYF_SHIFT)) << escape;
        EXPECT_FALSE(stored) << escape;
        EXPECT_EQ(dir.read("setup.pref"), original) << escape;
        EXPECT_EQ(program().app.settings.HotKey, 83) << escape;
    }
}

}  // namespace
}  // namespace tl::wintest
