#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "base/unique_handle_win.h"

namespace tl {

// Names of classes, captions and texts are UTF-8 here; the windows are W windows throughout.
//
// The small window base every window of the program derives from. The static procedure attaches the
// object at WM_NCCREATE (from lpCreateParams), forwards every message to onMessage, and detaches at
// WM_NCDESTROY. Exceptions never leave the procedure.
class Window {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    HWND hwnd() const { return hwnd_; }
    bool isCreated() const { return hwnd_ != nullptr; }

    // Registers a window class whose procedure is the base's (once per class name).
    static void registerClass(const char* className, HICON icon = nullptr, HICON smallIcon = nullptr,
                              UINT style = CS_DBLCLKS, HBRUSH background = nullptr);

protected:
    HWND create(const char* className, const char* title, DWORD style, DWORD exStyle, int x, int y, int width,
                int height, HWND parent = nullptr, HMENU menu = nullptr);

    // One named handler per message in the derived class; unhandled ones go to defaultProc.
    virtual LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam);
    LRESULT defaultProc(UINT msg, WPARAM wParam, LPARAM lParam);

    // Called after WM_NCDESTROY, when hwnd() has become null.
    virtual void onDestroyed() {}

private:
    static LRESULT CALLBACK windowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    HWND hwnd_ = nullptr;
};

// Pixels for the window's DPI: sizes are designed at 96 DPI and scaled with MulDiv.
int dpiOf(HWND hwnd);
inline int scaleForDpi(int pixels96, int dpi) {
    return MulDiv(pixels96, dpi, 96);
}

// The user's message font (the system's dialog text font) at the given DPI.
unique_hfont createMessageFont(int dpi);
// A named font at a point size, for the windows whose texts are in a fixed face such as Tahoma.
unique_hfont createPointFont(const char* face, int pointSize, int dpi, bool bold = false);
// Sets a font on a window and all its children.
void setFontOnChildren(HWND parent, HFONT font);

// Creates a child control with the given class, text and id, positioned in 96-DPI units.
HWND createControl(HWND parent, const char* className, const char* text, DWORD style, int x, int y, int width,
                   int height, int id, DWORD exStyle = 0);

// Adds a tool tip text to a control (one shared tool tip window per top-level window).
void addToolTip(HWND toolTips, HWND control, const char* text);
HWND createToolTips(HWND owner);

// A window's text, and setting it (UTF-8 both ways).
std::string windowText(HWND hwnd);
void setWindowText(HWND hwnd, std::string_view text);
// An item of a list box (or combo box) and adding one at the end (or sorted in, by the box's style).
std::string listItemText(HWND box, int index, bool comboBox = false);
int addListItem(HWND box, std::string_view text, bool comboBox = false);

// The message loop of the program: dispatches until WM_QUIT, giving dialogs-like windows their
// keyboard navigation. Returns the WM_QUIT code.
int runMessageLoop();

// Runs a window modally: disables owner, pumps messages until the window is destroyed (or until
// WM_QUIT, which is re-posted), then re-enables and re-activates owner.
void runModal(HWND window, HWND owner);

}  // namespace tl
