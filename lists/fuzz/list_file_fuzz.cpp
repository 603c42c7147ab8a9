// libFuzzer target: the list file reader and writer (".wall" and ".txt"), the sort and the list tools.
#include "lists/fuzz/list_file_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tl::fuzz::listFileInput({data, size});
    return 0;
}
