#include "base/file_system.h"

namespace tl {

std::string temporarySibling(const std::string& path) {
    return path + ".new";
}

bool replaceFileSafely(FileSystem& fs, const std::string& path, std::string_view contents) {
    const std::string temp = temporarySibling(path);
    if (!fs.writeNewFile(temp, contents)) {
        fs.deleteFile(temp);
        return false;
    }
    if (!fs.moveReplacing(temp, path)) {
        fs.deleteFile(temp);
        return false;
    }
    return true;
}

}  // namespace tl
