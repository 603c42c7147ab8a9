#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tl {

struct DirEntry {
    std::string name;
    bool isDirectory = false;
    bool hidden = false;
    bool system = false;
    bool readOnly = false;
    // The name holds what UTF-8 can't (see base/unrepresentable_names.h): `name` only shows it, with
    // U+FFFD in that place, and names no file.
    bool unrepresentable = false;

    // What a plain directory search returns: files that are neither hidden, system nor folders.
    bool isNormalFile() const { return !isDirectory && !hidden && !system; }
};

struct FileFacts {
    uint64_t size = 0;
    bool isDirectory = false;
    bool readOnly = false;
    std::string modified;  // last write time as the user's general date text
};

// The file operations the portable code needs. Paths are the program's own ("C:\dir\file", UTF-8); the
// native stand-in maps them onto its file system.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // The file's first maxBytes bytes (all of it by default); nullopt when it can't be read.
    virtual std::optional<std::string> readFile(const std::string& path, size_t maxBytes = SIZE_MAX) = 0;

    // Creates or truncates path, writes contents, flushes them to the disk and closes it.
    virtual bool writeNewFile(const std::string& path, std::string_view contents) = 0;

    // Renames from over to in one step, durably. Refuses (false) a read-only target, as Windows does.
    virtual bool moveReplacing(const std::string& from, const std::string& to) = 0;

    // Entries matching a search pattern such as "C:\dir\*.wall" ("." and ".." included when listed).
    virtual std::vector<DirEntry> findFiles(const std::string& pattern) = 0;

    virtual std::optional<FileFacts> facts(const std::string& path) = 0;
    virtual bool deleteFile(const std::string& path) = 0;
    virtual bool copyFile(const std::string& from, const std::string& to) = 0;

    bool exists(const std::string& path) { return facts(path).has_value(); }
    bool isDirectory(const std::string& path) {
        auto f = facts(path);
        return f && f->isDirectory;
    }
};

// Replaces a file so that a crash, a full disk or a power cut at any moment leaves either the old
// file or the new one: the new contents go to a sibling temporary file first, are flushed, and only
// then renamed over the target. On failure the target is untouched and the temporary file removed.
bool replaceFileSafely(FileSystem& fs, const std::string& path, std::string_view contents);

// The sibling temporary file used while replacing path.
std::string temporarySibling(const std::string& path);

}  // namespace tl
