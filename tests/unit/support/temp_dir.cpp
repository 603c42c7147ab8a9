#include "support/temp_dir.h"

#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tl::test {

TempDir::TempDir() {
    std::string templ = (std::filesystem::temp_directory_path() / "tl-test-XXXXXX").string();
    if (!::mkdtemp(templ.data())) {
        throw std::runtime_error("mkdtemp failed");
    }
    path_ = templ;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ec);
    std::filesystem::remove_all(path_, ec);
}

std::string TempDir::file(const std::string& name) const {
    return path_ + "/" + name;
}

void TempDir::write(const std::string& name, const std::string& contents) const {
    std::ofstream out(file(name), std::ios::binary | std::ios::trunc);
    out << contents;
}

std::string TempDir::read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool TempDir::exists(const std::string& name) const {
    return std::filesystem::exists(file(name));
}

}  // namespace tl::test
