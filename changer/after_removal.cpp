#include "changer/after_removal.h"

#include "lists/list_box.h"

namespace tl {

void selectAfterRemoval(int removedIndex, RemovalForm& form) {
    form.clearPreview();
    const int count = form.removalList().count();
    if (count > 0) {
        if (removedIndex < count) {
            // -1 (nothing was removed) selects no line here, as the list box would refuse it.
            if (removedIndex >= 0) {
                form.selectLineAndClick(removedIndex);
            }
        }
        if (removedIndex == count) {
            form.selectLineAndClick(removedIndex - 1);
        }
        if (removedIndex > count) {
            form.selectLineAndClick(0);
        }
    }
    // The tag is cleared once more after the reselection, and the facts frame hidden, on purpose: the
    // next apply of the same path must not be skipped as "already on show".
    form.clearPreviewTag();
    form.hidePreviewFrame();
}

}  // namespace tl
