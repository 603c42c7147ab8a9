#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace tl {

// Asks a list box or combo box for the first item after startAfter (-1: from the top; the search wraps
// round) matching text without regard to case: the whole text when exact, else its beginning. Returns
// the control's answer (-1 for none); a control of any other class gives 0 and is not asked.
int findListItem(HWND control, std::string_view text, int startAfter, bool exact);

// Deletes a file. Through the shell (useShell), to the recycle bin when recycle is set, otherwise for good
// after the shell's own question; true exactly when the file is gone afterwards. Without the shell the
// file is deleted directly, never recycled, and the answer is true. owner parents the shell's windows.
bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell, HWND owner = nullptr);

}  // namespace tl
