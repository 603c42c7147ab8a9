#pragma once

#include <cstdint>
#include <span>

namespace tl::fuzz {

// One input of the settings target: the first byte picks the decimal separator (bit 0: "." or ","), the
// rest is setup.pref's text, read by the program's own profile reader. Whatever the text, loading either
// succeeds or stops with the settings error; a loaded file, saved, loads again without error and with the
// same values; and a number the program reads, written back as it writes numbers, reads back as nearly the
// same number. Throws FuzzFailure when one doesn't.
void settingsInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
