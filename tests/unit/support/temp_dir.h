#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tl::test {

// A fresh directory under the system's temporary folder, removed with everything in it at the end.
class TempDir {
  public:
    TempDir() : path_((std::filesystem::temp_directory_path() / "tl-test-XXXXXX").string()) {
        if (!::mkdtemp(path_.data())) {
            throw std::runtime_error("mkdtemp failed");
        }
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() {
        std::error_code ec;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(path_, ec);
    }

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(file(name), std::ios::binary | std::ios::trunc) << contents;
    }
    std::string read(const std::string& name) const {
        std::ostringstream s;
        s << std::ifstream(file(name), std::ios::binary).rdbuf();
        return s.str();
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(file(name)); }

  private:
    std::string path_;
};

}  // namespace tl::test
