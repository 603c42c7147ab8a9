#pragma once

#include <windows.h>

#include "base/ui.h"

namespace tl {

// Message boxes owned by a window (or by none) and the system beep.
class Win32Ui : public Ui {
public:
    explicit Win32Ui(HWND owner = nullptr) : owner_(owner) {}
    void setOwner(HWND owner) { owner_ = owner; }
    int messageBox(std::string_view text, std::string_view title, unsigned style) override;
    void beep() override;

private:
    HWND owner_;
};

}  // namespace tl
