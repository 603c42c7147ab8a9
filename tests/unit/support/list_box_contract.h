#pragma once

#include <gtest/gtest.h>

#include "lists/list_box.h"

// One scenario run both on the fake list box (natively) and on a real LISTBOX (under Wine), so that
// tests written against the fake hold for the program too. The box must start empty.
namespace tl::test {

inline void checkListBoxContract(ListBoxView& box, bool multiSelect) {
    SCOPED_TRACE(multiSelect ? "multiple selection" : "single selection");
    EXPECT_EQ(box.count(), 0);
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_EQ(box.findExact("x"), -1);

    for (const char* line : {"C:\\a.jpg", "C:\\B.jpg", "C:\\c.jpg", "C:\\b.JPG", "C:\\e.jpg"}) {
        box.add(line);
    }
    EXPECT_EQ(box.count(), 5);
    EXPECT_EQ(box.text(1), "C:\\B.jpg");
    EXPECT_EQ(box.text(7), "");
    EXPECT_EQ(box.listIndex(), -1) << "adding selects nothing";
    EXPECT_EQ(box.selectedCount(), 0);

    // Whole text, any case, starting after the given line and wrapping round.
    EXPECT_EQ(box.findExact("c:\\b.jpg"), 1);
    EXPECT_EQ(box.findExact("c:\\b.jpg", 1), 3);
    EXPECT_EQ(box.findExact("c:\\b.jpg", 3), 1);
    EXPECT_EQ(box.findExact("C:\\b"), -1) << "a prefix is not a match";
    EXPECT_EQ(box.findExact("C:\\E.JPG", 4), 4);

    box.setListIndex(2);
    EXPECT_EQ(box.listIndex(), 2);
    EXPECT_TRUE(box.isSelected(2));
    EXPECT_EQ(box.selectedCount(), 1);

    box.setSelected(4, true);
    if (multiSelect) {
        EXPECT_TRUE(box.isSelected(2));
        EXPECT_TRUE(box.isSelected(4));
        EXPECT_EQ(box.selectedCount(), 2);
        EXPECT_EQ(box.listIndex(), 4) << "selecting a line brings the caret onto it";
        box.setSelected(2, false);
        EXPECT_EQ(box.listIndex(), 4) << "deselecting another line leaves the caret";
        EXPECT_EQ(box.selectedCount(), 1);
        box.setSelected(4, false);
        EXPECT_EQ(box.listIndex(), -1) << "with nothing selected nothing is current";
        box.setListIndex(3);
        box.setSelected(1, true);
        EXPECT_EQ(box.listIndex(), 1);
        box.remove(0);  // before the caret: the caret keeps its number
        EXPECT_EQ(box.count(), 4);
        EXPECT_EQ(box.listIndex(), 1);
        EXPECT_TRUE(box.isSelected(0)) << "the selection moves with its lines";
        EXPECT_TRUE(box.isSelected(2));
        EXPECT_EQ(box.selectedCount(), 2);
        box.setListIndex(3);
        box.remove(3);  // the caret line, the last one: the caret comes back onto the new last line
        EXPECT_EQ(box.count(), 3);
        EXPECT_EQ(box.listIndex(), 2);
        EXPECT_EQ(box.selectedCount(), 2);
        box.setListIndex(-1);
        EXPECT_EQ(box.selectedCount(), 0);
        EXPECT_EQ(box.listIndex(), -1);
    } else {
        EXPECT_FALSE(box.isSelected(2));
        EXPECT_TRUE(box.isSelected(4));
        EXPECT_EQ(box.listIndex(), 4);
        EXPECT_EQ(box.selectedCount(), 1);
        box.remove(0);  // before the current line: it moves with its line
        EXPECT_EQ(box.listIndex(), 3);
        EXPECT_EQ(box.text(3), "C:\\e.jpg");
        box.remove(3);  // the current line itself: none is current
        EXPECT_EQ(box.listIndex(), -1);
        EXPECT_EQ(box.selectedCount(), 0);
        box.setListIndex(1);
        box.setSelected(1, false);
        EXPECT_EQ(box.listIndex(), -1);
    }

    box.clear();
    EXPECT_EQ(box.count(), 0);
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_EQ(box.selectedCount(), 0);
}

}  // namespace tl::test
