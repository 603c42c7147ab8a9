#pragma once

#include <cstdint>
#include <string>

namespace tl {

// Shell change event codes (SHCNE_*), with the platform's numbers. The tracker acts on five of them; the
// folder watchers report folder creations and renames with the codes the shell would use, so that the
// receipt passes over them the same way.
enum ShellEvent : uint32_t {
    kShcneRenameItem = 0x1,
    kShcneCreate = 0x2,
    kShcneDelete = 0x4,
    kShcneMkDir = 0x8,
    kShcneRmDir = 0x10,
    kShcneUpdateDir = 0x1000,
    kShcneRenameFolder = 0x20000,
};

// One change as the receipt sees it: the event code and, for each of the two items, its display name and
// its file-system path (empty for an item without one, such as a virtual folder or a file the shell
// reported before it had a path).
// An item whose name can't be held in UTF-8 is flagged: its name and path only show it.
struct ShellChange {
    uint32_t event = 0;
    std::string name1;
    std::string path1;
    std::string name2;
    std::string path2;
    bool unrepresentable1 = false;
    bool unrepresentable2 = false;
};

// Where a change was seen. The same change on disk usually arrives once from each.
enum class ChangeSource { Shell, Watcher };

// True for the events the receipt acts on; the others are dropped before their items are looked at.
bool isTrackedEvent(uint32_t event);

}  // namespace tl
