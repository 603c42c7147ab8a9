#pragma once

#include <windows.h>

#include "base/file_system.h"

namespace tl {

// The Win32 file system, through the W calls: UTF-8 paths, every name whole.
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

// The full path of the running executable; nullopt when Windows can't give it or its name can't be held
// in UTF-8 (an unpaired surrogate), in which case *shown, when given, is the path as it can be shown.
std::optional<std::string> executablePath(std::string* shown = nullptr);
// The directory of a file path, without a trailing separator (a drive root keeps its "\").
std::string directoryOf(const std::string& path);

// The file's last write time as the user's general date text (short date, then long time).
std::string generalDateText(const FILETIME& lastWrite);

}  // namespace tl
