#include "manager/file_association.h"

#include "base/ui.h"

namespace tl {

namespace {

constexpr const char* kProductName = "Tessaline";

}  // namespace

std::vector<AssociationKey> wallAssociationKeys(const std::string& programDir, const std::string& exeName) {
    const std::string n = kProductName;
    const std::string exe = programDir + "\\" + exeName;
    return {
        {n, n + " File"},
        {".wall", n},
        // The open verb passes the list file as the program's first argument.
        {n + "\\shell\\open\\command", "\"" + exe + ".EXE\" %1"},
        {n + "\\DefaultIcon", exe + ".exe,0"},
    };
}

void associateWallFiles(ClassesRegistry& registry, Ui& ui, const std::string& programDir, const std::string& exeName) {
    for (const AssociationKey& key : wallAssociationKeys(programDir, exeName)) {
        registry.setDefaultValue(key.subKey, key.defaultValue);
    }
    ui.messageBox("WALL files are now associated with Tessaline.\r\nTo undo this action, choose 'Un-associate'.",
                  "Complete!", kMbOk);
}

void unassociateWallFiles(ClassesRegistry& registry, Ui& ui) {
    const int answer = ui.messageBox(
        "If you installed this program with an installer, doing this action may break the uninstallation later. Do "
        "you wish to continue?",
        "Warning!", kMbYesNo);
    if (answer != kIdYes) {
        return;
    }
    registry.deleteKey(kProductName);
    registry.deleteKey(".wall");
    ui.messageBox("Registry entries deleted.", "Complete!", kMbOk);
}

}  // namespace tl
