// The start-up procedure: settings, command line, then the hand-over to the changer or the manager.
#include <windows.h>
// commctrl.h needs windows.h first.
#include <commctrl.h>

#include <memory_resource>

#include "app/command_line.h"
#include "app/program_win.h"
#include "app/settings.h"
#include "app/startup.h"
#include "base/page_memory.h"
#include "base/unique_handle_win.h"
#include "base/unrepresentable_names.h"
#include "base/utf8_win.h"
#include "base/window_win.h"
#include "changer/main_form_win.h"
#include "manager/manager_form_win.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    using namespace tl;
    // Scratch memory of a wallpaper change (the resampler's rows and tables) goes back to the system when the
    // change is done, rather than staying in the heap of a program that then idles in the tray.
    std::pmr::set_default_resource(&pageMemory());
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES | ICC_HOTKEY_CLASS};
    ::InitCommonControlsEx(&controls);
    scoped_com_init com;

    Program& p = program();
    p.instance = instance;
    std::string shownExe;
    const std::optional<std::string> exe = executablePath(&shownExe);
    if (!exe) {
        // Its settings and lists live beside it: without a path to its folder it has nowhere to keep them.
        reportUnrepresentableNames(p.ui, {shownExe});
        return 1;
    }
    p.app.programDir = directoryOf(*exe);
    p.decimalSeparator = userDecimalSeparator();

    // The command line as typed, in UTF-16: the ANSI one has '?' for whatever the code page lacks.
    bool lost = false;
    const std::string commandLine = argumentsFromCommandLine(narrow(::GetCommandLineW(), &lost));
    HandOver handOver = HandOver::Manager;
    try {
        // A list named with a character UTF-8 can't hold is not opened under another name: the program
        // starts as if none was named, and says why.
        handOver = startUp(p.app, lost ? std::string() : commandLine, p.settingsFile(), p.fs, p.ui, p.decimalSeparator);
    } catch (const SettingsError& e) {
        p.ui.messageBox(e.userMessage(), "Tessaline", MB_OK | MB_ICONERROR);
        return 1;
    }
    if (lost) {
        reportUnrepresentableNames(p.ui, {commandLine});
    }

    if (handOver == HandOver::MainForm) {
        try {
            loadMainForm();
        } catch (const std::exception&) {
            // A failed load ends start-up; whatever window it left open keeps the program alive.
        }
    } else {
        showManager();
    }
    if (!anyFormLoaded()) {
        return 0;
    }
    return runMessageLoop();
}
