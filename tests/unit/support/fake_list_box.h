#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/text.h"
#include "lists/list_box.h"

namespace tl::test {

// A list box in memory that behaves as the Win32 one does (lists/list_box_win.h), as the contract in
// lists/list_box.h describes it. Adding appends and changes neither the current line nor the selection.
// Nothing raises a click.
class FakeListBox : public ListBoxView {
  public:
    explicit FakeListBox(bool multiSelect = true) : multiSelect_(multiSelect), current_(multiSelect ? 0 : -1) {}
    FakeListBox(std::initializer_list<std::string> lines, bool multiSelect = true) : FakeListBox(multiSelect) {
        for (const auto& l : lines) {
            add(l);
        }
    }

    int count() const override { return static_cast<int>(items_.size()); }
    std::string text(int index) const override { return valid(index) ? items_[at(index)] : std::string(); }
    void clear() override {
        items_.clear();
        selected_.clear();
        current_ = multiSelect_ ? 0 : -1;
    }
    void add(std::string_view text) override {
        items_.emplace_back(text);
        selected_.push_back(false);
    }
    void remove(int index) override {
        if (!valid(index)) {
            return;
        }
        items_.erase(items_.begin() + index);
        selected_.erase(selected_.begin() + index);
        if (multiSelect_) {
            // The caret keeps its number, pulled back onto the last line when it falls off the end.
            current_ = std::max(0, std::min(current_, count() - 1));
        } else if (current_ == index) {
            current_ = -1;
        } else if (current_ > index) {
            --current_;
        }
    }

    int listIndex() const override {
        if (multiSelect_) {
            return selectedCount() == 0 ? -1 : current_;
        }
        return current_;
    }
    void setListIndex(int index) override {
        if (index < -1 || index >= count()) {
            return;
        }
        if (!multiSelect_) {
            std::fill(selected_.begin(), selected_.end(), false);
            if (index >= 0) {
                selected_[at(index)] = true;
            }
            current_ = index;
        } else if (index < 0) {
            std::fill(selected_.begin(), selected_.end(), false);
        } else {
            selected_[at(index)] = true;
            current_ = index;
        }
    }

    bool isSelected(int index) const override { return valid(index) && selected_[at(index)]; }
    void setSelected(int index, bool selected) override {
        if (!valid(index)) {
            return;
        }
        if (!multiSelect_) {
            if (selected) {
                setListIndex(index);
            } else if (current_ == index) {
                setListIndex(-1);
            }
            return;
        }
        selected_[at(index)] = selected;
        if (selected) {
            current_ = index;  // selecting a line brings the caret onto it, as LB_SETSEL does
        }
    }
    int selectedCount() const override {
        int n = 0;
        for (bool s : selected_) {
            n += s ? 1 : 0;
        }
        return n;
    }

    int findExact(std::string_view text, int startAfter = -1) const override {
        // As LB_FINDSTRINGEXACT: the search starts after startAfter and wraps round to the top.
        const int n = count();
        if (n == 0) {
            return -1;
        }
        const int first = startAfter < -1 || startAfter >= n ? 0 : startAfter + 1;
        for (int k = 0; k < n; ++k) {
            const int i = (first + k) % n;
            if (equalsNoCase(items_[at(i)], text)) {
                return i;
            }
        }
        return -1;
    }

    // For assertions: the lines and the selected line numbers.
    const std::vector<std::string>& lines() const { return items_; }
    std::vector<int> selectedLines() const {
        std::vector<int> out;
        for (int i = 0; i < count(); ++i) {
            if (selected_[at(i)]) {
                out.push_back(i);
            }
        }
        return out;
    }
    bool multiSelect() const { return multiSelect_; }

  private:
    bool valid(int index) const { return index >= 0 && index < count(); }
    static size_t at(int index) { return static_cast<size_t>(index); }

    bool multiSelect_;
    std::vector<std::string> items_;
    std::vector<bool> selected_;
    int current_;  // the selected line, or in a multiple-selection box the caret
};

}  // namespace tl::test
