#pragma once

#include <string>

#include "base/file_system_posix.h"

namespace tl::test {

// The native file system seen through Windows paths under a test's own folder: "D:\x" is root/D/x, and a
// path from the root of the current drive ("\x") is root/C/x. Lets the portable code's Windows paths,
// drive roots included, run against a real tree on the disk.
class RootedFileSystem : public PosixFileSystem {
  public:
    explicit RootedFileSystem(std::string root) : root_(std::move(root)) {}

    std::string map(const std::string& path) const {
        if (path.size() >= 2 && path[1] == ':') {
            return root_ + "/" + path.substr(0, 1) + path.substr(2);
        }
        if (!path.empty() && (path[0] == '\\' || path[0] == '/')) {
            return root_ + "/C" + path;
        }
        return path;
    }

    std::optional<std::string> readFile(const std::string& path, size_t maxBytes = SIZE_MAX) override {
        return PosixFileSystem::readFile(map(path), maxBytes);
    }
    bool writeNewFile(const std::string& path, std::string_view contents) override {
        return PosixFileSystem::writeNewFile(map(path), contents);
    }
    bool moveReplacing(const std::string& from, const std::string& to) override {
        return PosixFileSystem::moveReplacing(map(from), map(to));
    }
    std::vector<DirEntry> findFiles(const std::string& pattern) override {
        return PosixFileSystem::findFiles(map(pattern));
    }
    std::optional<FileFacts> facts(const std::string& path) override { return PosixFileSystem::facts(map(path)); }
    bool deleteFile(const std::string& path) override { return PosixFileSystem::deleteFile(map(path)); }
    bool copyFile(const std::string& from, const std::string& to) override {
        return PosixFileSystem::copyFile(map(from), map(to));
    }

  private:
    std::string root_;
};

}  // namespace tl::test
