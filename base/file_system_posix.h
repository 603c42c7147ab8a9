#pragma once

#include "base/file_system.h"

namespace tl {

// The native file system, for tests and benchmarks. Backslashes in paths become slashes, and a
// pattern is matched without regard to case, as Windows does.
class PosixFileSystem : public FileSystem {
public:
    std::optional<std::string> readFile(const std::string& path, size_t maxBytes = SIZE_MAX) override;
    bool writeNewFile(const std::string& path, std::string_view contents) override;
    bool moveReplacing(const std::string& from, const std::string& to) override;
    std::vector<DirEntry> findFiles(const std::string& pattern) override;
    std::optional<FileFacts> facts(const std::string& path) override;
    bool deleteFile(const std::string& path) override;
    bool copyFile(const std::string& from, const std::string& to) override;

    static std::string nativePath(const std::string& path);
};

}  // namespace tl
