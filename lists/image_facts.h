#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The texts and the preview size that a facts panel shows for one picture.
namespace tl {

// "9876 bytes", "532 KB", "2 MB". Above 10,000 bytes the count is divided by 1,024 (rounded, halves to
// even) into KB, and above 1,000 KB again into MB: the thresholds are decimal while the divisor is not,
// on purpose, so 10,001 bytes read "10 KB" and 1,025,000 bytes "1 MB".
std::string sizeText(double bytes);

// "1024 x 768 pixels".
std::string dimensionsText(int32_t width, int32_t height);

// The file's date as the platform wrote it (its general date text), without surrounding blanks.
std::string dateText(std::string_view platformDate);

struct PreviewSize {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const PreviewSize&) const = default;
};

// The preview of a width x height picture fitted into the box, proportions kept; small pictures are
// enlarged to the box too. Each side is rounded half to even. nullopt when neither fit works (a
// degenerate size), and the preview keeps the size it has.
std::optional<PreviewSize> fitPreview(int32_t width, int32_t height, int32_t boxWidth, int32_t boxHeight);

}  // namespace tl
