#pragma once

#include <string>
#include <string_view>

namespace tl {

// A one-line question to the user: a prompt, a text box holding a default, OK and Cancel.
class InputBox {
  public:
    virtual ~InputBox() = default;
    // The text as typed when OK is chosen; empty when the box is cancelled or closed.
    virtual std::string ask(std::string_view prompt, std::string_view title, std::string_view defaultText) = 0;
};

}  // namespace tl
