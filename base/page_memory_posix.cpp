#include "base/page_memory.h"

#include <sys/mman.h>

namespace tl {

void* allocatePages(size_t bytes) {
    void* pages = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

void freePages(void* pages, size_t bytes) {
    ::munmap(pages, bytes);
}

}  // namespace tl
