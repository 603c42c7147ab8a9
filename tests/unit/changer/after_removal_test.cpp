#include "changer/after_removal.h"

#include <gtest/gtest.h>

#include "support/fake_list_box.h"

namespace tl {
namespace {

class RecordingForm : public RemovalForm {
  public:
    explicit RecordingForm(std::initializer_list<std::string> lines) : list(lines) {}
    ListBoxView& removalList() override { return list; }
    void clearPreview() override { log += "clear;"; }
    void clearPreviewTag() override { log += "untag;"; }
    void selectLineAndClick(int index) override {
        list.setListIndex(index);
        log += "click " + std::to_string(index) + ";";
    }
    void hidePreviewFrame() override { log += "hide;"; }

    test::FakeListBox list;
    std::string log;
};

struct AfterRemovalCase {
    int removedIndex;
    std::initializer_list<std::string> remaining;
    const char* expectedLog;
};

TEST(SelectAfterRemoval, PicksTheNeighbourThatKeepsAPictureOnShow) {
    const AfterRemovalCase cases[] = {
        // The entry that moved up into the removed one's place.
        {1, {"a", "c", "d"}, "clear;click 1;untag;hide;"},
        // The removed entry was the last: the new last line.
        {3, {"a", "b", "c"}, "clear;click 2;untag;hide;"},
        // Past the end (several removed at the end): the first line.
        {5, {"a", "b"}, "clear;click 0;untag;hide;"},
        // The only entry went: nothing to select, the preview is emptied and its frame hidden.
        {0, {}, "clear;untag;hide;"},
        // Nothing was removed.
        {-1, {"a"}, "clear;untag;hide;"},
    };
    for (const auto& c : cases) {
        RecordingForm form(c.remaining);
        selectAfterRemoval(c.removedIndex, form);
        EXPECT_EQ(form.log, c.expectedLog) << "removed index " << c.removedIndex;
    }
}

}  // namespace
}  // namespace tl
