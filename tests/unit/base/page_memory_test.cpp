#include "base/page_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <utility>

namespace tl {
namespace {

bool allZero(const ScratchArray<uint8_t>& a) {
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] != 0) {
            return false;
        }
    }
    return true;
}

// Either side of a page: below it the heap serves (a wrong guess on the way back would be a heap free of
// mapped pages, which the address sanitizer stops), from a page on whole pages do.
TEST(PageMemory, ServesEverySizeZeroedAndTakesItBack) {
    for (const size_t bytes : {size_t{0}, size_t{1}, kPageBytes - 1, kPageBytes, kPageBytes + 1, size_t{3 << 20}}) {
        SCOPED_TRACE(bytes);
        for (int round = 0; round < 2; ++round) {
            ScratchArray<uint8_t> a(pageMemory(), bytes);
            ASSERT_EQ(a.size(), bytes);
            EXPECT_TRUE(allZero(a)) << "round " << round << " finds what the last one left";
            if (bytes >= kPageBytes) {
                EXPECT_EQ(reinterpret_cast<uintptr_t>(a.data()) % kPageBytes, 0u) << "not whole pages";
            }
            for (size_t i = 0; i < bytes; ++i) {
                a[i] = 0xAB;
            }
        }
    }
}

TEST(PageMemory, MovingHandsTheBufferOverOnce) {
    ScratchArray<uint32_t> a(pageMemory(), 5000);
    a[4999] = 7;
    uint32_t* const data = a.data();
    ScratchArray<uint32_t> b(std::move(a));
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(a.data(), nullptr);
    EXPECT_EQ(b.data(), data);
    EXPECT_EQ(b[4999], 7u);

    ScratchArray<uint32_t> c(pageMemory(), 10);
    c = std::move(b);  // c's own ten go back; the sanitizers see any leak or double free
    EXPECT_TRUE(b.empty());
    ASSERT_EQ(c.size(), 5000u);
    EXPECT_EQ(c[4999], 7u);
}

TEST(PageMemory, RefusesWhatCannotBeHadWithBadAlloc) {
    EXPECT_THROW(ScratchArray<uint64_t>(pageMemory(), SIZE_MAX / 4), std::bad_alloc) << "count times size overflows";
    EXPECT_THROW(ScratchArray<uint8_t>(pageMemory(), SIZE_MAX / 4), std::bad_alloc) << "no system has that much";
    EXPECT_EQ(allocatePages(SIZE_MAX / 4), nullptr);
}

}  // namespace
}  // namespace tl
