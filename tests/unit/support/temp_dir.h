#pragma once

#include <filesystem>
#include <string>

namespace tl::test {

// A fresh directory under the system's temporary folder, removed with everything in it at the end.
class TempDir {
public:
    TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir();

    const std::string& path() const { return path_; }
    // path() + "/" + name
    std::string file(const std::string& name) const;
    void write(const std::string& name, const std::string& contents) const;
    std::string read(const std::string& name) const;
    bool exists(const std::string& name) const;

private:
    std::string path_;
};

}  // namespace tl::test
