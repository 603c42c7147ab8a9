#pragma once

#include <string>
#include <string_view>

namespace tl {

// A list box as the portable code sees it: the changer's List1 (its cursor), the manager's List1, the
// tracker's folder list. The Win32 side wraps a real LISTBOX; tests use a fake.
//
// Moving the selection from code never raises a click: the caller decides what a move means.
class ListBoxView {
  public:
    virtual ~ListBoxView() = default;

    virtual int count() const = 0;
    virtual std::string text(int index) const = 0;
    virtual void clear() = 0;
    virtual void add(std::string_view text) = 0;
    virtual void remove(int index) = 0;

    // The current line (ListIndex): -1 for none. In a single-selection box it is the selected line. In
    // a multiple-selection box it is the line with the focus (the caret) while any line is selected, and
    // -1 while none is: setListIndex(i) moves the caret to i and selects line i (other lines keep their
    // selection), setListIndex(-1) clears the selection, and selecting a line with setSelected brings the
    // caret onto it too. Removing lines leaves the caret's number as it was (pulled back onto the last
    // line), as the Win32 list box does.
    virtual int listIndex() const = 0;
    virtual void setListIndex(int index) = 0;

    // Selection of a multiple-selection list box (a single-selection one selects the current line).
    virtual bool isSelected(int index) const = 0;
    virtual void setSelected(int index, bool selected) = 0;
    virtual int selectedCount() const = 0;

    // The first line after startAfter (-1: from the start) equal to text, whole and without regard to
    // case (LB_FINDSTRINGEXACT); -1 when none.
    virtual int findExact(std::string_view text, int startAfter = -1) const = 0;
};

}  // namespace tl
