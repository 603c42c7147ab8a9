#include "tracker/change_echoes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
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

TEST(ChangeEchoes, OneSourceAloneCarriesOutEveryChange) {
    ChangeEchoes echoes;
    int carried = 0;
    for (int i = 0; i < 6; ++i) {
        carried +=
            echoes.admit(kWatcher, i % 2 == 0 ? kAdd : kRemove, "C:\\Pics\\a.jpg", static_cast<uint32_t>(i)) ? 1 : 0;
    }
    EXPECT_EQ(carried, 6);
}

TEST(ChangeEchoes, ASourceRepeatingItselfIsOneChange) {
    ChangeEchoes echoes;
    EXPECT_TRUE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 0));
    EXPECT_FALSE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 1));
    EXPECT_FALSE(echoes.admit(kWatcher, kAdd, "C:\\Pics\\a.jpg", 2));
    EXPECT_TRUE(echoes.admit(kWatcher, kRemove, "C:\\Pics\\a.jpg", 3));
    EXPECT_FALSE(echoes.admit(kShell, kRemove, "C:\\Pics\\a.jpg", 4));
}

TEST(ChangeEchoes, ASourceThatMissedAReportCatchesUp) {
    ChangeEchoes echoes;
    // The watcher saw the file come; the shell only its going, and before the watcher did.
    EXPECT_TRUE(echoes.admit(kWatcher, kAdd, "C:\\Pics\\a.jpg", 0));
    EXPECT_TRUE(echoes.admit(kShell, kRemove, "C:\\Pics\\a.jpg", 1));
    EXPECT_FALSE(echoes.admit(kWatcher, kRemove, "C:\\Pics\\a.jpg", 2));
    // From here on both are in step.
    EXPECT_TRUE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 3));
    EXPECT_FALSE(echoes.admit(kWatcher, kAdd, "C:\\Pics\\a.jpg", 4));
}

TEST(ChangeEchoes, PathsAreComparedWithoutRegardToCaseAndKeptApart) {
    ChangeEchoes echoes;
    EXPECT_TRUE(echoes.admit(kWatcher, kAdd, "c:\\pics\\A.jpg", 0));
    EXPECT_FALSE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.JPG", 1));
    EXPECT_TRUE(echoes.admit(kShell, kAdd, "C:\\Pics\\b.jpg", 2));
}

TEST(ChangeEchoes, AQuietPathIsForgotten) {
    ChangeEchoes echoes(1000);
    EXPECT_TRUE(echoes.admit(kWatcher, kAdd, "C:\\Pics\\a.jpg", 0));
    EXPECT_FALSE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 1000)) << "at the edge of the window: an echo";
    EXPECT_EQ(echoes.remembered(), 1u);
    EXPECT_TRUE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 2001)) << "after a quiet spell: a new change";
    EXPECT_TRUE(echoes.admit(kShell, kAdd, "C:\\Pics\\b.jpg", 5000));
    EXPECT_EQ(echoes.remembered(), 1u) << "the quiet path's record is gone";
}

TEST(ChangeEchoes, TheTickCountMayWrap) {
    ChangeEchoes echoes(1000);
    EXPECT_TRUE(echoes.admit(kWatcher, kAdd, "C:\\Pics\\a.jpg", 0xFFFFFF00u));
    EXPECT_FALSE(echoes.admit(kShell, kAdd, "C:\\Pics\\a.jpg", 0x10u)) << "0x110 ms later, across the wrap";
}

}  // namespace
}  // namespace tl
