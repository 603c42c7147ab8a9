#pragma once

#include "manager/file_association.h"

namespace tl {

// HKEY_CLASSES_ROOT through RegCreateKeyW, RegSetValueW and RegDeleteKeyW. Failures pass silently.
class Win32ClassesRegistry : public ClassesRegistry {
  public:
    void setDefaultValue(const std::string& subKey, const std::string& value) override;
    void deleteKey(const std::string& subKey) override;
};

}  // namespace tl
