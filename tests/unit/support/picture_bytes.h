#pragma once

#include <cstdint>
#include <string>

namespace tl::test {

// The first 54 bytes of a BMP file (file and info headers) of the given size and depth: enough for its
// header to be read.
inline std::string bmpHeader(int32_t width, int32_t height, uint16_t bits = 24) {
    std::string b(54, '\0');
    b[0] = 'B';
    b[1] = 'M';
    const auto put32 = [&](size_t at, uint32_t v) {
        for (size_t i = 0; i < 4; ++i) {
            b[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
        }
    };
    put32(14, 40);
    put32(18, static_cast<uint32_t>(width));
    put32(22, static_cast<uint32_t>(height));
    b[26] = 1;
    b[28] = static_cast<char>(bits & 0xFF);
    b[29] = static_cast<char>(bits >> 8);
    return b;
}

}  // namespace tl::test
