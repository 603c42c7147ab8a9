#include "lists/image_facts.h"

#include <cmath>

#include "base/convert.h"
#include "base/text.h"

namespace tl {

namespace {

std::string wholeNumber(double v) {
    return std::to_string(static_cast<long long>(v));
}

}  // namespace

std::string sizeText(double bytes) {
    // The counts were 16-bit numbers; one past that range is carried on rather than failing the panel,
    // so a 72 MB bitmap still shows its size instead of being taken for an unloadable picture.
    double n = bytes;
    const char* unit = "bytes";
    if (n > 10000) {
        n = roundHalfEven(n / 1024);
        unit = "KB";
        if (n > 1000) {
            n = roundHalfEven(n / 1024);
            unit = "MB";
        }
    }
    return wholeNumber(roundHalfEven(n)) + " " + unit;
}

std::string dimensionsText(int32_t width, int32_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

std::string dateText(std::string_view platformDate) {
    return std::string(trimBlanks(platformDate));
}

std::optional<PreviewSize> fitPreview(int32_t width, int32_t height, int32_t boxWidth, int32_t boxHeight) {
    if (width <= 0 || height <= 0 || boxWidth <= 0 || boxHeight <= 0) {
        return std::nullopt;
    }
    const double w = width;
    const double h = height;
    const double kH = h / boxHeight;
    const double kW = w / boxWidth;
    // A side too long for 16 bits simply does not fit the box.
    const std::optional<int16_t> widthIfByHeight = toInt16(w / kH);
    const std::optional<int16_t> heightIfByWidth = toInt16(h / kW);
    if (widthIfByHeight && *widthIfByHeight <= boxWidth) {
        return PreviewSize{*widthIfByHeight, toInt16Or(h / kH, 0)};
    }
    if (heightIfByWidth && *heightIfByWidth <= boxHeight) {
        return PreviewSize{toInt16Or(w / kW, 0), *heightIfByWidth};
    }
    return std::nullopt;
}

}  // namespace tl
