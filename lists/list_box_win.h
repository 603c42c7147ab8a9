#pragma once

#include <windows.h>

#include <string_view>

#include "lists/list_box.h"

namespace tl {

// A LISTBOX control seen through ListBoxView. Single or multiple selection is read from the control's
// style. Lines are always appended (never sorted in), so a line's index stays its entry's slot.
class Win32ListBox : public ListBoxView {
  public:
    Win32ListBox() = default;
    explicit Win32ListBox(HWND listBox) : hwnd_(listBox) {}
    void attach(HWND listBox) { hwnd_ = listBox; }
    HWND hwnd() const { return hwnd_; }
    bool multiSelect() const;

    // Keeps the box's horizontal scroll extent as wide as its widest line, for lists of paths that are
    // wider than the box. Adding measures only the new line, so filling a long list stays linear.
    void keepExtentFitted(bool on) { fitExtent_ = on; }
    // Measures every line again (after a change of font).
    void fitExtent();

    int count() const override;
    std::string text(int index) const override;
    void clear() override;
    void add(std::string_view text) override;
    void remove(int index) override;
    int listIndex() const override;
    void setListIndex(int index) override;
    bool isSelected(int index) const override;
    void setSelected(int index, bool selected) override;
    int selectedCount() const override;
    int findExact(std::string_view text, int startAfter = -1) const override;

  private:
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return hwnd_ ? ::SendMessageW(hwnd_, message, wParam, lParam) : LB_ERR;
    }
    int lineWidth(HDC dc, std::wstring_view line) const;

    HWND hwnd_ = nullptr;
    bool fitExtent_ = false;
    int extent_ = 0;
};

}  // namespace tl
