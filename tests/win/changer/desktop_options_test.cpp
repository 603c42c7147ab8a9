#include "changer/desktop_options_win.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "app/settings.h"
#include "base/file_system_win.h"
#include "base/text.h"
#include "base/window_win.h"
#include "support/program_dir.h"
#include "support/running_program.h"
#include "support/window_driver.h"

namespace tl::wintest {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

// A desktop shell of the test's own: Progman "Program Manager" / SHELLDLL_DefView / SysListView32, whose
// windows record what the program sends them.
class StandInShell {
  public:
    StandInShell() {
        registerStandIn("Progman", &DefWindowProcA);
        registerStandIn("SHELLDLL_DefView", &viewProc);
        registerStandIn("SysListView32", &listProc);
        progman = ::CreateWindowExA(WS_EX_TOOLWINDOW, "Progman", "Program Manager", WS_POPUP | WS_VISIBLE, 0, 0, 160,
                                    120, nullptr, nullptr, ::GetModuleHandleA(nullptr), nullptr);
        defView = ::CreateWindowExA(0, "SHELLDLL_DefView", "", WS_CHILD | WS_VISIBLE, 0, 0, 160, 120, progman, nullptr,
                                    ::GetModuleHandleA(nullptr), nullptr);
        listView = ::CreateWindowExA(0, "SysListView32", "FolderView", WS_CHILD | WS_VISIBLE, 0, 0, 160, 120, defView,
                                     nullptr, ::GetModuleHandleA(nullptr), nullptr);
        log() = {};
        waitFor([] { return false; }, milliseconds(100));  // first paints done
        log() = {};
    }
    ~StandInShell() {
        ::DestroyWindow(progman);
        for (const char* name : {"SysListView32", "SHELLDLL_DefView", "Progman"}) {
            ::UnregisterClassA(name, ::GetModuleHandleA(nullptr));
        }
    }

    struct Log {
        std::vector<LPARAM> textBackgrounds;  // LVM_SETTEXTBKCOLOR colours
        int listPaints = 0;
        std::vector<bool> viewShows;  // WM_SHOWWINDOW of the icon view
    };
    static Log& log() {
        static Log instance;
        return instance;
    }
    bool viewVisible() const { return (::GetWindowLongA(defView, GWL_STYLE) & WS_VISIBLE) != 0; }

    HWND progman = nullptr;
    HWND defView = nullptr;
    HWND listView = nullptr;

  private:
    static void registerStandIn(const char* name, WNDPROC proc) {
        WNDCLASSA wc{};
        wc.lpfnWndProc = proc;
        wc.hInstance = ::GetModuleHandleA(nullptr);
        wc.lpszClassName = name;
        wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        ::RegisterClassA(&wc);
    }
    static LRESULT CALLBACK viewProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
        if (msg == WM_SHOWWINDOW) {
            log().viewShows.push_back(wParam != 0);
        }
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    static LRESULT CALLBACK listProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
        if (msg == LVM_SETTEXTBKCOLOR_ID) {
            log().textBackgrounds.push_back(lParam);
            return TRUE;
        }
        if (msg == WM_PAINT) {
            ++log().listPaints;
        }
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    static constexpr UINT LVM_SETTEXTBKCOLOR_ID = 0x1026;
};

// frmMain's part in the test: a hidden window whose transTimer ticks reach the options.
class HostWindow : public Window {
  public:
    static constexpr UINT_PTR kTransTimer = 7;
    HostWindow() {
        registerClass("TessalineTestHost");
        create("TessalineTestHost", "host", WS_OVERLAPPED, 0, 0, 0, 100, 100);
    }
    ~HostWindow() override { ::KillTimer(hwnd(), kTransTimer); }
    Win32DesktopOptions* options = nullptr;
    std::vector<WPARAM> systemCommands;

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        if (msg == WM_TIMER && wParam == kTransTimer && options) {
            options->onTransTimer();
            return 0;
        }
        if (msg == WM_SYSCOMMAND) {
            systemCommands.push_back(wParam & 0xFFF0);
            return 0;  // the test's desktop needs no screen saver
        }
        return defaultProc(msg, wParam, lParam);
    }
};

// Puts a value of the user's "Control Panel\Desktop" back as it was at the end of a test.
class DesktopValueGuard {
  public:
    explicit DesktopValueGuard(const char* name) : name_(name) {
        had_ = ::RegGetValueA(HKEY_CURRENT_USER, "Control Panel\\Desktop", name, RRF_RT_REG_SZ, nullptr, nullptr,
                              nullptr) == ERROR_SUCCESS;
        old_ = Win32DesktopSystem().desktopValue(name);
    }
    ~DesktopValueGuard() {
        if (had_) {
            set(old_);
        } else {
            ::RegDeleteKeyValueA(HKEY_CURRENT_USER, "Control Panel\\Desktop", name_);
        }
    }
    void set(const std::string& value) const {
        ::RegSetKeyValueA(HKEY_CURRENT_USER, "Control Panel\\Desktop", name_, REG_SZ, value.c_str(),
                          static_cast<DWORD>(value.size() + 1));
    }

  private:
    const char* name_;
    bool had_ = false;
    std::string old_;
};

struct OptionsUnderTest {
    OptionsUnderTest() : options(host.hwnd(), settings, fs, [this](const std::string& p) { added.push_back(p); }) {
        host.options = &options;
        settings.ScreenSaver = -1;
        settings.TrapIEWallpaper = true;
    }
    Settings settings;
    Win32FileSystem fs;
    std::vector<std::string> added;
    HostWindow host;
    Win32DesktopOptions options;
};

TEST(DesktopOptions, TransparentIconTextReachesTheShellsIconListEverySecond) {
    StandInShell shell;
    DesktopValueGuard wallpaper("Wallpaper");
    wallpaper.set("C:\\windows\\plain.bmp");
    OptionsUnderTest t;
    t.options.load(HostWindow::kTransTimer);
    ASSERT_EQ(t.options.desktopListView(), reinterpret_cast<ShellWindow>(shell.listView))
        << "the icon list was not found under Progman / SHELLDLL_DefView";

    EXPECT_TRUE(t.options.toggleOption(OptionItem::mnuTransIcon));
    ASSERT_EQ(StandInShell::log().textBackgrounds.size(), 1u) << "turning it on must act at once";
    EXPECT_EQ(static_cast<DWORD>(StandInShell::log().textBackgrounds[0]), kClrNone) << "CLR_NONE";

    EXPECT_TRUE(waitFor([] { return StandInShell::log().textBackgrounds.size() >= 3; }, seconds(4)))
        << "transTimer kept the text transparent only " << StandInShell::log().textBackgrounds.size() << " times";

    StandInShell::log().listPaints = 0;
    t.options.afterWallpaperApplied();
    EXPECT_TRUE(waitFor([] { return StandInShell::log().listPaints > 0; }, seconds(2)))
        << "after an apply the icon list must be redrawn";

    EXPECT_FALSE(t.options.toggleOption(OptionItem::mnuTransIcon));
    waitFor([] { return false; }, milliseconds(200));
    const size_t sent = StandInShell::log().textBackgrounds.size();
    waitFor([] { return false; }, milliseconds(2200));
    EXPECT_EQ(StandInShell::log().textBackgrounds.size(), sent) << "the timer went on after TransText was off";
}

TEST(DesktopOptions, HideIconsHidesAndShowsTheShellsIconView) {
    StandInShell shell;
    OptionsUnderTest t;
    HMENU menu = ::CreatePopupMenu();
    for (UINT id = 1; id <= 8; ++id) {
        ::AppendMenuA(menu, MF_STRING, id, "item");
    }
    auto commandOf = [](OptionItem item) { return static_cast<UINT>(item) + 1; };
    auto checked = [&](OptionItem item) {
        return (::GetMenuState(menu, commandOf(item), MF_BYCOMMAND) & MF_CHECKED) != 0;
    };

    t.options.toggleOption(OptionItem::mnuOptionsHideIcons);
    t.options.setCheckMarks(menu, commandOf);
    EXPECT_FALSE(shell.viewVisible());
    EXPECT_EQ(StandInShell::log().viewShows, std::vector<bool>{false});
    EXPECT_TRUE(checked(OptionItem::mnuOptionsHideIcons));
    EXPECT_TRUE(checked(OptionItem::mnuTrayDisplayHideIcons));

    t.options.toggleOption(OptionItem::mnuTrayDisplayHideIcons);
    t.options.setCheckMarks(menu, commandOf);
    EXPECT_TRUE(shell.viewVisible());
    EXPECT_FALSE(checked(OptionItem::mnuOptionsHideIcons));
    EXPECT_FALSE(checked(OptionItem::mnuTrayDisplayHideIcons));

    // With Active Desktop the check mark changes, the desktop does not.
    t.settings.UseActiveDesktop = true;
    t.options.toggleOption(OptionItem::mnuOptionsHideIcons);
    t.options.setCheckMarks(menu, commandOf);
    EXPECT_TRUE(shell.viewVisible());
    EXPECT_TRUE(checked(OptionItem::mnuOptionsHideIcons));
    EXPECT_TRUE(checked(OptionItem::mnuOptUseActiveDesktop));
    ::DestroyMenu(menu);
}

// The file name box of the common save dialog.
HWND fileNameBox(HWND dialog) {
    for (int id : {0x480 /* edt1 */, 0x47c /* cmb13 */}) {
        if (HWND box = ::GetDlgItem(dialog, id)) {
            if (HWND edit = findChild(box, "Edit")) {
                return edit;
            }
            return box;
        }
    }
    return findChild(dialog, "Edit");
}

TEST(DesktopOptions, BrowserWallpaperOpensTheSaveDialogAgainUntilItIsSaved) {
    ProgramDir dir(false);
    const std::string caught = dir.file("Internet Explorer Wallpaper.bmp");
    writePicture(caught, "bmp", 40, 30);
    DesktopValueGuard wallpaper("Wallpaper");
    wallpaper.set(caught);

    OptionsUnderTest t;
    t.settings.TrapIEWallpaper = false;  // only the menu's check mark: the catch runs all the same
    t.settings.WallpaperDirectory = dir.path() + "\\";
    const std::string kept = dir.file("kept.bmp");
    const char* title = "Choose the destination for this image";

    const auto start = steady_clock::now();
    t.options.load(HostWindow::kTransTimer);
    milliseconds firstOpening{0};
    std::string offeredName;
    bool cameBack = false;
    Driver user([&] {
        HWND dialog = waitForOwnWindow("#32770", title, seconds(5));
        firstOpening = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
        if (!dialog) {
            return;
        }
        offeredName = windowText(fileNameBox(dialog));
        RunningProgram::pressButton(dialog, IDCANCEL);
        waitFor([&] { return !::IsWindow(dialog); }, seconds(5));

        dialog = waitForOwnWindow("#32770", title, seconds(5));
        cameBack = dialog != nullptr;
        if (!dialog) {
            return;
        }
        wallpaper.set("C:\\windows\\plain.bmp");  // as when the program itself applies the next wallpaper
        ::SendMessageA(fileNameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(kept.c_str()));
        RunningProgram::pressButton(dialog, IDOK);
    });
    EXPECT_TRUE(waitFor([&] { return !t.added.empty(); }, seconds(15))) << "the caught wallpaper was not added";
    ::KillTimer(t.host.hwnd(), HostWindow::kTransTimer);

    EXPECT_GT(firstOpening.count(), 0) << "the save dialog never opened";
    EXPECT_LT(firstOpening.count(), 2000) << "the save dialog took " << firstOpening.count() << " ms";
    EXPECT_EQ(offeredName, "wallpaper.bmp");
    EXPECT_TRUE(cameBack) << "after a Cancel the dialog must come back while the browser's file is the wallpaper";
    ASSERT_EQ(t.added.size(), 1u);
    EXPECT_EQ(lowerCase(t.added[0]), lowerCase(kept));
    EXPECT_EQ(dir.read("kept.bmp"), dir.read("Internet Explorer Wallpaper.bmp"));
    EXPECT_FALSE(t.options.catchInProgress());
}

// Puts the system's screen saver timeout back as it was at the end of a test.
struct ScreenSaverTimeoutGuard {
    ScreenSaverTimeoutGuard() { ::SystemParametersInfoA(SPI_GETSCREENSAVETIMEOUT, 0, &seconds, 0); }
    ~ScreenSaverTimeoutGuard() {
        ::SystemParametersInfoA(SPI_SETSCREENSAVETIMEOUT, seconds, nullptr, SPIF_UPDATEINIFILE);
    }
    UINT seconds = 0;
};

TEST(DesktopOptions, ScreenSaverTimeoutIsRememberedAcrossDisableAndEnable) {
    ScreenSaverTimeoutGuard restore;
    ::SystemParametersInfoA(SPI_SETSCREENSAVETIMEOUT, 600, nullptr, SPIF_UPDATEINIFILE);
    OptionsUnderTest t;
    t.settings.ScreenSaver = 0;

    EXPECT_EQ(t.options.getScreenSaverTimeout(), 10);
    t.options.disableScreenSaver();
    EXPECT_EQ(t.settings.ScreenSaver, 10);
    UINT timeout = 1;
    ::SystemParametersInfoA(SPI_GETSCREENSAVETIMEOUT, 0, &timeout, 0);
    EXPECT_EQ(timeout, 0u);

    t.options.enableScreenSaver();
    ::SystemParametersInfoA(SPI_GETSCREENSAVETIMEOUT, 0, &timeout, 0);
    EXPECT_EQ(timeout, 600u);
}

TEST(DesktopOptions, EnableWithAnUnknownTimeoutAsksAndNotesANegativeAnswer) {
    ScreenSaverTimeoutGuard restore;
    ::SystemParametersInfoA(SPI_SETSCREENSAVETIMEOUT, 600, nullptr, SPIF_UPDATEINIFILE);
    OptionsUnderTest t;
    std::string note;
    Driver user([&] {
        HWND box = waitForOwnWindow("TessalineInputBox", "Screensaver Timeout");
        if (!box) {
            return;
        }
        typeText(findChild(box, "Edit"), "-5");
        clickButton(findChild(box, "Button", "OK"));
        HWND noteBox = waitForOwnWindow("#32770", "Note");
        if (noteBox) {
            note = RunningProgram::messageBoxText(noteBox);
            RunningProgram::pressButton(noteBox, IDOK);
        }
    });
    t.options.enableScreenSaver();
    EXPECT_EQ(note, "Screen saver left off (use a value over zero to enable)");
    EXPECT_EQ(t.settings.ScreenSaver, -5);
    UINT timeout = 1;
    ::SystemParametersInfoA(SPI_GETSCREENSAVETIMEOUT, 0, &timeout, 0);
    EXPECT_EQ(timeout, 0u) << "a negative answer leaves the saver off";
}

TEST(DesktopOptions, StartScreenSaverAsksTheMainWindowsSystemCommand) {
    OptionsUnderTest t;
    t.options.startScreenSaver();
    EXPECT_EQ(t.host.systemCommands, std::vector<WPARAM>{SC_SCREENSAVE});
}

TEST(DesktopOptions, SmartSwitchSeesAMaximisedWindowInFront) {
    OptionsUnderTest t;
    HWND front = ::CreateWindowExA(0, "TessalineTestHost", "front", WS_OVERLAPPEDWINDOW, 10, 10, 200, 150, nullptr,
                                   nullptr, ::GetModuleHandleA(nullptr), nullptr);
    ::ShowWindow(front, SW_SHOWMAXIMIZED);
    ::SetForegroundWindow(front);
    waitFor([&] { return ::GetForegroundWindow() == front; }, seconds(2));
    EXPECT_TRUE(t.options.isSomethingMaximised());
    ::ShowWindow(front, SW_RESTORE);
    EXPECT_FALSE(t.options.isSomethingMaximised());
    ::DestroyWindow(front);
}

}  // namespace
}  // namespace tl::wintest
