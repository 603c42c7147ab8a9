#pragma once

#include <string>
#include <vector>

#include "app/profile.h"

namespace tl {

class AnsiCodePage;
class FileSystem;

// A profile file kept by the program itself, answering as the Win32 profile functions do: sections and
// keys match without regard to case and blanks, a key's line is rewritten in place, a missing key is
// added at the end of its section and a missing section at the end of the file. Those functions can't
// write UTF-8 (the A ones write the ANSI code page, the W ones UTF-16 only to a file that already is), so
// the program keeps setup.pref with this one. A batch of writes replaces the file safely whole.
class IniProfile : public ProfileFile {
public:
    // The file is written in UTF-8; one an earlier version wrote in the ANSI code page is read in that.
    IniProfile(FileSystem& fs, const AnsiCodePage& ansi, std::string path);

    std::string readString(std::string_view section, std::string_view key, std::string_view defaultValue,
                           size_t bufferSize) override;
    int writeString(std::string_view section, std::string_view key, std::string_view value) override;
    bool beginUpdate() override;
    bool commitUpdate() override;
    void abandonUpdate() override;
    void beginRead() override;
    void endRead() override;

    // The file's text as it would be written now.
    std::string text() const;

private:
    void load();
    bool store();

    FileSystem& fs_;
    const AnsiCodePage& ansi_;
    std::string path_;
    std::vector<std::string> lines_;
    bool inUpdate_ = false;
    bool inRead_ = false;
};

}  // namespace tl
