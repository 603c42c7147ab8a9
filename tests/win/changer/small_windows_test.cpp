// The changer's small windows on this process's thread: the input box, and the preview's drawing and
// place on the screen.
#include <gtest/gtest.h>

#include <string>

#include "app/settings.h"
#include "base/window_win.h"
#include "changer/input_box_win.h"
#include "changer/preview_window_win.h"
#include "support/driver.h"

namespace tl::wintest {
namespace {

TEST(InputBox, ReturnsTheTypedTextOnOkAndNothingOnCancelOrClose) {
    struct Case {
        const char* typed;
        const char* how;  // a button's caption, or null for the close box
        const char* expected;
    };
    const Case cases[] = {{"25", "OK", "25"}, {"25", "Cancel", ""}, {"25", nullptr, ""}, {nullptr, "OK", "10"}};
    for (const Case& c : cases) {
        std::string prompt, shownDefault;
        Driver user([&] {
            HWND box = waitForOwnWindow("TessalineInputBox", "Screensaver Timeout");
            if (!box) {
                return;
            }
            prompt = staticTexts(box);
            shownDefault = windowText(findChild(box, "Edit"));
            if (c.typed) {
                typeText(findChild(box, "Edit"), c.typed);
            }
            if (c.how) {
                clickButton(findChild(box, "Button", c.how));
            } else {
                ::PostMessageA(box, WM_CLOSE, 0, 0);
            }
        });
        const std::string answer = showInputBox(nullptr, "How many minutes?", "Screensaver Timeout", "10");
        EXPECT_EQ(answer, c.expected) << (c.how ? c.how : "close box");
        EXPECT_EQ(prompt, "How many minutes?");
        EXPECT_EQ(shownDefault, "10");
    }
}

// The colour of a pixel of a window's inner area, as the screen shows it.
COLORREF pixelAt(HWND window, int x, int y) {
    ::UpdateWindow(window);
    unique_window_dc dc(window);
    return ::GetPixel(dc.get(), x, y);
}

SIZE innerSize(HWND window) {
    RECT r{};
    ::GetClientRect(window, &r);
    return {r.right, r.bottom};
}

void clickInside(HWND window, int x, int y) {
    ::PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    pause(milliseconds(150));
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
    EXPECT_FALSE(::IsWindowVisible(findChild(preview, "Static", "LOADING...")));

    clickInside(preview, 50, 50);
    EXPECT_EQ(settings.PreviewMode, 1);
    ::SetWindowPos(preview, nullptr, 0, 0, outer.right - outer.left + 100, outer.bottom - outer.top + 60,
                   SWP_NOMOVE | SWP_NOZORDER);
    pause(milliseconds(150));
    // The square around (184, 88) of the picture, stretched 1.5 wide and 1.6 high.
    EXPECT_EQ(pixelAt(preview, 276, 141), RGB(255, 0, 0)) << "mode 1 stretches the picture over the window";

    clickInside(preview, 150, 80);
    EXPECT_EQ(settings.PreviewMode, 2);
    // Centred at (50, 30): the picture's (72, 40) lies at (122, 70).
    EXPECT_EQ(pixelAt(preview, 122, 70), RGB(255, 0, 0)) << "mode 2 centres the picture";
    EXPECT_NE(pixelAt(preview, 5, 5), RGB(255, 0, 0)) << "mode 2 leaves the picture its size, centred";
    clickInside(preview, 5, 5);  // beside the picture: no click on it
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
