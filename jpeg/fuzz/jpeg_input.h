#pragma once

#include <cstdint>
#include <span>

#include "jpeg/decoder.h"

namespace tl::fuzz {

// How the JPEG target decodes one input, picked by the input's first byte. Whoever adds a way of decoding
// (a scaled decode, another kind of JPEG) adds its option here and gives it bits of the byte, so that the
// fuzzer reaches it with the corpus it has.
struct JpegFuzzChoice {
    JpegOptions options;
    // Decodes small pictures a second time with the other thread count and compares the pixels.
    bool compareThreads = false;
    // Decodes small pictures a second time a row at a time (decodeJpegRows) and compares the rows.
    bool compareRows = false;
};
JpegFuzzChoice jpegFuzzChoice(uint8_t first);

// One input of the JPEG decoder's fuzz target: the choice byte, then the file. Whatever the bytes, the
// header reader and the decoder agree, a picture over the size limit is never handled, a refused file
// leaves the pixels alone, a decoded one has zero row padding and the same pixels on one thread and two
// and a row at a time, and only a file that reaches its end-of-image marker is decoded. Throws FuzzFailure when one doesn't.
void jpegInput(std::span<const uint8_t> input);

}  // namespace tl::fuzz
