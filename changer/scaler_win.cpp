#include "changer/scaler_win.h"

#include <limits>

#include "base/file_system.h"
#include "base/unique_handle_win.h"
#include "base/utf8_win.h"
#include "lists/picture_win.h"

namespace tl {

bool writeBitmapFile(const Picture& picture, const std::string& path) {
    if (!picture) {
        return false;
    }
    const BITMAPINFOHEADER info = picture.infoHeader();
    const size_t imageSize = picture.imageSize();
    const size_t headers = sizeof(BITMAPFILEHEADER) + sizeof info;
    if (imageSize > std::numeric_limits<DWORD>::max() - headers) {
        return false;
    }
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;  // "BM"
    file.bfSize = static_cast<DWORD>(headers + imageSize);
    file.bfOffBits = static_cast<DWORD>(headers);

    // Written beside the target and then put in its place, so that the desktop never meets a half-written
    // wallpaper (a full disk, a crash). No flush to the disk: the file is made again at every change.
    const std::string temp = temporarySibling(path);
    bool whole = false;
    {
        unique_hfile out(::CreateFileW(widen(temp).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!out) {
            return false;
        }
        DWORD written = 0;
        whole = ::WriteFile(out.get(), &file, sizeof file, &written, nullptr) && written == sizeof file &&
                ::WriteFile(out.get(), &info, sizeof info, &written, nullptr) && written == sizeof info &&
                ::WriteFile(out.get(), picture.bits(), static_cast<DWORD>(imageSize), &written, nullptr) &&
                written == imageSize;
    }
    if (!whole || !::MoveFileExW(widen(temp).c_str(), widen(path).c_str(), MOVEFILE_REPLACE_EXISTING)) {
        ::DeleteFileW(widen(temp).c_str());
        return false;
    }
    return true;
}

}  // namespace tl
