#include "lists/list_box_win.h"

#include <algorithm>
#include <string>

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"
#include "base/window_win.h"

namespace tl {

namespace {

WPARAM asWParam(int i) {
    return static_cast<WPARAM>(i);
}

}  // namespace

bool Win32ListBox::multiSelect() const {
    return (::GetWindowLongW(hwnd_, GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

int Win32ListBox::count() const {
    const auto n = static_cast<int>(send(LB_GETCOUNT));
    return n < 0 ? 0 : n;
}

std::string Win32ListBox::text(int index) const {
    return hwnd_ ? listItemText(hwnd_, index) : std::string();
}

void Win32ListBox::clear() {
    send(LB_RESETCONTENT);
    if (fitExtent_) {
        extent_ = 0;
        send(LB_SETHORIZONTALEXTENT, 0);
    }
}

void Win32ListBox::add(std::string_view text) {
    const std::wstring wide = widen(text);
    send(LB_INSERTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(wide.c_str()));
    if (fitExtent_ && hwnd_) {
        unique_window_dc dc(hwnd_);
        const int width = lineWidth(dc.get(), wide);
        if (width > extent_) {
            extent_ = width;
            send(LB_SETHORIZONTALEXTENT, asWParam(extent_));
        }
    }
}

void Win32ListBox::remove(int index) {
    send(LB_DELETESTRING, asWParam(index));
    if (fitExtent_) {
        fitExtent();
    }
}

int Win32ListBox::lineWidth(HDC dc, std::wstring_view line) const {
    if (!dc) {
        return 0;
    }
    const auto font = reinterpret_cast<HFONT>(send(WM_GETFONT));
    scoped_select_object selected(dc, font ? static_cast<HGDIOBJ>(font) : ::GetStockObject(DEFAULT_GUI_FONT));
    SIZE size{};
    if (!::GetTextExtentPoint32W(dc, line.data(), static_cast<int>(line.size()), &size)) {
        return 0;
    }
    return static_cast<int>(size.cx) + 8;  // a few pixels for the item's margins
}

void Win32ListBox::fitExtent() {
    if (!hwnd_) {
        return;
    }
    unique_window_dc dc(hwnd_);
    int widest = 0;
    const int n = count();
    for (int i = 0; i < n; ++i) {
        widest = std::max(widest, lineWidth(dc.get(), widen(text(i))));
    }
    extent_ = widest;
    send(LB_SETHORIZONTALEXTENT, asWParam(extent_));
}

int Win32ListBox::listIndex() const {
    if (!multiSelect()) {
        return static_cast<int>(send(LB_GETCURSEL));
    }
    // The caret of a fresh box already stands on line 0; with nothing selected nothing is current.
    if (send(LB_GETSELCOUNT) <= 0) {
        return -1;
    }
    return static_cast<int>(send(LB_GETCARETINDEX));
}

void Win32ListBox::setListIndex(int index) {
    if (!multiSelect()) {
        send(LB_SETCURSEL, asWParam(index));
    } else if (index < 0) {
        send(LB_SETSEL, FALSE, -1);
    } else {
        send(LB_SETSEL, TRUE, index);
        send(LB_SETCARETINDEX, asWParam(index), FALSE);
    }
}

bool Win32ListBox::isSelected(int index) const {
    return send(LB_GETSEL, asWParam(index)) > 0;
}

void Win32ListBox::setSelected(int index, bool selected) {
    if (multiSelect()) {
        send(LB_SETSEL, selected ? TRUE : FALSE, index);
    } else if (selected) {
        send(LB_SETCURSEL, asWParam(index));
    } else if (send(LB_GETCURSEL) == index) {
        send(LB_SETCURSEL, static_cast<WPARAM>(-1));
    }
}

int Win32ListBox::selectedCount() const {
    if (!multiSelect()) {
        return send(LB_GETCURSEL) >= 0 ? 1 : 0;
    }
    const auto n = static_cast<int>(send(LB_GETSELCOUNT));
    return n < 0 ? 0 : n;
}

int Win32ListBox::findExact(std::string_view text, int startAfter) const {
    const std::wstring wide = widen(text);
    const auto found =
        static_cast<int>(send(LB_FINDSTRINGEXACT, asWParam(startAfter), reinterpret_cast<LPARAM>(wide.c_str())));
    return found < 0 ? -1 : found;
}

}  // namespace tl
