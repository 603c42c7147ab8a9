#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace tl {

// The texts a list box holds, for the duplicate check: answers as the box's exact search
// (LB_FINDSTRINGEXACT: whole text, without regard to case) would, in constant time, so that adding
// thousands of files to a long list stays quick. The owner mirrors every add and clear of the box here.
class DuplicateIndex {
  public:
    void add(std::string_view text);
    void clear() { keys_.clear(); }
    bool contains(std::string_view text) const;

  private:
    std::unordered_set<std::string> keys_;
};

}  // namespace tl
