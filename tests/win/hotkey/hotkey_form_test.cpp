#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "app/program_win.h"
#include "app/settings.h"
#include "base/window_win.h"
#include "hotkey/hot_key_input.h"
#include "hotkey/hotkey_form_win.h"
#include "support/program_dir.h"
#include "support/window_driver.h"

namespace tl::wintest {
namespace {

// The hot key dialog opened on this thread, as the main window does, while a second thread plays the
// user: it finds the dialog, types into it and presses a button. Its failures are kept for the test.
class HotkeyDialogTest : public ::testing::Test {
  protected:
    HotkeyDialogTest() : dir(false) {
        Program& p = program();
        p.app.programDir = dir.path();
        loadSettings(p.app, p.settingsFile(), p.fs, p.ui, '.');  // a first run: every default
        original = dir.read("setup.pref");
    }

    struct Dialog {
        HWND form = nullptr;
        HWND field = nullptr;
        HWND ok = nullptr;
        HWND cancel = nullptr;
        HWND label = nullptr;
    };

    // Opens the dialog; user(dialog) runs on the second thread once the dialog shows.
    bool runDialog(const std::function<void(const Dialog&)>& user) {
        std::thread player([&] {
            Dialog d;
            if (!waitFor([&] {
                    d.form = ::FindWindowA("TessalineHotkey", "Hot key");
                    return d.form && ::IsWindowVisible(d.form);
                })) {
                problem("the dialog did not show");
                return;
            }
            d.ok = ::FindWindowExA(d.form, nullptr, "Button", "&Ok");
            d.cancel = ::FindWindowExA(d.form, nullptr, "Button", "&Cancel");
            d.label = ::FindWindowExA(d.form, nullptr, "Static", nullptr);
            if (HWND control = ::FindWindowExA(d.form, nullptr, "TessalineHotKey", nullptr)) {
                d.field = ::FindWindowExA(control, nullptr, HOTKEY_CLASSA, nullptr);
            }
            if (!d.ok || !d.cancel || !d.field || !d.label) {
                problem("a control of the dialog is missing");
                ::PostMessageA(d.form, WM_CLOSE, 0, 0);
                return;
            }
            user(d);
            if (!waitFor([&] { return !::IsWindow(d.form); }, std::chrono::seconds(5))) {
                problem("the dialog stayed open");
                ::PostMessageA(d.form, WM_CLOSE, 0, 0);
            }
        });
        const bool stored = showHotkeyDialog(nullptr);
        player.join();
        return stored;
    }

    void problem(const std::string& text) {
        std::lock_guard<std::mutex> lock(mutex);
        problems.push_back(text);
    }

    // Types the combination into the field once it has the focus, and waits until it shows the word.
    void type(const Dialog& d, std::initializer_list<WORD> modifiers, WORD key, LRESULT expectedWord) {
        if (!waitFor([&] {
                GUITHREADINFO info{};
                info.cbSize = sizeof info;
                return ::GetGUIThreadInfo(::GetWindowThreadProcessId(d.form, nullptr), &info) &&
                       info.hwndFocus == d.field;
            })) {
            problem("the field never had the focus");
        }
        if (!pressKeys(modifiers, key)) {
            problem("SendInput refused the keys");
        }
        if (!waitFor([&] { return ::SendMessageA(d.field, HKM_GETHOTKEY, 0, 0) == expectedWord; },
                     std::chrono::seconds(5))) {
            problem("the field shows " + std::to_string(::SendMessageA(d.field, HKM_GETHOTKEY, 0, 0)) +
                    " after typing, not " + std::to_string(expectedWord));
        }
    }

    ProgramDir dir;
    std::string original;
    std::mutex mutex;
    std::vector<std::string> problems;
};

std::vector<std::string> settingLines(const std::vector<std::string>& lines) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.rfind("HotKey", 0) == 0) {
            found.push_back(line);
        }
    }
    return found;
}

TEST_F(HotkeyDialogTest, OkStoresTheTypedCombinationWithTheFieldsModifierBits) {
    std::string label;
    LRESULT shownAtLoad = 0;
    const bool stored = runDialog([&](const Dialog& d) {
        label = windowText(d.label);
        shownAtLoad = ::SendMessageA(d.field, HKM_GETHOTKEY, 0, 0);
        // Ctrl+Alt+F7: the field's flags are 2 Control | 4 Alt.
        type(d, {VK_CONTROL, VK_MENU}, VK_F7, MAKEWORD(VK_F7, HOTKEYF_CONTROL | HOTKEYF_ALT));
        clickButton(d.ok);
    });
    EXPECT_TRUE(problems.empty()) << problems.front();
    EXPECT_EQ(label, "Press the key combination you want to trigger a change in the wallpaper");
    EXPECT_EQ(shownAtLoad, 0x0353) << "the field shows HotKey 83 with HotKeyMod 3 as its own flags";
    EXPECT_TRUE(stored);
    // RegisterHotKey's flags for Ctrl+Alt would be 3; the field's 6 is stored as it is.
    const std::vector<std::string> expected = {"HotKey=118", "HotKeyMod=6"};
    EXPECT_EQ(settingLines(dir.lines("setup.pref")), expected);
    EXPECT_EQ(program().app.settings.HotKey, 118);
    EXPECT_EQ(program().app.settings.HotKeyMod, 6);
}

TEST_F(HotkeyDialogTest, CancelChangesNothing) {
    const bool stored = runDialog([&](const Dialog& d) {
        type(d, {VK_SHIFT}, VK_F8, MAKEWORD(VK_F8, HOTKEYF_SHIFT));
        clickButton(d.cancel);
    });
    EXPECT_TRUE(problems.empty()) << problems.front();
    EXPECT_FALSE(stored);
    EXPECT_EQ(dir.read("setup.pref"), original);
    EXPECT_EQ(program().app.settings.HotKey, 83);
    EXPECT_EQ(program().app.settings.HotKeyMod, 3);
}

TEST_F(HotkeyDialogTest, EscapeClosesLikeCancel) {
    const bool stored = runDialog([&](const Dialog& d) {
        type(d, {VK_SHIFT}, VK_F8, MAKEWORD(VK_F8, HOTKEYF_SHIFT));
        pressKeys({}, VK_ESCAPE);
    });
    EXPECT_TRUE(problems.empty()) << problems.front();
    EXPECT_FALSE(stored);
    EXPECT_EQ(dir.read("setup.pref"), original);
}

TEST_F(HotkeyDialogTest, TextsAreInTahomaAndEveryControlFitsTheForm) {
    std::vector<std::string> faces;
    bool fits = true;
    runDialog([&](const Dialog& d) {
        RECT client{};
        ::GetClientRect(d.form, &client);
        for (HWND h : {d.label, d.field, d.ok, d.cancel}) {
            LOGFONTA lf{};
            ::GetObjectA(reinterpret_cast<HFONT>(::SendMessageA(h, WM_GETFONT, 0, 0)), sizeof lf, &lf);
            faces.push_back(lf.lfFaceName);
            RECT r{};
            ::GetWindowRect(h, &r);
            ::MapWindowPoints(nullptr, d.form, reinterpret_cast<POINT*>(&r), 2);
            fits = fits && r.left >= 0 && r.top >= 0 && r.right <= client.right && r.bottom <= client.bottom;
        }
        ::PostMessageA(d.form, WM_CLOSE, 0, 0);
    });
    EXPECT_TRUE(problems.empty()) << problems.front();
    EXPECT_EQ(faces, std::vector<std::string>(4, "Tahoma"));
    EXPECT_TRUE(fits);
}

}  // namespace
}  // namespace tl::wintest
