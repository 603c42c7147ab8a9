#include "tracker/folder_list_box_win.h"

#include <algorithm>
#include <string>

#include "base/unique_handle_win.h"

namespace tl {

namespace {

WPARAM asWParam(int i) {
    return static_cast<WPARAM>(i);
}

}  // namespace

int FolderListBox::count() const {
    const LRESULT n = send(LB_GETCOUNT);
    return n < 0 ? 0 : static_cast<int>(n);
}

std::string FolderListBox::text(int index) const {
    const LRESULT length = send(LB_GETTEXTLEN, asWParam(index));
    if (length < 0) {
        return {};
    }
    std::string out(static_cast<size_t>(length) + 1, '\0');
    const LRESULT got = send(LB_GETTEXT, asWParam(index), reinterpret_cast<LPARAM>(out.data()));
    out.resize(got < 0 ? 0 : static_cast<size_t>(got));
    return out;
}

void FolderListBox::clear() {
    send(LB_RESETCONTENT);
    fitExtent();
}

void FolderListBox::add(std::string_view text) {
    const std::string z(text);
    send(LB_INSERTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(z.c_str()));
    fitExtent();
}

void FolderListBox::remove(int index) {
    send(LB_DELETESTRING, asWParam(index));
    fitExtent();
}

int FolderListBox::listIndex() const {
    return static_cast<int>(send(LB_GETCURSEL));
}

void FolderListBox::setListIndex(int index) {
    send(LB_SETCURSEL, asWParam(index));
}

bool FolderListBox::isSelected(int index) const {
    return index >= 0 && listIndex() == index;
}

void FolderListBox::setSelected(int index, bool selected) {
    if (selected) {
        setListIndex(index);
    } else if (listIndex() == index) {
        setListIndex(-1);
    }
}

int FolderListBox::selectedCount() const {
    return listIndex() >= 0 ? 1 : 0;
}

int FolderListBox::findExact(std::string_view text, int startAfter) const {
    const std::string z(text);
    const LRESULT found = send(LB_FINDSTRINGEXACT, asWParam(startAfter), reinterpret_cast<LPARAM>(z.c_str()));
    return found < 0 ? -1 : static_cast<int>(found);
}

void FolderListBox::fitExtent() const {
    if (!hwnd_) {
        return;
    }
    unique_window_dc dc(hwnd_);
    if (!dc.get()) {
        return;
    }
    const auto font = reinterpret_cast<HFONT>(send(WM_GETFONT));
    scoped_select_object selected(dc.get(), font ? static_cast<HGDIOBJ>(font) : ::GetStockObject(DEFAULT_GUI_FONT));
    int widest = 0;
    const int n = count();
    for (int i = 0; i < n; ++i) {
        const std::string line = text(i);
        SIZE size{};
        if (::GetTextExtentPoint32A(dc.get(), line.c_str(), static_cast<int>(line.size()), &size)) {
            widest = std::max(widest, static_cast<int>(size.cx));
        }
    }
    // A few pixels for the item's margins.
    send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest > 0 ? widest + 8 : 0));
}

}  // namespace tl
