// libFuzzer target: the image header reader (cImageInfo: PNG, GIF, BMP, the JPEG marker walk) and the
// facts panel's preview size and texts made from what it reads.
#include "lists/fuzz/image_info_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tl::fuzz::imageInfoInput({data, size});
    return 0;
}
