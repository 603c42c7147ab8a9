#pragma once

#include <string>
#include <vector>

namespace tl {

class Ui;

// The classes root of the registry (HKEY_CLASSES_ROOT), as the file association uses it.
class ClassesRegistry {
  public:
    virtual ~ClassesRegistry() = default;
    // Creates the key (RegCreateKeyA) and writes its default value as REG_SZ (RegSetValueA).
    virtual void setDefaultValue(const std::string& subKey, const std::string& value) = 0;
    // One RegDeleteKeyA: a key that has sub-keys may stay, as the system decides.
    virtual void deleteKey(const std::string& subKey) = 0;
};

struct AssociationKey {
    std::string subKey;
    std::string defaultValue;
    bool operator==(const AssociationKey&) const = default;
};

// The keys that associate ".wall" files with the program, in the order they are written. programDir is
// the program's directory, exeName its file name without extension.
std::vector<AssociationKey> wallAssociationKeys(const std::string& programDir, const std::string& exeName);

// Writes the association and says how to undo it. Registry failures are not checked.
void associateWallFiles(ClassesRegistry& registry, Ui& ui, const std::string& programDir, const std::string& exeName);
// Asks first (an installer's uninstall may need the keys), then deletes the program's key and ".wall".
void unassociateWallFiles(ClassesRegistry& registry, Ui& ui);

}  // namespace tl
