#include "manager/duplicate_index.h"

#include "base/text.h"

namespace tl {

void DuplicateIndex::add(std::string_view text) {
    keys_.insert(lowerCase(text));
}

bool DuplicateIndex::contains(std::string_view text) const {
    return keys_.count(lowerCase(text)) != 0;
}

}  // namespace tl
