#pragma once

namespace tl {

class ListBoxView;

// The parts of a window that a removal from its list touches: the list box, the preview panel, and the
// list box's click handling. Both frmMain and frmManager offer it.
class RemovalForm {
public:
    virtual ~RemovalForm() = default;
    virtual ListBoxView& removalList() = 0;
    // Empties the preview's picture and its tag (the path it shows).
    virtual void clearPreview() = 0;
    virtual void clearPreviewTag() = 0;
    // Makes index the current line and runs the list box's click handling for it, which applies or
    // previews that entry.
    virtual void selectLineAndClick(int index) = 0;
    virtual void hidePreviewFrame() = 0;
};

// After entries were removed from a list: select the line that moved into the first removed one's place
// (or the new last line, or the first), so that a picture stays on show. removedIndex may be -1.
void selectAfterRemoval(int removedIndex, RemovalForm& form);

}  // namespace tl
