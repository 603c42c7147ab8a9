#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

namespace tl {

// What the delay dialog makes of its text box.
struct DelayAccepted {
    int16_t minutes;
};
struct DelayOutOfRange {};
struct DelayNotANumber {};
using DelayEntry = std::variant<DelayAccepted, DelayOutOfRange, DelayNotANumber>;

inline constexpr const char* kDelayRangeMessage = "Please enter a number above zero, and under 32,000";

// The text read as a 16-bit whole number (halves to even) and checked against 1 to 32000. 32000 itself
// passes, although the message says "under": the check has always been so.
DelayEntry checkDelayEntry(std::string_view text, char decimalSeparator);

}  // namespace tl
