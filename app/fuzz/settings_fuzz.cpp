// libFuzzer target: setup.pref through the program's own profile reader, the settings' conversions, and
// the save and reload of what was read.
#include "app/fuzz/settings_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tl::fuzz::settingsInput({data, size});
    return 0;
}
