#include <gtest/gtest.h>

#include <windows.h>

#include "base/unique_handle_win.h"
#include "manager/duplicate_index.h"

namespace tl::wintest {
namespace {

TEST(DuplicateIndex, AnswersAsARealListBoxsExactSearch) {
    unique_hwnd host(
        ::CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr));
    const HWND box = ::CreateWindowExA(0, "LISTBOX", "", WS_CHILD | LBS_EXTENDEDSEL, 0, 0, 100, 100, host.get(),
                                       nullptr, nullptr, nullptr);
    DuplicateIndex index;
    const char* const listed[] = {"C:\\Photos\\Sea.jpg", "C:\\\\root.jpg", "D:\\\xC9T\xC9.JPG", "\\top.bmp",
                                  "E:\\Stra\xDF"
                                  "e.jpg"};
    for (const char* line : listed) {
        ::SendMessageA(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
        index.add(line);
    }
    const char* const probes[] = {"c:\\photos\\sea.JPG",
                                  "C:\\Photos\\Sea.jp",
                                  "C:\\Photos\\Sea.jpg ",
                                  "C:\\root.jpg",
                                  "c:\\\\ROOT.JPG",
                                  "d:\\\xE9t\xE9.jpg",
                                  "\\TOP.BMP",
                                  "top.bmp",
                                  "e:\\STRA\xDF"
                                  "E.JPG",
                                  "C:/Photos/Sea.jpg"};
    for (const char* probe : probes) {
        const bool listBoxFinds =
            ::SendMessageA(box, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(probe)) >= 0;
        EXPECT_EQ(index.contains(probe), listBoxFinds) << probe << " (code page " << ::GetACP() << ")";
    }
    EXPECT_TRUE(index.contains("d:\\\xE9t\xE9.jpg")) << "accented capitals of the code page match their small letters";
}

}  // namespace
}  // namespace tl::wintest
