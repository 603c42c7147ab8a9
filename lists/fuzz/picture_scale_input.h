#pragma once

#include <cstdint>
#include <span>

namespace tl::fuzz {

// One input of the picture scaling target: the first four bytes give the source's width and height and
// the target's (each 1 to 128; for the averaged shrink the target cut to the source, for the Lanczos
// resample, picked by bit 7 of the first byte, any size), the rest are the source's pixels, repeated to
// fill it. Whatever the sizes, the scaling writes only the target's rows (the shrink leaves their padding
// alone, the resample zeroes it), a picture of one colour stays that colour, and the resample fed a row at a
// time (bit 7 of the second byte: bottom up; of the third: each row filled before the last is handed in)
// gives the same bytes as the whole picture's, as do the plain kernels. Throws FuzzFailure when one doesn't.
void pictureScaleInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
