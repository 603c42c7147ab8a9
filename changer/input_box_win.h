#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "changer/input_box.h"

namespace tl {

// A small modal box with a prompt, a text box holding the default (all of it selected), OK and Cancel,
// in the message font. Returns the text on OK and the empty text on Cancel or the close box.
std::string showInputBox(HWND owner, std::string_view prompt, std::string_view title, std::string_view defaultText);

class Win32InputBox : public InputBox {
  public:
    explicit Win32InputBox(HWND owner = nullptr) : owner_(owner) {}
    void setOwner(HWND owner) { owner_ = owner; }
    std::string ask(std::string_view prompt, std::string_view title, std::string_view defaultText) override {
        return showInputBox(owner_, prompt, title, defaultText);
    }

  private:
    HWND owner_;
};

}  // namespace tl
