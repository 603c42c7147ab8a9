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

TEST(ListSort, ComparesBytesNotLocaleCollation) {
    // '_' (0x5F) comes after upper-case letters but before lower-case ones; lower-cased keys put it first.
    // Letters beyond ASCII fold too and sort after it, by code point.
    WallpaperEntries e{{"\u00e9t\u00e9.jpg"}, {"\u0416.jpg"}, {"Zed.jpg"}, {"_x.jpg"}, {"a.jpg"}, {"\u00c9T\u00c9.JPG"}, {}};
    DefaultRandom random(3);
    sortEntries(e, 0, 5, random);
    std::vector<std::string> keys;
    for (const auto& entry : e) {
        keys.push_back(lowerCase(entry.path));
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"_x.jpg", "a.jpg", "zed.jpg", "\u00e9t\u00e9.jpg", "\u00e9t\u00e9.jpg",
                                              "\u0436.jpg", ""}));
}

// Any range of a random list: sorted by key with whole entries moving, slots outside the range untouched,
// equal keys in the order the plain algorithm gives with the same draws, and as many draws.
TEST(ListSort, ManyRandomListsMatchTheReferenceOrderingAndTheExactAlgorithm) {
    std::mt19937 gen(20240611);
    for (int round = 0; round < 300; ++round) {
        const int n = std::uniform_int_distribution<int>(1, round < 250 ? 60 : 700)(gen);
        const int distinct = std::uniform_int_distribution<int>(1, n + 1)(gen);
        const WallpaperEntries original = randomList(gen, n, distinct);
        const int lo = round % 3 == 0 ? std::uniform_int_distribution<int>(0, n - 1)(gen) : 0;
        const int hi = round % 3 == 0 ? std::uniform_int_distribution<int>(lo - 1, n - 1)(gen) : n - 1;
        SCOPED_TRACE("round " + std::to_string(round) + ", slots " + std::to_string(lo) + " to " + std::to_string(hi));

        WallpaperEntries sorted = original;
        const uint64_t seed = gen();
        DefaultRandom random(seed);
        sortEntries(sorted, lo, hi, random);
        WallpaperEntries reference = original;
        DefaultRandom referenceRandom(seed);
        referenceSort(reference, lo, hi, referenceRandom);

        WallpaperEntries want = original;
        std::stable_sort(
            want.begin() + lo, want.begin() + std::max(lo, hi + 1),
            [](const WallpaperEntry& a, const WallpaperEntry& b) { return lowerCase(a.path) < lowerCase(b.path); });
        for (int i = 0; i < n; ++i) {
            ASSERT_EQ(lowerCase(sorted[i].path), lowerCase(want[i].path)) << "slot " << i;
            const WallpaperEntry& from = original[static_cast<size_t>(sorted[i].height)];
            ASSERT_EQ(sorted[i].path, from.path) << "entry " << sorted[i].height << " came apart";
            ASSERT_EQ(sorted[i].orientation, from.orientation);
            ASSERT_EQ(sorted[i].width, from.width);
            ASSERT_EQ(sorted[i].height, reference[i].height) << "slot " << i << " against the plain algorithm";
        }
        EXPECT_EQ(sorted[n].path, "") << "the spare slot is not touched";

        EXPECT_EQ(random.next(), referenceRandom.next()) << "the same number of pivots was drawn";
    }
}

TEST(ListSort, HugeListsOfOneRepeatedPathOrInOrderOrReversedNeitherOverflowNorCrawl) {
    std::vector<WallpaperEntries> lists(3);
    for (int i = 0; i < 200000; ++i) {
        lists[0].push_back({i % 2 ? "C:\\same.jpg" : "c:\\SAME.jpg", static_cast<Orientation>(i % 5), i});
        char name[32];
        std::snprintf(name, sizeof name, "C:\\p\\%06d.jpg", i);
        lists[1].push_back({name, 0, i});
    }
    lists[2].assign(lists[1].rbegin(), lists[1].rend());
    for (WallpaperEntries& e : lists) {
        e.emplace_back();
        DefaultRandom random(11);
        sortEntries(e, 0, static_cast<int>(e.size()) - 2, random);
        EXPECT_TRUE(std::is_sorted(e.begin(), e.end() - 1, [](const WallpaperEntry& a, const WallpaperEntry& b) {
            return lowerCase(a.path) < lowerCase(b.path);
        }));
        std::vector<int> seen;
        for (size_t i = 0; i + 1 < e.size(); ++i) {
            seen.push_back(e[i].height);
        }
        std::sort(seen.begin(), seen.end());
        for (int i = 0; i < 200000; ++i) {
            ASSERT_EQ(seen[static_cast<size_t>(i)], i) << "every entry is still there once";
        }
    }
}

}  // namespace
}  // namespace tl
