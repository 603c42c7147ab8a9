#pragma once

#include <gtest/gtest.h>

#include <string>

#include "lists/list_box.h"

// One scenario run both on the fake list box (natively) and on a real LISTBOX (under Wine), so that
// tests written against the fake hold for the program too. The box must start empty.
namespace tl::test {

// "<count> lines, current <listIndex>, selected <lines> (<selectedCount>)".
inline std::string listBoxState(const ListBoxView& box) {
    std::string s = std::to_string(box.count()) + " lines, current " + std::to_string(box.listIndex()) + ", selected";
    for (int i = 0; i < box.count(); ++i) {
        s += box.isSelected(i) ? " " + std::to_string(i) : "";
    }
    return s + " (" + std::to_string(box.selectedCount()) + ")";
}

inline void checkListBoxContract(ListBoxView& box, bool multiSelect) {
    SCOPED_TRACE(multiSelect ? "multiple selection" : "single selection");
    EXPECT_EQ(listBoxState(box), "0 lines, current -1, selected (0)");
    EXPECT_EQ(box.findExact("x"), -1);

    for (const char* line : {"C:\\a.jpg", "C:\\B.jpg", "C:\\c.jpg", "C:\\b.JPG", "C:\\e.jpg"}) {
        box.add(line);
    }
    EXPECT_EQ(box.text(1), "C:\\B.jpg");
    EXPECT_EQ(box.text(7), "");
    EXPECT_EQ(listBoxState(box), "5 lines, current -1, selected (0)") << "adding selects nothing";

    // Whole text, any case, starting after the given line and wrapping round.
    EXPECT_EQ(box.findExact("c:\\b.jpg"), 1);
    EXPECT_EQ(box.findExact("c:\\b.jpg", 1), 3);
    EXPECT_EQ(box.findExact("c:\\b.jpg", 3), 1);
    EXPECT_EQ(box.findExact("C:\\b"), -1) << "a prefix is not a match";
    EXPECT_EQ(box.findExact("C:\\E.JPG", 4), 4);

    box.setListIndex(2);
    EXPECT_EQ(listBoxState(box), "5 lines, current 2, selected 2 (1)");
    box.setSelected(4, true);
    if (multiSelect) {
        EXPECT_EQ(listBoxState(box), "5 lines, current 4, selected 2 4 (2)") << "selecting brings the caret";
        box.setSelected(2, false);
        EXPECT_EQ(listBoxState(box), "5 lines, current 4, selected 4 (1)") << "deselecting another leaves it";
        box.setSelected(4, false);
        EXPECT_EQ(listBoxState(box), "5 lines, current -1, selected (0)") << "nothing selected, nothing current";
        box.setListIndex(3);
        box.setSelected(1, true);
        box.remove(0);  // before the caret: the caret keeps its number, the selection moves with its lines
        EXPECT_EQ(listBoxState(box), "4 lines, current 1, selected 0 2 (2)");
        box.setListIndex(3);
        box.remove(3);  // the caret line, the last one: the caret comes back onto the new last line
        EXPECT_EQ(listBoxState(box), "3 lines, current 2, selected 0 2 (2)");
        box.setListIndex(-1);
        EXPECT_EQ(listBoxState(box), "3 lines, current -1, selected (0)");
    } else {
        EXPECT_EQ(listBoxState(box), "5 lines, current 4, selected 4 (1)");
        box.remove(0);  // before the current line: it moves with its line
        EXPECT_EQ(listBoxState(box), "4 lines, current 3, selected 3 (1)");
        EXPECT_EQ(box.text(3), "C:\\e.jpg");
        box.remove(3);  // the current line itself: none is current
        EXPECT_EQ(listBoxState(box), "3 lines, current -1, selected (0)");
        box.setListIndex(1);
        box.setSelected(1, false);
        EXPECT_EQ(box.listIndex(), -1);
    }
    box.clear();
    EXPECT_EQ(listBoxState(box), "0 lines, current -1, selected (0)");
}

}  // namespace tl::test
