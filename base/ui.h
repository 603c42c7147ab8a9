#pragma once

#include <string_view>

namespace tl {

// Message box styles and answers, with the platform's numbers.
enum MessageStyle : unsigned {
    kMbOk = 0x0,
    kMbYesNo = 0x4,
    kMbIconError = 0x10,
    kMbIconQuestion = 0x20,
    kMbIconExclamation = 0x30,
    kMbIconInformation = 0x40,
    kMbSystemModal = 0x1000,
};
enum MessageAnswer : int { kIdOk = 1, kIdCancel = 2, kIdYes = 6, kIdNo = 7 };

// What the portable code asks of the user interface.
class Ui {
public:
    virtual ~Ui() = default;
    virtual int messageBox(std::string_view text, std::string_view title, unsigned style) = 0;
    virtual void beep() = 0;
};

}  // namespace tl
