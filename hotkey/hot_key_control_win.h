#pragma once

#include <windows.h>

#include "base/window_win.h"
#include "hotkey/hot_key_control.h"

namespace tl {

// The hot key entry control on Win32: a window of its own holding the system's "msctls_hotkey32" field
// as its only child, which it keeps at its full size and hands the focus to.
class HotKeyControl : public Window {
  public:
    HotKeyControl();
    ~HotKeyControl() override;

    // Creates the control as a child of parent, placed in 96-DPI units, then its field, then applies the
    // saved properties (the form's design data). False when the control's window could not be made.
    bool create(HWND parent, int x, int y, int width, int height, int id, const HotKeySavedProperties& saved);

    // The field (0 when it could not be made).
    HWND field() const { return host_.child; }
    cHotKey& hk() { return hk_; }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

  private:
    struct Host : HotKeyControlHost {
        bool hasChild() const override { return child != nullptr; }
        std::intptr_t sendToChild(uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) override;
        std::intptr_t sendTo(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) override;
        int logPixelsY() override;
        FontHandle createFont(const LogicalFont& font) override;
        void deleteFont(FontHandle font) override;
        std::string executableName() override;

        HWND own = nullptr;
        HWND child = nullptr;
    };

    void createField();
    void onSize();
    void onSetFocus();

    Host host_;
    cHotKey hk_;
};

}  // namespace tl
