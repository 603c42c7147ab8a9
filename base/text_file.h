#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tl {

class FileSystem;

// The system's ANSI code page, in which the versions before this one wrote their list and settings
// files. Decoding it needs the platform; Windows1252 is the portable stand-in.
class AnsiCodePage {
  public:
    virtual ~AnsiCodePage() = default;
    virtual std::string toUtf8(std::string_view ansi) const = 0;
};

// Windows-1252, the code page of Western Windows, decoded as Windows does (its five unassigned bytes
// become the C1 controls of the same number).
class Windows1252 : public AnsiCodePage {
  public:
    std::string toUtf8(std::string_view ansi) const override;
};

// The text of a list or settings file, as UTF-8. The program writes UTF-8 without a byte order mark; a
// mark a text editor put there is taken off (UTF-16 with its mark is read too), and a file that is not
// valid UTF-8 is one an earlier version wrote in the ANSI code page, and is read in that.
std::string decodeTextFile(std::string_view bytes, const AnsiCodePage& ansi);

// A file read whole and decoded; nullopt when it can't be read.
std::optional<std::string> readTextFile(FileSystem& fs, const std::string& path, const AnsiCodePage& ansi);

}  // namespace tl
