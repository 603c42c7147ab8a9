#include "manager/file_browser.h"

#include <algorithm>

#include "base/convert.h"
#include "base/file_system.h"
#include "base/text.h"

namespace tl {

namespace {

bool isDriveRoot(std::string_view path) {
    return path.size() == 3 && path[1] == ':' && path[2] == '\\';
}

bool lessNoCase(const std::string& a, const std::string& b) {
    return lowerCase(a) < lowerCase(b);
}

FolderLine line(const std::string& name, const std::string& path, int depth) {
    return {std::string(static_cast<size_t>(depth) * 2, ' ') + name, path, depth};
}

}  // namespace

std::string folderPathForBrowser(std::string_view path) {
    std::string p(trimBlanks(path));
    if (p.size() == 2 && p[1] == ':') {
        return p + "\\";
    }
    while (p.size() > 1 && p.back() == '\\' && !isDriveRoot(p)) {
        p.pop_back();
    }
    return p;
}

FolderListing listFolder(FileSystem& fs, const std::string& path) {
    const std::string open = folderPathForBrowser(path);
    FolderListing listing;
    // The ancestors: the root ("C:\" or "\\server\share"), then each folder below it.
    size_t start = 0;
    std::string root;
    if (startsWith(open, "\\\\")) {
        const size_t server = open.find('\\', 2);
        const size_t share = server == std::string::npos ? std::string::npos : open.find('\\', server + 1);
        root = open.substr(0, share);
        start = share == std::string::npos ? open.size() : share + 1;
    } else {
        const size_t first = open.find('\\');
        root = first == std::string::npos ? open : open.substr(0, first + 1);
        start = first == std::string::npos ? open.size() : first + 1;
    }
    listing.lines.push_back(line(root, root, 0));
    std::string current = root;
    int depth = 0;
    while (start < open.size()) {
        const size_t end = std::min(open.find('\\', start), open.size());
        const std::string name = open.substr(start, end - start);
        current = joinPath(current, name);
        listing.lines.push_back(line(name, current, ++depth));
        start = end + 1;
    }
    listing.openIndex = static_cast<int>(listing.lines.size()) - 1;

    std::vector<std::string> subFolders;
    for (const DirEntry& e : fs.findFiles(joinPath(open, "*"))) {
        if (e.isDirectory && !e.hidden && !e.system && !e.unrepresentable && e.name != "." && e.name != "..") {
            subFolders.push_back(e.name);
        }
    }
    std::sort(subFolders.begin(), subFolders.end(), lessNoCase);
    for (const std::string& name : subFolders) {
        listing.lines.push_back(line(name, joinPath(open, name), depth + 1));
    }
    return listing;
}

std::vector<DirEntry> listPictureFiles(FileSystem& fs, const std::string& folder) {
    std::vector<DirEntry> files;
    std::string_view patterns = kFile1Pattern;
    while (!patterns.empty()) {
        const size_t semicolon = std::min(patterns.find(';'), patterns.size());
        const std::string pattern(patterns.substr(0, semicolon));
        patterns.remove_prefix(std::min(semicolon + 1, patterns.size()));
        for (const DirEntry& e : fs.findFiles(joinPath(folder, pattern))) {
            if (e.isNormalFile()) {
                files.push_back(e);
            }
        }
    }
    std::sort(files.begin(), files.end(), [](const DirEntry& a, const DirEntry& b) { return lessNoCase(a.name, b.name); });
    files.erase(std::unique(files.begin(), files.end(),
                            [](const DirEntry& a, const DirEntry& b) { return equalsNoCase(a.name, b.name); }),
                files.end());
    return files;
}

std::string fileCountText(int count) {
    return formatSigned(count) + " total files.";
}

}  // namespace tl
