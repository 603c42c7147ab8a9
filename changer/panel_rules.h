#pragma once

#include <cstdint>

// What the panel of frmMain hands to its rules: the window's state and the buttons with the keys held.
namespace tl {

// The panel's window state, as Settings.MainMode stores it.
enum class FormWindowState : int16_t { Normal = 0, Minimized = 1, Maximized = 2 };

// The five image buttons and the preview, which all beep instead of acting while panelBusy is set.
enum class PanelButton { Image5, Image1, Image4, Image3, Image2, Preview };

// The modifier keys held during a click, as a mask.
enum ShiftKeys : int { kNoKeys = 0, kShiftKey = 1, kCtrlKey = 2, kAltKey = 4 };

// How Image2 deletes files.
struct DeleteFlags {
    bool recycle = true;
    bool useShell = true;
    bool operator==(const DeleteFlags&) const = default;
};

// Image2's modifier rule: Shift alone deletes for good through the shell (which asks), Ctrl alone deletes
// for good at once, any other combination (or none) recycles through the shell.
inline DeleteFlags deleteFlagsFor(int shiftKeys) {
    switch (shiftKeys) {
        case kShiftKey:
            return {false, true};
        case kCtrlKey:
            return {false, false};
        default:
            return {true, true};
    }
}

}  // namespace tl
