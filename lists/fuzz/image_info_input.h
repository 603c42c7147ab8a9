#pragma once

#include <cstdint>
#include <span>

namespace tl::fuzz {

// One input of the image header target: the first two bytes are the preview box's size, the rest is the
// start of a picture file. Whatever the bytes, the header reader gives a known kind or all zeros, sizes of
// at most 65,535, and the preview fitted to the box stays inside it. Throws FuzzFailure when one doesn't.
void imageInfoInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
