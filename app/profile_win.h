#pragma once

#include <string>

#include "app/profile.h"

namespace tl {

class FileSystem;

// setup.pref through GetPrivateProfileStringA / WritePrivateProfileStringA. A batch of writes goes to a
// sibling copy that replaces the file in one rename, so a crash or a full disk never leaves it cut short.
class Win32ProfileFile : public ProfileFile {
public:
    Win32ProfileFile(FileSystem& fs, std::string path);

    std::string readString(std::string_view section, std::string_view key, std::string_view defaultValue,
                           size_t bufferSize) override;
    int writeString(std::string_view section, std::string_view key, std::string_view value) override;
    bool beginUpdate() override;
    bool commitUpdate() override;
    void abandonUpdate() override;

    const std::string& path() const { return path_; }

private:
    const std::string& target() const { return inUpdate_ ? workingCopy_ : path_; }

    FileSystem& fs_;
    std::string path_;
    std::string workingCopy_;
    bool inUpdate_ = false;
};

// The user's decimal separator (the first character of LOCALE_SDECIMAL).
char userDecimalSeparator();

}  // namespace tl
