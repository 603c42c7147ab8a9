#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/random.h"
#include "base/text.h"
#include "lists/wallpaper_list.h"

namespace tl {
namespace {

// The quicksort written out plainly, recursion and all, as the reference for the exact result.
void referenceSort(WallpaperEntries& e, int lo, int hi, RandomSource& random) {
    if (lo >= hi) {
        return;
    }
    const int p = lo + static_cast<int>(random.next() * (hi - lo + 1));
    const WallpaperEntry pivot = e[p];
    const std::string pivotKey = lowerCase(pivot.path);
    e[p] = e[lo];
    int i = lo;
    int j = hi;
    for (;;) {
        while (j > i && lowerCase(e[j].path) >= pivotKey) {
            --j;
        }
        if (j <= i) {
            e[i] = pivot;
            break;
        }
        e[i] = e[j];
        ++i;
        while (i < j && lowerCase(e[i].path) < pivotKey) {
            ++i;
        }
        if (i >= j) {
            i = j;
            e[j] = pivot;
            break;
        }
        e[j] = e[i];
    }
    referenceSort(e, lo, i - 1, random);
    referenceSort(e, i + 1, hi, random);
}

// A random list whose orientation tells the entries apart, with repeats and case variants of paths.
WallpaperEntries randomList(std::mt19937& gen, int n, int distinctPaths) {
    static const char* const kParts[] = {"C:\\Pictures\\", "c:\\pictures\\", "D:\\", "C:\\Pictures\\Sea\\", "\xC4"};
    WallpaperEntries out;
    std::uniform_int_distribution<int> part(0, 4);
    std::uniform_int_distribution<int> name(0, distinctPaths - 1);
    for (int i = 0; i < n; ++i) {
        std::string path = kParts[part(gen)];
        const int k = name(gen);
        path += (k % 2 ? "Photo" : "photo") + std::to_string(k) + (k % 3 ? ".jpg" : ".JPG");
        out.push_back({path, static_cast<Orientation>(i), i, -i, static_cast<double>(i)});
    }
    out.emplace_back();
    return out;
}

void expectSameEntries(const WallpaperEntries& got, const WallpaperEntries& want) {
    ASSERT_EQ(got.size(), want.size());
    for (size_t i = 0; i < got.size(); ++i) {
        ASSERT_EQ(got[i].path, want[i].path) << "slot " << i;
        ASSERT_EQ(got[i].orientation, want[i].orientation) << "slot " << i;
        ASSERT_EQ(got[i].height, want[i].height) << "slot " << i;
        ASSERT_EQ(got[i].width, want[i].width) << "slot " << i;
        ASSERT_EQ(got[i].size, want[i].size) << "slot " << i;
    }
}

TEST(ListSort, SortsByLowerCasedPath) {
    WallpaperEntries e{{"b.jpg", 1}, {"A.jpg", 2}, {"c.jpg", 3}, {}};
    DefaultRandom random(7);
    sortEntries(e, 0, 2, random);
    EXPECT_EQ(e[0].path, "A.jpg");
    EXPECT_EQ(e[1].path, "b.jpg");
    EXPECT_EQ(e[2].path, "c.jpg");
    EXPECT_EQ(e[0].orientation, 2) << "whole entries move";
    EXPECT_EQ(e[3].path, "") << "the spare slot is not touched";
}

TEST(ListSort, ComparesBytesNotLocaleCollation) {
    // '_' (0x5F) comes after upper-case letters but before lower-case ones; lower-cased keys put it first.
    // Bytes above 0x7F sort after ASCII.
    WallpaperEntries e{{"\xE9t\xE9.jpg"}, {"Zed.jpg"}, {"_x.jpg"}, {"a.jpg"}, {"\xC9T\xC9.JPG"}, {}};
    DefaultRandom random(3);
    sortEntries(e, 0, 4, random);
    EXPECT_EQ(e[0].path, "_x.jpg");
    EXPECT_EQ(e[1].path, "a.jpg");
    EXPECT_EQ(e[2].path, "Zed.jpg");
    EXPECT_EQ(lowerCase(e[3].path), "\xE9t\xE9.jpg");
    EXPECT_EQ(lowerCase(e[4].path), "\xE9t\xE9.jpg");
}

TEST(ListSort, ManyRandomListsMatchTheReferenceOrderingAndTheExactAlgorithm) {
    std::mt19937 gen(20240611);
    for (int round = 0; round < 300; ++round) {
        const int n = std::uniform_int_distribution<int>(1, round < 250 ? 60 : 700)(gen);
        const int distinct = std::uniform_int_distribution<int>(1, n + 1)(gen);
        const WallpaperEntries original = randomList(gen, n, distinct);
        SCOPED_TRACE("round " + std::to_string(round) + ", " + std::to_string(n) + " entries");

        WallpaperEntries sorted = original;
        const uint64_t seed = gen();
        DefaultRandom random(seed);
        sortEntries(sorted, 0, n - 1, random);

        // Ascending by key, and the same multiset of whole entries.
        WallpaperEntries want = original;
        std::stable_sort(want.begin(), want.end() - 1, [](const WallpaperEntry& a, const WallpaperEntry& b) {
            return lowerCase(a.path) < lowerCase(b.path);
        });
        for (int i = 0; i < n; ++i) {
            ASSERT_EQ(lowerCase(sorted[i].path), lowerCase(want[i].path)) << "slot " << i;
            const WallpaperEntry& from = original[static_cast<size_t>(sorted[i].height)];
            ASSERT_EQ(sorted[i].path, from.path) << "entry " << sorted[i].height << " came apart";
            ASSERT_EQ(sorted[i].orientation, from.orientation);
            ASSERT_EQ(sorted[i].width, from.width);
        }

        // Equal keys end up in the order the plain algorithm gives with the same draws.
        WallpaperEntries reference = original;
        DefaultRandom referenceRandom(seed);
        referenceSort(reference, 0, n - 1, referenceRandom);
        expectSameEntries(sorted, reference);
        EXPECT_EQ(random.next(), referenceRandom.next()) << "the same number of pivots was drawn";
    }
}

TEST(ListSort, SortsOnlyTheGivenSlots) {
    std::mt19937 gen(5);
    const WallpaperEntries original = randomList(gen, 40, 40);
    WallpaperEntries e = original;
    DefaultRandom random(1);
    sortEntries(e, 10, 29, random);
    WallpaperEntries reference = original;
    DefaultRandom referenceRandom(1);
    referenceSort(reference, 10, 29, referenceRandom);
    expectSameEntries(e, reference);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(e[i].path, original[i].path);
        EXPECT_EQ(e[30 + i].path, original[30 + i].path);
    }
}

TEST(ListSort, EmptyAndSingleRangesDrawNothing) {
    WallpaperEntries e{{"b"}, {"a"}, {}};
    DefaultRandom random(9);
    DefaultRandom untouched(9);
    sortEntries(e, 0, 0, random);
    sortEntries(e, 1, 0, random);
    EXPECT_EQ(e[0].path, "b");
    EXPECT_EQ(random.next(), untouched.next());
}

TEST(ListSort, AHugeListOfOneRepeatedPathNeitherOverflowsNorCrawls) {
    WallpaperEntries e;
    for (int i = 0; i < 200000; ++i) {
        e.push_back({i % 2 ? "C:\\same.jpg" : "c:\\SAME.jpg", static_cast<Orientation>(i % 5), i});
    }
    e.emplace_back();
    DefaultRandom random(11);
    sortEntries(e, 0, static_cast<int>(e.size()) - 2, random);
    std::vector<int> seen;
    for (size_t i = 0; i + 1 < e.size(); ++i) {
        seen.push_back(e[i].height);
    }
    std::sort(seen.begin(), seen.end());
    for (int i = 0; i < 200000; ++i) {
        ASSERT_EQ(seen[static_cast<size_t>(i)], i) << "every entry is still there once";
    }
}

TEST(ListSort, ASortedOrReversedListIsNoWorseThanARandomOne) {
    for (bool reversed : {false, true}) {
        WallpaperEntries e;
        for (int i = 0; i < 100000; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "C:\\p\\%06d.jpg", reversed ? 100000 - i : i);
            e.push_back({name});
        }
        e.emplace_back();
        DefaultRandom random(2);
        sortEntries(e, 0, 99999, random);
        EXPECT_TRUE(std::is_sorted(e.begin(), e.end() - 1,
                                   [](const WallpaperEntry& a, const WallpaperEntry& b) { return a.path < b.path; }));
    }
}

}  // namespace
}  // namespace tl
