#include "base/page_memory.h"

#include <windows.h>

namespace tl {

void* allocatePages(size_t bytes) {
    return ::VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void freePages(void* pages, size_t) {
    ::VirtualFree(pages, 0, MEM_RELEASE);
}

}  // namespace tl
