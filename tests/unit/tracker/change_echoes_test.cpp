#include "tracker/change_echoes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

namespace tl {
namespace {

constexpr ChangeSource kShell = ChangeSource::Shell;
constexpr ChangeSource kWatcher = ChangeSource::Watcher;
constexpr ListAction kAdd = ListAction::Add;
constexpr ListAction kRemove = ListAction::Remove;

std::string text(ListAction a) {
    return a == kAdd ? "add" : "remove";
}

// Every interleaving of the two sources' reports of the same run of actions carries the run out once.
TEST(ChangeEchoes, EveryInterleavingOfTwoIdenticalReportsActsOnce) {
    const std::vector<std::vector<ListAction>> runs = {
        {kAdd}, {kRemove}, {kAdd, kRemove}, {kAdd, kRemove, kAdd}, {kRemove, kAdd, kRemove, kAdd}};
    for (const auto& run : runs) {
        const size_t n = run.size();
        // Choose which of the 2n reports come from the shell: a bit pattern with n ones.
        std::vector<bool> fromShell(2 * n, false);
        std::fill(fromShell.begin() + static_cast<long>(n), fromShell.end(), true);
        do {
            ChangeEchoes echoes;
            size_t shellNext = 0, watcherNext = 0;
            std::vector<ListAction> carriedOut;
            uint32_t now = 0;
            std::string order;
            for (bool shell : fromShell) {
                const ListAction a = run[shell ? shellNext++ : watcherNext++];
                order += (shell ? "S" : "W") + text(a) + " ";
                if (echoes.admit(shell ? kShell : kWatcher, a, "C:\\Pics\\a.jpg", now += 5)) {
                    carriedOut.push_back(a);
                }
            }
            EXPECT_EQ(carriedOut, run) << order;
        } while (std::next_permutation(fromShell.begin(), fromShell.end()));
    }
}

TEST(ChangeEchoes, AChangeIsCarriedOutOnceWhicheverSourceReportsItFirst) {
    const char* const a = "C:\\Pics\\a.jpg";
    const struct {
        const char* what;
        std::vector<std::tuple<ChangeSource, ListAction, const char*, uint32_t, bool>> steps;  // ..., carried out
    } cases[] = {
        {"one source alone",
         {{kWatcher, kAdd, a, 0, true}, {kWatcher, kRemove, a, 1, true}, {kWatcher, kAdd, a, 2, true}}},
        {"a source repeating itself is one change",
         {{kShell, kAdd, a, 0, true}, {kShell, kAdd, a, 1, false}, {kWatcher, kAdd, a, 2, false}}},
        {"the other source's echo of a going", {{kWatcher, kRemove, a, 0, true}, {kShell, kRemove, a, 1, false}}},
        // The watcher saw the file come; the shell only its going, and before the watcher did. From there on
        // both are in step.
        {"a source that missed a report catches up",
         {{kWatcher, kAdd, a, 0, true},
          {kShell, kRemove, a, 1, true},
          {kWatcher, kRemove, a, 2, false},
          {kShell, kAdd, a, 3, true},
          {kWatcher, kAdd, a, 4, false}}},
        {"paths compared without regard to case, and kept apart",
         {{kWatcher, kAdd, "c:\\pics\\A.jpg", 0, true},
          {kShell, kAdd, "C:\\Pics\\a.JPG", 1, false},
          {kShell, kAdd, "C:\\Pics\\b.jpg", 2, true}}},
        {"a quiet path is forgotten",
         {{kWatcher, kAdd, a, 0, true}, {kShell, kAdd, a, 1000, false}, {kShell, kAdd, a, 2001, true}}},
        {"the tick count may wrap", {{kWatcher, kAdd, a, 0xFFFFFF00u, true}, {kShell, kAdd, a, 0x10u, false}}},
    };
    for (const auto& c : cases) {
        ChangeEchoes echoes(1000);
        for (const auto& [source, action, path, at, carried] : c.steps) {
            EXPECT_EQ(echoes.admit(source, action, path, at), carried)
                << c.what << ", " << text(action) << " at " << at;
        }
    }
    ChangeEchoes echoes(1000);
    echoes.admit(kWatcher, kAdd, a, 0);
    echoes.admit(kShell, kAdd, "C:\\Pics\\b.jpg", 5000);
    EXPECT_EQ(echoes.remembered(), 1u) << "the quiet path's record is gone";
}

}  // namespace
}  // namespace tl
