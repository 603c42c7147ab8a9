#include "tracker/directory_changes.h"

#include "base/text.h"

namespace tl {

namespace {

// path lies inside folder (or is it), comparing without regard to case.
bool isWithin(const std::string& path, const std::string& folder) {
    const std::string p = lowerCase(path);
    std::string f = lowerCase(folder);
    if (!f.empty() && f.back() == '\\') {
        f.pop_back();
    }
    return p == f || startsWith(p, f + "\\");
}

ShellChange change(uint32_t event, const std::string& path1, const std::string& path2 = {}) {
    ShellChange c;
    c.event = event;
    c.path1 = path1;
    c.name1 = displayNameOf(path1);
    c.path2 = path2;
    c.name2 = displayNameOf(path2);
    return c;
}

}  // namespace

std::vector<std::string> foldersToWatch(const TrackedFolders& folders) {
    std::vector<std::string> distinct;
    for (const std::string& f : folders) {
        if (trimBlanks(f).empty()) {
            continue;
        }
        bool seen = false;
        for (const std::string& d : distinct) {
            seen = seen || isWithin(f, d);
        }
        if (!seen) {
            distinct.push_back(f);
        }
    }
    std::vector<std::string> out;
    for (size_t i = 0; i < distinct.size(); ++i) {
        bool inside = false;
        for (size_t j = 0; j < distinct.size() && !inside; ++j) {
            inside = j != i && isWithin(distinct[i], distinct[j]);
        }
        if (!inside) {
            out.push_back(distinct[i]);
        }
    }
    return out;
}

std::vector<ShellChange> DirectoryChangeReader::read(DirectoryAction action,
                                                     const std::string& fullPath,
                                                     bool isDirectory) {
    std::vector<ShellChange> out;
    if (oldName_ && action != DirectoryAction::RenamedNewName) {
        // An old name whose new one never came: the item left the watched folders.
        out.push_back(change(kShcneDelete, *oldName_));
        oldName_.reset();
    }
    switch (action) {
        case DirectoryAction::Added:
            out.push_back(change(isDirectory ? kShcneMkDir : kShcneCreate, fullPath));
            break;
        case DirectoryAction::Removed:
            out.push_back(change(kShcneDelete, fullPath));
            break;
        case DirectoryAction::RenamedOldName:
            oldName_ = fullPath;
            break;
        case DirectoryAction::RenamedNewName:
            if (oldName_) {
                out.push_back(change(isDirectory ? kShcneRenameFolder : kShcneRenameItem, *oldName_, fullPath));
                oldName_.reset();
            } else {
                out.push_back(change(isDirectory ? kShcneMkDir : kShcneCreate, fullPath));
            }
            break;
        case DirectoryAction::Modified:
            break;
    }
    return out;
}

std::string displayNameOf(const std::string& path) {
    const auto slash = path.find_last_of('\\');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace tl
