#include "changer/menu_state.h"

namespace tl {

bool MenuState::checked(int id) const {
    const auto it = checks_.find(id);
    return it != checks_.end() && it->second;
}

void MenuState::setChecked(int id, bool checked) {
    checks_[id] = checked;
}

const std::string* MenuState::caption(int id) const {
    const auto it = captions_.find(id);
    return it == captions_.end() ? nullptr : &it->second;
}

void MenuState::setCaption(int id, std::string_view caption) {
    captions_[id] = std::string(caption);
}

}  // namespace tl
