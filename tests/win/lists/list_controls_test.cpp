#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "../../unit/support/list_box_contract.h"
#include "base/unique_handle_win.h"
#include "lists/list_box_win.h"
#include "lists/list_tools_win.h"
#include "support/program_dir.h"

namespace tl::wintest {
namespace {

// A plain top-level window to hold the controls of a test.
struct Host {
    unique_hwnd window{::CreateWindowExA(0,
                                         "STATIC",
                                         "list test",
                                         WS_OVERLAPPEDWINDOW,
                                         0,
                                         0,
                                         400,
                                         300,
                                         nullptr,
                                         nullptr,
                                         nullptr,
                                         nullptr)};
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

TEST(ListControls, TheListBoxViewKeepsTheContractTheFakeShows) {
    Host host;
    Win32ListBox single(host.add("LISTBOX", LBS_NOTIFY));
    ASSERT_FALSE(single.multiSelect());
    test::checkListBoxContract(single, false);
    Win32ListBox multi(host.add("LISTBOX", LBS_NOTIFY | LBS_EXTENDEDSEL));
    ASSERT_TRUE(multi.multiSelect());
    test::checkListBoxContract(multi, true);
}

TEST(ListControls, TheListBoxViewAppendsEvenToASortedBox) {
    Host host;
    Win32ListBox box(host.add("LISTBOX", LBS_SORT | LBS_EXTENDEDSEL));
    box.add("b");
    box.add("a");
    EXPECT_EQ(box.text(0), "b");
    EXPECT_EQ(box.text(1), "a");
}

// Answers the shell's question from another thread the way a user would, and remembers that it was asked.
class QuestionAnswerer {
  public:
    explicit QuestionAnswerer(int button) : button_(button), thread_([this] { run(); }) {}
    ~QuestionAnswerer() {
        stop_ = true;
        thread_.join();
    }
    bool asked() const { return asked_; }

  private:
    void run() {
        while (!stop_) {
            HWND found = nullptr;
            ::EnumWindows(
                [](HWND w, LPARAM out) -> BOOL {
                    DWORD pid = 0;
                    char cls[16] = {};
                    ::GetWindowThreadProcessId(w, &pid);
                    ::GetClassNameA(w, cls, sizeof cls);
                    if (pid == ::GetCurrentProcessId() && std::string(cls) == "#32770" && ::IsWindowVisible(w)) {
                        *reinterpret_cast<HWND*>(out) = w;
                        return FALSE;
                    }
                    return TRUE;
                },
                reinterpret_cast<LPARAM>(&found));
            if (found) {
                asked_ = true;
                ::PostMessageA(found, WM_COMMAND, static_cast<WPARAM>(button_), 0);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

    int button_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> asked_{false};
    std::thread thread_;
};

TEST(ListControls, RemoveFileFromDiskWithoutTheShellDeletesAtOnce) {
    ProgramDir dir(false);
    dir.write("a.jpg", "x");
    EXPECT_TRUE(removeFileFromDisk(dir.file("a.jpg"), false, false));
    EXPECT_FALSE(dir.exists("a.jpg"));
    dir.write("b.jpg", "x");
    EXPECT_TRUE(removeFileFromDisk(dir.file("b.jpg"), true, false)) << "the recycle flag means nothing here";
    EXPECT_FALSE(dir.exists("b.jpg"));
    EXPECT_TRUE(removeFileFromDisk(dir.file("missing.jpg"), false, false)) << "the plain delete always says yes";
}

TEST(ListControls, RemoveFileFromDiskThroughTheShellAsksAndTellsWhetherTheFileIsGone) {
    ProgramDir dir(false);
    dir.write("keep.jpg", "x");
    {
        QuestionAnswerer no(IDNO);
        EXPECT_FALSE(removeFileFromDisk(dir.file("keep.jpg"), false, true));
        EXPECT_TRUE(no.asked()) << "the shell asks before deleting for good";
    }
    EXPECT_TRUE(dir.exists("keep.jpg"));

    dir.write("gone.jpg", "x");
    {
        QuestionAnswerer yes(IDYES);
        EXPECT_TRUE(removeFileFromDisk(dir.file("gone.jpg"), false, true));
    }
    EXPECT_FALSE(dir.exists("gone.jpg"));
}

TEST(ListControls, RemoveFileFromDiskToTheRecycleBin) {
    // Wine sends the file to the desktop's trash when it has one, asking first as Windows does; either
    // way the answer must match what is on disk.
    ProgramDir dir(false);
    dir.write("old.jpg", "x");
    bool gone = false;
    {
        QuestionAnswerer yes(IDYES);
        gone = removeFileFromDisk(dir.file("old.jpg"), true, true);
    }
    EXPECT_EQ(gone, !dir.exists("old.jpg"));
    EXPECT_TRUE(gone) << "the file was neither recycled nor deleted";
}

}  // namespace
}  // namespace tl::wintest
