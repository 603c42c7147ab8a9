#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace tl {

class Picture;

// Writes the picture as a 24-bit BMP file, replacing the file. The DIB's bits are already a BMP's pixel
// data, so they go out in one write.
bool writeBitmapFile(const Picture& picture, const std::string& path);

// The Scaler: draws the BMP file at sourcePath scaled by factor (a width x height picture) on a work
// surface of the new size and saves the surface as a BMP to targetPath, which may be the source. With
// loadScaled the loader reads the file at the new size and the blit only copies; otherwise the blit
// resamples. Every GDI object made here is deleted before it returns.
bool scaleImageFile(const std::string& sourcePath,
                    const std::string& targetPath,
                    double factor,
                    int32_t height,
                    int32_t width,
                    bool loadScaled);

}  // namespace tl
