#include "changer/delay_entry.h"

#include "base/convert.h"

namespace tl {

DelayEntry checkDelayEntry(std::string_view text, char decimalSeparator) {
    const auto number = parseNumber(text, decimalSeparator);
    if (!number) {
        return DelayNotANumber{};
    }
    const auto minutes = toInt16(*number);
    if (!minutes || *minutes < 1 || *minutes > 32000) {
        return DelayOutOfRange{};
    }
    return DelayAccepted{*minutes};
}

}  // namespace tl
