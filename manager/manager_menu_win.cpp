#include "manager/manager_menu_win.h"

#include <string_view>

#include "base/utf8_win.h"
#include "manager/manager_ids.h"

namespace tl {

namespace {

// Appends lines[i..] of the given depth to menu; returns the index after them.
size_t appendLevel(HMENU menu, const std::vector<MenuLine>& lines, size_t i, int depth) {
    while (i < lines.size() && lines[i].depth == depth) {
        const MenuLine& line = lines[i];
        const bool opensSubmenu = i + 1 < lines.size() && lines[i + 1].depth > depth;
        if (opensSubmenu) {
            HMENU sub = ::CreatePopupMenu();
            i = appendLevel(sub, lines, i + 1, depth + 1);
            ::AppendMenuW(menu, MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(sub), widen(line.caption).c_str());
            continue;
        }
        if (std::string_view(line.caption) == "-") {
            ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        } else {
            ::AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(line.id), widen(line.caption).c_str());
        }
        ++i;
    }
    return i;
}

}  // namespace

unique_hmenu buildMenuBar(const std::vector<MenuLine>& lines) {
    unique_hmenu bar(::CreateMenu());
    appendLevel(bar.get(), lines, 0, 0);
    return bar;
}

unique_hmenu buildPopupMenu(const std::vector<MenuLine>& lines) {
    unique_hmenu popup(::CreatePopupMenu());
    appendLevel(popup.get(), lines, 0, lines.empty() ? 0 : lines.front().depth);
    return popup;
}

void applyOptionChecks(HMENU menu, const OptionChecks& checks) {
    const auto check = [menu](UINT id, bool on) {
        ::CheckMenuItem(menu, id, static_cast<UINT>(MF_BYCOMMAND | (on ? MF_CHECKED : MF_UNCHECKED)));
    };
    check(IDM_CHECK_DUPLICATES, checks.checkDuplicates);
    check(IDM_AUTO_SORT_FOLDER, checks.autoSortFolder);
    for (int code = 0; code <= kAuto; ++code) {
        check(static_cast<UINT>(IDM_DEFAULT_CENTER + code), checks.addOrientation == code);
    }
    check(IDM_DEFAULT_FILL, checks.addOrientation == kFill);
}

}  // namespace tl
