#include "manager/folder_scan.h"

#include "base/file_system.h"

namespace tl {

FolderTable collectFolders(FileSystem& fs, const std::string& start) {
    FolderTable table;
    table.folders.push_back(start);
    for (size_t row = 0; row < table.folders.size(); ++row) {
        // Copied: appending may move the table's strings.
        const std::string folder = table.folders[row];
        for (const DirEntry& e : fs.findFiles(folder + "\\*")) {
            if (!e.isDirectory || e.hidden || e.system || e.name == "." || e.name == "..") {
                continue;
            }
            if (e.unrepresentable) {
                table.unrepresentable.push_back(folder + "\\" + e.name);
                continue;
            }
            if (table.folders.size() == kFolderTableRows) {
                table.overflowed = true;
                return table;
            }
            table.folders.push_back(folder + "\\" + e.name);
        }
    }
    return table;
}

std::vector<std::string> findFolderImages(FileSystem& fs,
                                          const std::string& folder,
                                          std::string_view extension,
                                          std::vector<std::string>& unrepresentable) {
    std::vector<std::string> names;
    for (const DirEntry& e : fs.findFiles(folder + "\\*." + std::string(extension))) {
        if (e.isNormalFile() && e.unrepresentable) {
            unrepresentable.push_back(folder + "\\" + e.name);
        } else if (e.isNormalFile()) {
            names.push_back(e.name);
        }
    }
    return names;
}

}  // namespace tl
