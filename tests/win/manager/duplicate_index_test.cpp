#include <gtest/gtest.h>

#include <windows.h>

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"
#include "manager/duplicate_index.h"

namespace tl::wintest {
namespace {

TEST(DuplicateIndex, AnswersAsARealListBoxsExactSearch) {
    unique_hwnd host(
        ::CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr));
    const HWND box = ::CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD | LBS_EXTENDEDSEL, 0, 0, 100, 100, host.get(),
                                       nullptr, nullptr, nullptr);
    DuplicateIndex index;
    const char* const listed[] = {"C:\\Photos\\Sea.jpg", "C:\\\\root.jpg",         "D:\\ÉTÉ.JPG",
                                  "\\top.bmp",           "E:\\Straße.jpg",          "F:\\Москва\\Кремль.jpg",
                                  "G:\\ΑΘΉΝΑ.bmp",       "H:\\東京 夜景.jpg",       "I:\\\U0001F305 Sunset.jpg",
                                  "J:\\ŁÓDŹ.jpg"};
    for (const char* line : listed) {
        ::SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(widen(line).c_str()));
        index.add(line);
    }
    const char* const probes[] = {"c:\\photos\\sea.JPG", "C:\\Photos\\Sea.jp",      "C:\\Photos\\Sea.jpg ",
                                  "C:\\root.jpg",        "c:\\\\ROOT.JPG",          "d:\\été.jpg",
                                  "\\TOP.BMP",           "top.bmp",                 "e:\\STRAßE.JPG",
                                  "C:/Photos/Sea.jpg",   "f:\\москва\\КРЕМЛЬ.JPG",  "g:\\αθήνα.BMP",
                                  "G:\\ΑΘΗΝΑ.bmp",       "h:\\東京 夜景.JPG",        "i:\\\U0001F305 sunset.JPG",
                                  "j:\\łódź.JPG",        "F:\\Москва\\Кремль.jp"};
    for (const char* probe : probes) {
        const bool listBoxFinds = ::SendMessageW(box, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                 reinterpret_cast<LPARAM>(widen(probe).c_str())) >= 0;
        EXPECT_EQ(index.contains(probe), listBoxFinds) << probe;
    }
    EXPECT_TRUE(index.contains("f:\\москва\\КРЕМЛЬ.JPG")) << "Cyrillic capitals match their small letters";
}

}  // namespace
}  // namespace tl::wintest
