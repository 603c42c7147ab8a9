#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tl {

// One item of the "Pick different list" submenu.
struct ListMenuItem {
    std::string caption;
    std::string path;
    bool current = false;  // the list in use: checked and disabled
    bool operator==(const ListMenuItem&) const = default;
};

// The run-time state of frmMain's menu items: check marks, captions that replaced the designed ones, and
// the list submenu's items. The portable code decides it; the Win32 side puts it on the menus before
// one pops up.
class MenuState {
  public:
    bool checked(int id) const;
    void setChecked(int id, bool checked);
    // The caption given at run time, or null while the designed one stands.
    const std::string* caption(int id) const;
    void setCaption(int id, std::string_view caption);

    // Items whose check mark was ever set, with their state, for the Win32 side to apply.
    const std::map<int, bool>& checks() const { return checks_; }
    const std::map<int, std::string>& captions() const { return captions_; }

    std::vector<ListMenuItem> listItems;

  private:
    std::map<int, bool> checks_;
    std::map<int, std::string> captions_;
};

}  // namespace tl
