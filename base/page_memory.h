#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <new>
#include <type_traits>
#include <utility>

// Memory for large scratch buffers straight from the system's page allocator, so that it goes back to the
// system the moment it is freed. The heap keeps freed blocks of tens of KB up to about a megabyte committed
// for later use, which a program idling in the tray after decoding one big photo would otherwise hold for
// good.
namespace tl {

inline constexpr size_t kPageBytes = 4096;

// `bytes` rounded up to whole pages, zeroed, at a page boundary; nullptr when the system has none to give.
void* allocatePages(size_t bytes);
// Gives back what allocatePages returned, with the same `bytes`.
void freePages(void* pages, size_t bytes);

// The page allocator as a memory resource. Requests of less than a page go to the heap, which reuses small
// blocks well and would waste the rest of a page on them. Throws std::bad_alloc when memory runs out.
class PageMemoryResource final : public std::pmr::memory_resource {
  private:
    void* do_allocate(size_t bytes, size_t alignment) override {
        if (!fromPages(bytes, alignment)) {
            return std::pmr::new_delete_resource()->allocate(bytes, alignment);
        }
        void* pages = allocatePages(bytes);
        if (!pages) {
            throw std::bad_alloc();
        }
        return pages;
    }
    void do_deallocate(void* p, size_t bytes, size_t alignment) override {
        if (fromPages(bytes, alignment)) {
            freePages(p, bytes);
        } else {
            std::pmr::new_delete_resource()->deallocate(p, bytes, alignment);
        }
    }
    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override { return this == &other; }
    static bool fromPages(size_t bytes, size_t alignment) { return bytes >= kPageBytes && alignment <= kPageBytes; }
};

// The one page memory resource of the program.
inline std::pmr::memory_resource& pageMemory() {
    static PageMemoryResource memory;
    return memory;
}

// An array of `count` zeroed T (trivial types) from a memory resource, given back when the array goes.
template <typename T>
class ScratchArray {
    static_assert(std::is_trivial_v<T>, "scratch arrays hold plain bytes and numbers");

  public:
    ScratchArray() = default;
    ScratchArray(std::pmr::memory_resource& memory, size_t count) {
        if (count > SIZE_MAX / sizeof(T)) {
            throw std::bad_alloc();
        }
        data_ = static_cast<T*>(memory.allocate(count * sizeof(T), alignof(T)));
        memory_ = &memory;
        count_ = count;
        std::memset(data_, 0, count * sizeof(T));
    }
    ScratchArray(ScratchArray&& other) noexcept { swap(other); }
    ScratchArray& operator=(ScratchArray&& other) noexcept {
        ScratchArray(std::move(other)).swap(*this);
        return *this;
    }
    ~ScratchArray() {
        if (data_) {
            memory_->deallocate(data_, count_ * sizeof(T), alignof(T));
        }
    }

    T* data() const { return data_; }
    size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    T& operator[](size_t i) const { return data_[i]; }

  private:
    void swap(ScratchArray& other) noexcept {
        std::swap(memory_, other.memory_);
        std::swap(data_, other.data_);
        std::swap(count_, other.count_);
    }
    std::pmr::memory_resource* memory_ = nullptr;
    T* data_ = nullptr;
    size_t count_ = 0;
};

}  // namespace tl
