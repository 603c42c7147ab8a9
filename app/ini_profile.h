#pragma once

#include <string>
#include <vector>

#include "app/profile.h"

namespace tl {

class FileSystem;

// A profile file kept by the program itself, answering as GetPrivateProfileStringA and
// WritePrivateProfileStringA do: sections and keys match without regard to case and blanks, a key's
// line is rewritten in place, a missing key is added at the end of its section and a missing section
// at the end of the file. Used where the Win32 profile functions are not at hand.
class IniProfile : public ProfileFile {
public:
    IniProfile(FileSystem& fs, std::string path);

    std::string readString(std::string_view section, std::string_view key, std::string_view defaultValue,
                           size_t bufferSize) override;
    int writeString(std::string_view section, std::string_view key, std::string_view value) override;
    bool beginUpdate() override;
    bool commitUpdate() override;
    void abandonUpdate() override;

    // The file's text as it would be written now.
    std::string text() const;

private:
    void load();
    bool store();

    FileSystem& fs_;
    std::string path_;
    std::vector<std::string> lines_;
    bool inUpdate_ = false;
};

}  // namespace tl
