#include "lists/fuzz/image_info_input.h"

#include <string_view>

#include "base/file_system.h"
#include "base/fuzz/fuzz_check.h"
#include "lists/image_facts.h"
#include "lists/image_info.h"

namespace tl::fuzz {

namespace {

void check(bool holds, const char* what) {
    fuzz::check(holds, "image_info", what);
}

// The header reader reads bytes it is given; it never asks for a file here.
class NoFiles final : public FileSystem {
  public:
    std::optional<std::string> readFile(const std::string&, size_t) override { return std::nullopt; }
    bool writeNewFile(const std::string&, std::string_view) override { return false; }
    bool moveReplacing(const std::string&, const std::string&) override { return false; }
    std::vector<DirEntry> findFiles(const std::string&) override { return {}; }
    std::optional<FileFacts> facts(const std::string&) override { return std::nullopt; }
    bool deleteFile(const std::string&) override { return false; }
    bool copyFile(const std::string&, const std::string&) override { return false; }
};

}  // namespace

void imageInfoInput(std::span<const uint8_t> input) {
    if (input.size() < 2) {
        return;
    }
    const int32_t boxWidth = 1 + input[0];
    const int32_t boxHeight = 1 + input[1];
    const std::string_view bytes(reinterpret_cast<const char*>(input.data() + 2), input.size() - 2);

    NoFiles fs;
    cImageInfo info(fs);
    info.readHeader(bytes);
    const int32_t w = info.Width();
    const int32_t h = info.Height();
    check(w >= 0 && w <= 65535 && h >= 0 && h <= 65535, "a size outside 16 bits");
    check(info.ImageType() >= cImageInfo::kUnknown && info.ImageType() <= cImageInfo::kBmp, "an unknown kind");
    check(info.ImageType() != cImageInfo::kUnknown || (w == 0 && h == 0 && info.Depth() == 0),
          "an unknown kind with facts");

    if (const auto fit = fitPreview(w, h, boxWidth, boxHeight)) {
        check(fit->width >= 0 && fit->width <= boxWidth && fit->height >= 0 && fit->height <= boxHeight,
              "the preview does not fit its box");
    }
    static_cast<void>(dimensionsText(w, h));
    static_cast<void>(sizeText(static_cast<double>(bytes.size())));
}

}  // namespace tl::fuzz
