#include "tracker/change_echoes.h"

#include "base/text.h"

namespace tl {

namespace {

ListAction opposite(ListAction a) {
    return a == ListAction::Add ? ListAction::Remove : ListAction::Add;
}

}  // namespace

ListAction ChangeEchoes::PathRun::at(int position) const {
    return position % 2 == 0 ? first : opposite(first);
}

void ChangeEchoes::forgetQuietPaths(uint32_t nowMs) {
    for (auto it = paths_.begin(); it != paths_.end();) {
        // Unsigned difference: right across the tick count's wrap.
        if (nowMs - it->second.lastSeen > quietMs_) {
            it = paths_.erase(it);
        } else {
            ++it;
        }
    }
}

bool ChangeEchoes::admit(ChangeSource source, ListAction action, std::string_view path, uint32_t nowMs) {
    forgetQuietPaths(nowMs);
    // The shell reports paths in the disk's case, the watchers as the folder was typed.
    const std::string key = lowerCase(path);
    const size_t s = source == ChangeSource::Shell ? 0 : 1;
    auto found = paths_.find(key);
    if (found == paths_.end()) {
        PathRun run;
        run.first = action;
        run.carriedOut = 1;
        run.sources[s] = {1, action};
        run.lastSeen = nowMs;
        paths_.emplace(key, run);
        return true;
    }
    PathRun& run = found->second;
    run.lastSeen = nowMs;
    SourceRun& mine = run.sources[s];
    if (mine.count > 0 && mine.last == action) {
        return false;  // the source repeats itself: nothing happened in between
    }
    ++mine.count;
    mine.last = action;
    const int position = mine.count - 1;
    if (position < run.carriedOut && run.at(position) == action) {
        return false;  // the other source reported this one first
    }
    if (run.at(run.carriedOut - 1) == action) {
        // Out of step (this source missed a report): the list is in that state already.
        mine.count = run.carriedOut;
        return false;
    }
    ++run.carriedOut;
    mine.count = run.carriedOut;
    return true;
}

}  // namespace tl
