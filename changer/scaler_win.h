#pragma once

#include <windows.h>

#include <string>

namespace tl {

class Picture;

// Writes the picture as a 24-bit BMP file, replacing the file. The DIB's bits are already a BMP's pixel
// data, so they go out in one write.
bool writeBitmapFile(const Picture& picture, const std::string& path);

}  // namespace tl
