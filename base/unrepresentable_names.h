#pragma once

#include <string>
#include <vector>

namespace tl {

class Ui;

// NTFS takes a name holding an unpaired surrogate, which is no character and which UTF-8, the program's
// text, can't hold. Such a name comes in with U+FFFD in that place (so it can be shown) and flagged; it is
// never taken for the file, which the program could not open by it, nor put in a list, whose file would
// then name another. The user is told instead, by this message, naming the files or folders (at most
// ten, then how many more).
std::string unrepresentableNamesMessage(const std::vector<std::string>& shownPaths);
// Shows it; nothing when there are none.
void reportUnrepresentableNames(Ui& ui, const std::vector<std::string>& shownPaths);

}  // namespace tl
