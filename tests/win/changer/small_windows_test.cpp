#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/settings.h"
#include "base/window_win.h"
#include "changer/about_window_win.h"
#include "changer/delay_dialog_win.h"
#include "changer/input_box_win.h"
#include "changer/preview_window_win.h"
#include "support/program_dir.h"
#include "support/running_program.h"
#include "support/window_driver.h"
#include "version.h"

namespace tl::wintest {
namespace {

using std::chrono::seconds;

TEST(InputBox, ReturnsTheTypedTextOnOkAndNothingOnCancelOrClose) {
    struct Case {
        const char* typed;
        const char* how;  // "OK", "Cancel" or "close"
        const char* expected;
    };
    for (const Case& c :
         std::vector<Case>{{"25", "OK", "25"}, {"25", "Cancel", ""}, {"25", "close", ""}, {nullptr, "OK", "10"}}) {
        std::string prompt, shownDefault;
        Driver user([&] {
            HWND box = waitForOwnWindow("TessalineInputBox", "Screensaver Timeout");
            if (!box) {
                return;
            }
            prompt = staticTexts(box);
            HWND edit = findChild(box, "Edit");
            shownDefault = windowText(edit);
            if (c.typed) {
                typeText(edit, c.typed);
            }
            if (std::string(c.how) == "close") {
                ::PostMessageA(box, WM_CLOSE, 0, 0);
            } else {
                clickButton(findChild(box, "Button", c.how));
            }
        });
        const std::string answer = showInputBox(
            nullptr, "Please enter the number of minutes you want the screensaver to wait:", "Screensaver Timeout",
            "10");
        EXPECT_EQ(answer, c.expected) << c.how;
        EXPECT_EQ(prompt, "Please enter the number of minutes you want the screensaver to wait:");
        EXPECT_EQ(shownDefault, "10");
    }
}

// What the user saw while driving the delay dialog.
struct DelaySession {
    std::vector<std::string> errors;    // title: text of each message box
    std::vector<std::string> restored;  // the text box after each message box
    bool focusBackInBox = true;
    std::string shownAtStart;
};

// Types each entry into frmDelay and clicks Ok, answering the error boxes, until the dialog closes.
DelaySession driveDelayDialog(Settings& settings,
                              const std::vector<std::string>& entries,
                              bool cancelAtEnd,
                              bool& changed) {
    DelaySession session;
    Driver user([&] {
        HWND dialog = waitForOwnWindow("TessalineDelay", "Delay");
        if (!dialog) {
            return;
        }
        HWND box = findChild(dialog, "Edit");
        session.shownAtStart = windowText(box);
        for (const std::string& entry : entries) {
            typeText(box, entry);
            clickButton(findChild(dialog, "Button", "&Ok"));
            HWND error = nullptr;
            waitFor([&] { return (error = findOwnWindow("#32770", "Error")) != nullptr || !::IsWindow(dialog); });
            if (!error) {
                return;  // accepted: the dialog has gone
            }
            session.errors.push_back(RunningProgram::messageBoxText(error));
            RunningProgram::pressButton(error, IDOK);
            waitFor([&] { return !::IsWindow(error); });
            waitFor([&] { return ::IsWindowEnabled(dialog) != FALSE; });
            session.restored.push_back(windowText(box));
            GUITHREADINFO info{};
            info.cbSize = sizeof info;
            ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
            session.focusBackInBox = session.focusBackInBox && info.hwndFocus == box;
            if (!::IsWindow(dialog)) {
                return;
            }
        }
        if (cancelAtEnd) {
            clickButton(findChild(dialog, "Button", "&Cancel"));
        }
    });
    changed = showDelayDialog(nullptr, settings, '.');
    return session;
}

TEST(DelayDialog, RefusesEntriesOutOfRangeAndKeepsTheOldDelay) {
    Settings settings;
    settings.Delay = 7;
    bool changed = true;
    const DelaySession s = driveDelayDialog(settings, {"0", "-5", "32001", "abc"}, true, changed);
    EXPECT_EQ(s.shownAtStart, "7");
    const std::string message = "Please enter a number above zero, and under 32,000";
    EXPECT_EQ(s.errors, std::vector<std::string>(4, message));
    EXPECT_EQ(s.restored, std::vector<std::string>(4, "7"));
    EXPECT_TRUE(s.focusBackInBox) << "the text box must have the focus again after the message";
    EXPECT_FALSE(changed);
    EXPECT_EQ(settings.Delay, 7);
}

TEST(DelayDialog, AcceptsTheEdgesOfTheRange) {
    for (const char* entry : {"32000", "1"}) {
        Settings settings;
        settings.Delay = 7;
        bool changed = false;
        const DelaySession s = driveDelayDialog(settings, {entry}, false, changed);
        EXPECT_TRUE(s.errors.empty()) << entry;
        EXPECT_TRUE(changed) << entry;
        EXPECT_EQ(settings.Delay, std::stoi(entry));
    }
}

// The exe's own version record, read here independently of the program.
std::string ownVersionString(const char* name) {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    DWORD ignored = 0;
    std::vector<char> record(::GetFileVersionInfoSizeA(path, &ignored));
    ::GetFileVersionInfoA(path, 0, static_cast<DWORD>(record.size()), record.data());
    char* text = nullptr;
    UINT size = 0;
    ::VerQueryValueA(record.data(), (std::string("\\StringFileInfo\\040904b0\\") + name).c_str(),
                     reinterpret_cast<void**>(&text), &size);
    return text ? text : "";
}

TEST(AboutWindow, ShowsTheVersionRecordAndTheWebPageAndClosesOnItsButton) {
    showAbout(nullptr);
    HWND about = waitForOwnWindow("TessalineAbout", "About", seconds(5));
    ASSERT_NE(about, nullptr);
    showAbout(nullptr);  // a second call brings the same window forward
    waitFor([] { return false; }, std::chrono::milliseconds(100));
    EXPECT_EQ(findOwnWindow("TessalineAbout", "About"), about);

    const std::string texts = staticTexts(about);
    const std::string expected = std::string("Version:\n") + TL_VERSION_TEXT + "\n" +
                                 ownVersionString("LegalTrademarks") + "\n" + ownVersionString("LegalCopyright") +
                                 "\nThis program is freeware. It can be distributed as per the requirements in the "
                                 "license.\nFor more information about this and other programs, check out the below "
                                 "URL. I hope you enjoy this program!\n" +
                                 TL_WEB_PAGE;
    EXPECT_EQ(texts, expected);
    EXPECT_FALSE(ownVersionString("LegalTrademarks").empty());

    HWND button = findChild(about, "Button", "&Love your work, baby");
    ASSERT_NE(button, nullptr);
    clickButton(button);
    EXPECT_TRUE(waitFor([&] { return !::IsWindow(about); }, seconds(5))) << "the button did not close the window";
}

// The colour of a pixel of a window's inner area, as the screen shows it.
COLORREF pixelAt(HWND window, int x, int y) {
    ::UpdateWindow(window);
    HDC dc = ::GetDC(window);
    const COLORREF colour = ::GetPixel(dc, x, y);
    ::ReleaseDC(window, dc);
    return colour;
}

SIZE innerSize(HWND window) {
    RECT r{};
    ::GetClientRect(window, &r);
    return {r.right, r.bottom};
}

void clickAt(HWND window, int x, int y) {
    ::PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    waitFor([] { return false; }, std::chrono::milliseconds(150));
}

TEST(PreviewWindow, ModesCycleOnClicksAndTheNextOpeningStartsNaturalAtTheLastPlace) {
    ProgramDir dir(false);
    const std::string picture = dir.file("red.bmp");
    // Red squares of 16 pixels alternate with light grey ones; the pixels looked at below lie in red squares.
    writePicture(picture, "bmp", 200, 100, 0xFF0000);
    Settings settings;
    settings.PreviewLeft = 1500;  // twips: 100 pixels at 96 DPI
    settings.PreviewTop = 750;
    settings.PreviewMode = 0;

    showPreview(picture, settings);
    HWND preview = previewWindow();
    ASSERT_NE(preview, nullptr);
    ASSERT_TRUE(waitFor([&] { return ::IsWindowVisible(preview) != FALSE; }));
    const int dpi = dpiOf(nullptr);
    RECT outer{};
    ::GetWindowRect(preview, &outer);
    EXPECT_EQ(outer.left, MulDiv(1500, dpi, 1440));
    EXPECT_EQ(outer.top, MulDiv(750, dpi, 1440));
    EXPECT_EQ(innerSize(preview).cx, 200) << "mode 0 fits the window around the picture";
    EXPECT_EQ(innerSize(preview).cy, 100);
    EXPECT_EQ(pixelAt(preview, 199, 99), RGB(255, 0, 0));
    HWND loading = findChild(preview, "Static", "LOADING...");
    ASSERT_NE(loading, nullptr);
    EXPECT_FALSE(::IsWindowVisible(loading));

    clickAt(preview, 50, 50);
    EXPECT_EQ(settings.PreviewMode, 1);
    ::SetWindowPos(preview, nullptr, 0, 0, outer.right - outer.left + 100, outer.bottom - outer.top + 60,
                   SWP_NOMOVE | SWP_NOZORDER);
    waitFor([] { return false; }, std::chrono::milliseconds(150));
    // The square around (184, 88) of the picture, stretched 1.5 wide and 1.6 high.
    EXPECT_EQ(pixelAt(preview, 276, 141), RGB(255, 0, 0)) << "mode 1 stretches the picture over the window";

    clickAt(preview, 150, 80);
    EXPECT_EQ(settings.PreviewMode, 2);
    // Centred at (50, 30): the picture's (72, 40) lies at (122, 70).
    EXPECT_EQ(pixelAt(preview, 122, 70), RGB(255, 0, 0)) << "mode 2 centres the picture";
    EXPECT_NE(pixelAt(preview, 5, 5), RGB(255, 0, 0)) << "mode 2 leaves the picture its size, centred";
    clickAt(preview, 5, 5);  // beside the picture: no click on it
    EXPECT_EQ(settings.PreviewMode, 2);

    ::SetWindowPos(preview, nullptr, 30, 45, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    ::SendMessageA(preview, WM_CLOSE, 0, 0);
    EXPECT_EQ(previewWindow(), nullptr);
    EXPECT_EQ(settings.PreviewMode, 0) << "the mode chosen by clicking is not kept";
    EXPECT_EQ(settings.PreviewLeft, MulDiv(30, 1440, dpi));
    EXPECT_EQ(settings.PreviewTop, MulDiv(45, 1440, dpi));

    showPreview(picture, settings);
    preview = previewWindow();
    ASSERT_NE(preview, nullptr);
    ::GetWindowRect(preview, &outer);
    EXPECT_EQ(outer.left, 30);
    EXPECT_EQ(outer.top, 45);
    EXPECT_EQ(innerSize(preview).cx, 200);
    ::SendMessageA(preview, WM_CLOSE, 0, 0);
}

}  // namespace
}  // namespace tl::wintest
