#pragma once

// Counts this process's GDI and USER objects. Windows answers GetGuiResources; Wine 8 answers 0 there,
// so the handle tables are probed instead: a handle whose high word is 0 names whatever object lives at
// that index, and GetObjectType / IsMenu / GetIconInfo tell whether one does.
#include <windows.h>

namespace tl::bench {

struct GuiObjectCount {
    unsigned long gdi = 0;
    unsigned long user = 0;
    bool probed = false;  // counted by probing (Wine) rather than asked (Windows)
};

inline unsigned long countOwnWindows() {
    unsigned long n = 0;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND top, LPARAM lp) -> BOOL {
            auto& count = *reinterpret_cast<unsigned long*>(lp);
            ++count;
            ::EnumChildWindows(
                top,
                [](HWND, LPARAM inner) -> BOOL {
                    ++*reinterpret_cast<unsigned long*>(inner);
                    return TRUE;
                },
                lp);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&n));
    return n;
}

inline GuiObjectCount countGuiObjects() {
    GuiObjectCount c;
    c.gdi = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
    c.user = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
    if (c.gdi != 0 || c.user != 0) {
        return c;
    }
    c.probed = true;
    for (ULONG_PTR i = 1; i < 0x10000; ++i) {
        if (::GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0) {
            ++c.gdi;
        }
    }
    // USER handles are even numbers from 0x20 on.
    for (ULONG_PTR i = 0x20; i < 0x10000; i += 2) {
        if (::IsMenu(reinterpret_cast<HMENU>(i))) {
            ++c.user;
            continue;
        }
        ICONINFO info{};
        if (::GetIconInfo(reinterpret_cast<HICON>(i), &info)) {
            // The answer hands out copies of the icon's bitmaps, which are ours to delete.
            if (info.hbmMask) {
                ::DeleteObject(info.hbmMask);
            }
            if (info.hbmColor) {
                ::DeleteObject(info.hbmColor);
            }
            ++c.user;
        }
    }
    c.user += countOwnWindows();
    return c;
}

}  // namespace tl::bench
