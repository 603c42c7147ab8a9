#pragma once

#include <windows.h>

#include "lists/list_box.h"

namespace tl {

// A LISTBOX control seen through ListBoxView. Single or multiple selection is read from the control's
// style. Lines are always appended (never sorted in), so a line's index stays its entry's slot.
class Win32ListBox : public ListBoxView {
  public:
    explicit Win32ListBox(HWND listBox) : hwnd_(listBox) {}
    HWND hwnd() const { return hwnd_; }
    bool multiSelect() const;

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
        return ::SendMessageA(hwnd_, message, wParam, lParam);
    }

    HWND hwnd_;
};

}  // namespace tl
