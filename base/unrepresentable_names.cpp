#include "base/unrepresentable_names.h"

#include "base/ui.h"
#include "base/utf8.h"

namespace tl {

namespace {
constexpr size_t kNamesShown = 10;
}

std::string unrepresentableNamesMessage(const std::vector<std::string>& shownPaths) {
    const bool one = shownPaths.size() == 1;
    std::string text = std::string(one ? "This name holds" : "These names hold") +
                       " a character that is not valid Unicode (shown as " + std::string(kReplacementCharacter) +
                       "). Tessaline can't keep " + (one ? "it" : "them") +
                       " in a list or open the file by it, and left " + (one ? "it" : "them") + " out:\r\n";
    for (size_t i = 0; i < shownPaths.size() && i < kNamesShown; ++i) {
        text += "\r\n" + shownPaths[i];
    }
    if (shownPaths.size() > kNamesShown) {
        text += "\r\n... and " + std::to_string(shownPaths.size() - kNamesShown) + " more";
    }
    text += std::string("\r\n\r\nRename ") + (one ? "it" : "them") + " in Explorer and add " + (one ? "it" : "them") +
            " again.";
    return text;
}

void reportUnrepresentableNames(Ui& ui, const std::vector<std::string>& shownPaths) {
    if (!shownPaths.empty()) {
        ui.messageBox(unrepresentableNamesMessage(shownPaths), "Tessaline", kMbOk | kMbIconExclamation);
    }
}

}  // namespace tl
