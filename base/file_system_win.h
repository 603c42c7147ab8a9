#pragma once

#include <windows.h>

#include "base/file_system.h"

namespace tl {

// The Win32 file system: ANSI calls, so paths are in the system code page like the list files.
class Win32FileSystem : public FileSystem {
public:
    std::optional<std::string> readFile(const std::string& path, size_t maxBytes = SIZE_MAX) override;
    bool writeNewFile(const std::string& path, std::string_view contents) override;
    bool moveReplacing(const std::string& from, const std::string& to) override;
    std::vector<DirEntry> findFiles(const std::string& pattern) override;
    std::optional<FileFacts> facts(const std::string& path) override;
    bool deleteFile(const std::string& path) override;
    bool copyFile(const std::string& from, const std::string& to) override;
};

// The file's last write time as the user's general date text (short date, then long time).
std::string generalDateText(const FILETIME& lastWrite);

}  // namespace tl
