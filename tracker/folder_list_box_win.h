#pragma once

#include <windows.h>

#include "lists/list_box.h"

namespace tl {

// frmTracker's List1, a single-selection LISTBOX, seen through ListBoxView. Keeps the box's horizontal
// extent wide enough for its longest folder, since folder paths are often wider than the box.
class FolderListBox : public ListBoxView {
  public:
    void attach(HWND listBox) { hwnd_ = listBox; }
    HWND hwnd() const { return hwnd_; }

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

    // Recomputes the horizontal extent, after a change of font.
    void fitExtent() const;

  private:
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return hwnd_ ? ::SendMessageA(hwnd_, message, wParam, lParam) : LB_ERR;
    }

    HWND hwnd_ = nullptr;
};

}  // namespace tl
