#pragma once

#include <cstdint>
#include <span>

namespace tl::fuzz {

// One input of the picture scaling target: the first four bytes give the source's width and height and
// the target's (each 1 to 128, the target cut to the source), the rest are the source's pixels, repeated
// to fill it. Whatever the sizes, the shrink writes only the target's rows (padding left alone) and a
// picture of one colour stays that colour. Throws FuzzFailure when one doesn't.
void pictureScaleInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
