// libFuzzer target: our JPEG decoder (headers, scan data, every sampling and restart path, both thread
// counts). The first byte of an input picks the options; the rest is the file.
#include "jpeg/fuzz/jpeg_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tl::fuzz::jpegInput({data, size});
    return 0;
}
