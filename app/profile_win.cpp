#include "app/profile_win.h"

#include <windows.h>

#include <vector>

#include "base/file_system.h"
#include "base/unique_handle_win.h"

namespace tl {

Win32ProfileFile::Win32ProfileFile(FileSystem& fs, std::string path)
    : fs_(fs), path_(std::move(path)), workingCopy_(temporarySibling(path_)) {}

std::string Win32ProfileFile::readString(std::string_view section, std::string_view key,
                                         std::string_view defaultValue, size_t bufferSize) {
    if (bufferSize == 0) {
        return {};
    }
    std::vector<char> buffer(bufferSize, '\0');
    const std::string s(section), k(key), d(defaultValue);
    const DWORD n = ::GetPrivateProfileStringA(s.c_str(), k.c_str(), d.c_str(), buffer.data(),
                                               static_cast<DWORD>(bufferSize), target().c_str());
    return std::string(buffer.data(), std::min<size_t>(n, bufferSize - 1));
}

int Win32ProfileFile::writeString(std::string_view section, std::string_view key, std::string_view value) {
    const std::string s(section), k(key), v(value);
    return ::WritePrivateProfileStringA(s.c_str(), k.c_str(), v.c_str(), target().c_str()) ? 1 : 0;
}

bool Win32ProfileFile::beginUpdate() {
    // Start the working copy from the file as it is, so keys the program does not know survive.
    const auto current = fs_.readFile(path_);
    if (current) {
        if (!fs_.writeNewFile(workingCopy_, *current)) {
            fs_.deleteFile(workingCopy_);
            return false;
        }
    } else {
        fs_.deleteFile(workingCopy_);
    }
    inUpdate_ = true;
    return true;
}

bool Win32ProfileFile::commitUpdate() {
    inUpdate_ = false;
    {
        // The profile functions leave the data in the cache; make it durable before the rename.
        unique_hfile copy(::CreateFileA(workingCopy_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!copy || !::FlushFileBuffers(copy.get())) {
            fs_.deleteFile(workingCopy_);
            return false;
        }
    }
    if (!fs_.moveReplacing(workingCopy_, path_)) {
        fs_.deleteFile(workingCopy_);
        return false;
    }
    return true;
}

void Win32ProfileFile::abandonUpdate() {
    inUpdate_ = false;
    fs_.deleteFile(workingCopy_);
}

char userDecimalSeparator() {
    char buf[8] = {};
    if (::GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buf, sizeof buf) > 0 && buf[0]) {
        return buf[0];
    }
    return '.';
}

}  // namespace tl
