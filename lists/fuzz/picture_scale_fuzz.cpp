// libFuzzer target: our own picture scaling (the averaged shrink behind previews, the resample behind scaled
// wallpapers, whole or a row at a time).
#include "lists/fuzz/picture_scale_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tl::fuzz::pictureScaleInput({data, size});
    return 0;
}
