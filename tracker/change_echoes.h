#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tracker/shell_change.h"

namespace tl {

enum class ListAction { Add, Remove };

// Tells a change from its echo. The shell's notifications and the folder watchers both report the same
// file operations, each in its own order and with its own delay, so every list action (add or remove a
// path) may arrive twice. Per path, the actions carried out form an alternating run (add, remove, add
// ...); each source's reports are matched against that run by position, so the second report of an
// action is dropped while a genuine create, delete, create of one file is carried out three times, however
// the two sources interleave. A path's record is forgotten after a quiet spell, which bounds the memory and
// lets a source that missed some reports start afresh.
class ChangeEchoes {
  public:
    static constexpr uint32_t kDefaultQuietMs = 10000;

    explicit ChangeEchoes(uint32_t quietMs = kDefaultQuietMs) : quietMs_(quietMs) {}

    // True when the action is to be carried out; false for an echo of one already carried out. nowMs is a
    // millisecond tick count (it may wrap).
    bool admit(ChangeSource source, ListAction action, std::string_view path, uint32_t nowMs);

    // The number of paths remembered, for tests of the forgetting.
    size_t remembered() const { return paths_.size(); }

  private:
    struct SourceRun {
        int count = 0;  // how far into the path's run this source's reports have come
        ListAction last = ListAction::Add;
    };
    struct PathRun {
        ListAction first = ListAction::Add;
        int carriedOut = 0;
        std::array<SourceRun, 2> sources{};
        uint32_t lastSeen = 0;

        ListAction at(int position) const;
    };

    void forgetQuietPaths(uint32_t nowMs);

    uint32_t quietMs_;
    std::unordered_map<std::string, PathRun> paths_;
};

}  // namespace tl
