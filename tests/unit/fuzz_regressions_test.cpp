// Every input the fuzzers once failed on, kept in <folder>/fuzz/regressions/<target>/, run through its
// target's "one input" function: a fault that comes back fails here (or under the sanitizers) before any
// fuzzing is done.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "app/fuzz/settings_input.h"
#include "base/fuzz/fuzz_check.h"
#include "jpeg/fuzz/jpeg_input.h"
#include "lists/fuzz/image_info_input.h"
#include "lists/fuzz/list_file_input.h"
#include "lists/fuzz/picture_scale_input.h"

namespace tl::test {
namespace {

namespace fs = std::filesystem;
using OneInput = void (*)(std::span<const uint8_t>);

// A target's regressions folder, by the target's name (<name>_fuzz.cpp).
const std::map<std::string, OneInput> kTargets = {
    {"jpeg", &fuzz::jpegInput},
    {"list_file", &fuzz::listFileInput},
    {"image_info", &fuzz::imageInfoInput},
    {"picture_scale", &fuzz::pictureScaleInput},
    {"settings", &fuzz::settingsInput},
};

TEST(FuzzRegressions, EveryKeptInputPassesItsTarget) {
    int inputs = 0;
    for (const auto& folder : fs::directory_iterator(TL_SOURCE_DIR)) {
        const fs::path kept = folder.path() / "fuzz" / "regressions";
        if (!fs::is_directory(kept)) {
            continue;
        }
        for (const auto& targetDir : fs::directory_iterator(kept)) {
            const std::string target = targetDir.path().filename().string();
            const auto run = kTargets.find(target);
            ASSERT_NE(run, kTargets.end()) << targetDir.path() << " names no target known here";
            for (const auto& file : fs::directory_iterator(targetDir.path())) {
                std::ifstream in(file.path(), std::ios::binary);
                const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
                try {
                    run->second(bytes);
                } catch (const fuzz::FuzzFailure& failure) {
                    ADD_FAILURE() << file.path() << ": " << failure.what();
                }
                ++inputs;
            }
        }
    }
    EXPECT_GT(inputs, 0) << "no regression inputs found under " << TL_SOURCE_DIR;
}

}  // namespace
}  // namespace tl::test
