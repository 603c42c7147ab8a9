#include <gtest/gtest.h>

#include "base/unique_handle_win.h"
#include "lists/list_box_win.h"
#include "lists/list_tools_win.h"
#include "unit/support/list_box_contract.h"

namespace tl::wintest {
namespace {

// A plain top-level window to hold the controls of a test.
struct Host {
    Host() {
        window.reset(::CreateWindowExA(0, "STATIC", "list", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                                       nullptr, nullptr));
    }
    unique_hwnd window;
    HWND add(const char* className, DWORD style) const {
        return ::CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE | style, 0, 0, 200, 200, window.get(), nullptr,
                                 nullptr, nullptr);
    }
};

void fill(HWND control, UINT addMessage, std::initializer_list<const char*> items) {
    for (const char* item : items) {
        ::SendMessageA(control, addMessage, 0, reinterpret_cast<LPARAM>(item));
    }
}

TEST(ListControls, FindListItemAsksListAndComboBoxesOnly) {
    Host host;
    const HWND list = host.add("LISTBOX", LBS_NOTIFY | WS_VSCROLL);
    const HWND combo = host.add("COMBOBOX", CBS_DROPDOWNLIST);
    const HWND button = host.add("BUTTON", BS_PUSHBUTTON);
    const auto items = {"C:\\Pictures\\sea.jpg", "C:\\Pictures\\Sea.jpg.bak", "D:\\sea.jpg", "c:\\pictures\\SEA.JPG"};
    fill(list, LB_ADDSTRING, items);
    fill(combo, CB_ADDSTRING, items);

    struct Case {
        const char* text;
        int startAfter;
        bool exact;
        int want;
    };
    const Case cases[] = {
        {"c:\\pictures\\sea.jpg", -1, true, 0},
        {"c:\\pictures\\sea.jpg", 0, true, 3},
        {"c:\\pictures\\sea.jpg", 3, true, 0},
        {"C:\\Pictures\\sea", -1, true, -1},
        {"C:\\Pictures\\sea", -1, false, 0},
        {"C:\\Pictures\\sea", 0, false, 1},
        {"d:\\", -1, false, 2},
        {"E:\\", -1, false, -1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(findListItem(list, c.text, c.startAfter, c.exact), c.want)
            << "list box: " << c.text << " after " << c.startAfter << (c.exact ? " exact" : " prefix");
        EXPECT_EQ(findListItem(combo, c.text, c.startAfter, c.exact), c.want)
            << "combo box: " << c.text << " after " << c.startAfter << (c.exact ? " exact" : " prefix");
    }
    EXPECT_EQ(findListItem(button, "C:\\Pictures\\sea.jpg", -1, true), 0);
    EXPECT_EQ(findListItem(host.window.get(), "x", -1, false), 0);
}

TEST(ListControls, TheListBoxViewKeepsTheContractTheFakeShowsAndAppendsEvenToASortedBox) {
    Host host;
    Win32ListBox single(host.add("LISTBOX", LBS_NOTIFY));
    ASSERT_FALSE(single.multiSelect());
    test::checkListBoxContract(single, false);
    Win32ListBox multi(host.add("LISTBOX", LBS_NOTIFY | LBS_EXTENDEDSEL));
    ASSERT_TRUE(multi.multiSelect());
    test::checkListBoxContract(multi, true);
    Win32ListBox sorted(host.add("LISTBOX", LBS_SORT | LBS_EXTENDEDSEL));
    sorted.add("b");
    sorted.add("a");
    EXPECT_EQ(sorted.text(0), "b");
    EXPECT_EQ(sorted.text(1), "a");
}

}  // namespace
}  // namespace tl::wintest
