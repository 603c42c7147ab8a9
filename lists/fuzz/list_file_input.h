#pragma once

#include <cstdint>
#include <span>

namespace tl::fuzz {

// One input of the list file target: the first byte picks the reader (bit 0: the changer's or the
// manager's) and the default orientation for added files (bits 1-3), the rest is the file's text. Whatever
// the text, the list keeps its spare slot and its empty folder slot, writing the list and reading it back
// gives the same entries and folders (those the writer keeps), the written text reads back to itself, and
// the sort orders the entries. Throws FuzzFailure when one doesn't.
void listFileInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
