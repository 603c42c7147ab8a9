#pragma once

#include <windows.h>

#include "base/unique_handle_win.h"
#include "base/window_win.h"

namespace tl {

// The frame of the program's small fixed-size windows (input box, delay, about): a caption with a close
// box, a client area laid out in 96-DPI units, centred over the owner's monitor, Enter and Esc through
// IsDialogMessage (IDOK and IDCANCEL), and the close box treated as Cancel.
class SmallDialog : public Window {
  protected:
    // Creates the window hidden; false when it could not be made.
    bool createDialog(const char* className, const char* caption, int clientWidth96, int clientHeight96, HWND owner);
    HWND addControl(const char* className,
                    const char* text,
                    DWORD style,
                    int x,
                    int y,
                    int width,
                    int height,
                    int id,
                    DWORD exStyle = 0);
    // Sets the font on the window and every control, and keeps it alive as long as the window.
    void useFont(unique_hfont font);
    HFONT font() const { return font_.get(); }
    int dpi() const { return dpi_; }

    // The control that has the focus when the window is shown and whenever it is activated again.
    void setFocusControl(HWND control) { focus_ = control; }

    // Shows the window in front and runs it modally until it is destroyed.
    void runModalDialog(HWND owner);
    void showInFront();
    void close();

    virtual void onCommand(int id, int notification, HWND control) = 0;
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

  private:
    unique_hfont font_;
    HWND focus_ = nullptr;
    int dpi_ = 96;
};

}  // namespace tl
