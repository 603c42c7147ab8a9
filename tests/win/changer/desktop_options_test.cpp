// The desktop options against real windows: a desktop shell of the test's own (Wine has none) and a
// maximised window in front.
#include "changer/desktop_options_win.h"

#include <gtest/gtest.h>

#include <vector>

#include "app/settings.h"
#include "base/file_system_win.h"
#include "base/window_win.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

// Progman "Program Manager" / SHELLDLL_DefView / SysListView32, whose windows record what they are sent.
class StandInShell {
  public:
    StandInShell() {
        registerStandIn("Progman", &DefWindowProcA);
        registerStandIn("SHELLDLL_DefView", &DefWindowProcA);
        registerStandIn("SysListView32", &listProc);
        progman = create(WS_EX_TOOLWINDOW, "Progman", "Program Manager", WS_POPUP, nullptr);
        defView = create(0, "SHELLDLL_DefView", "", WS_CHILD, progman);
        listView = create(0, "SysListView32", "FolderView", WS_CHILD, defView);
        pause(milliseconds(100));  // first paints done
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
    static HWND create(DWORD exStyle, const char* className, const char* title, DWORD style, HWND parent) {
        return ::CreateWindowExA(exStyle, className, title, style | WS_VISIBLE, 0, 0, 160, 120, parent, nullptr,
                                 ::GetModuleHandleA(nullptr), nullptr);
    }
    static LRESULT CALLBACK listProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
        if (msg == 0x1026) {  // LVM_SETTEXTBKCOLOR
            log().textBackgrounds.push_back(lParam);
            return TRUE;
        }
        if (msg == WM_PAINT) {
            ++log().listPaints;
        }
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
};

// frmMain's part: a hidden window whose transTimer ticks reach the options.
class HostWindow : public Window {
  public:
    static constexpr UINT_PTR kTransTimer = 7;
    HostWindow() {
        registerClass("TessalineTestHost");
        create("TessalineTestHost", "host", WS_OVERLAPPED, 0, 0, 0, 100, 100);
    }
    ~HostWindow() override { ::KillTimer(hwnd(), kTransTimer); }
    Win32DesktopOptions* options = nullptr;

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        if (msg == WM_TIMER && wParam == kTransTimer && options) {
            options->onTransTimer();
            return 0;
        }
        return defaultProc(msg, wParam, lParam);
    }
};

struct OptionsUnderTest {
    OptionsUnderTest() : options(host.hwnd(), settings, fs, [](const std::string&) {}) {
        host.options = &options;
        settings.ScreenSaver = -1;
    }
    Settings settings;
    Win32FileSystem fs;
    HostWindow host;
    Win32DesktopOptions options;
};

TEST(DesktopOptions, TransparentIconTextAndHiddenIconsReachTheShellsWindows) {
    StandInShell shell;
    DesktopValueGuard wallpaper("Wallpaper");
    setDesktopValue("Wallpaper", "C:\\windows\\plain.bmp");
    OptionsUnderTest t;
    t.options.load(HostWindow::kTransTimer);
    ASSERT_EQ(t.options.desktopListView(), reinterpret_cast<ShellWindow>(shell.listView))
        << "the icon list was not found under Progman / SHELLDLL_DefView";
    auto& log = StandInShell::log();

    EXPECT_TRUE(t.options.toggleOption(OptionItem::mnuTransIcon));
    ASSERT_EQ(log.textBackgrounds.size(), 1u) << "turning it on must act at once";
    EXPECT_EQ(static_cast<DWORD>(log.textBackgrounds[0]), kClrNone);
    EXPECT_TRUE(waitFor([&] { return log.textBackgrounds.size() >= 3; }, seconds(4)))
        << "transTimer kept the text transparent only " << log.textBackgrounds.size() << " times";
    log.listPaints = 0;
    t.options.afterWallpaperApplied();
    EXPECT_TRUE(waitFor([&] { return log.listPaints > 0; }, seconds(2))) << "after an apply the icons are redrawn";
    EXPECT_FALSE(t.options.toggleOption(OptionItem::mnuTransIcon));
    pause(milliseconds(200));
    const size_t sent = log.textBackgrounds.size();
    pause(milliseconds(2200));
    EXPECT_EQ(log.textBackgrounds.size(), sent) << "the timer went on after TransText was off";

    t.options.toggleOption(OptionItem::mnuOptionsHideIcons);
    EXPECT_FALSE(shell.viewVisible());
    t.options.toggleOption(OptionItem::mnuTrayDisplayHideIcons);
    EXPECT_TRUE(shell.viewVisible());
}

TEST(DesktopOptions, SmartSwitchSeesAMaximisedWindowInFront) {
    OptionsUnderTest t;
    unique_hwnd front(::CreateWindowExA(0, "TessalineTestHost", "front", WS_OVERLAPPEDWINDOW, 10, 10, 200, 150, nullptr,
                                        nullptr, ::GetModuleHandleA(nullptr), nullptr));
    ::ShowWindow(front.get(), SW_SHOWMAXIMIZED);
    ::SetForegroundWindow(front.get());
    waitFor([&] { return ::GetForegroundWindow() == front.get(); }, seconds(2));
    EXPECT_TRUE(t.options.isSomethingMaximised());
    ::ShowWindow(front.get(), SW_RESTORE);
    EXPECT_FALSE(t.options.isSomethingMaximised());
}

}  // namespace
}  // namespace tl::wintest
