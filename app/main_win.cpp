// The start-up procedure: settings, command line, then the hand-over to the changer or the manager.
#include <windows.h>
#include <commctrl.h>

#include "app/command_line.h"
#include "app/program_win.h"
#include "app/settings.h"
#include "app/startup.h"
#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "changer/main_form_win.h"
#include "manager/manager_form_win.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    using namespace tl;
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES | ICC_HOTKEY_CLASS};
    ::InitCommonControlsEx(&controls);
    scoped_com_init com;

    Program& p = program();
    p.instance = instance;
    p.app.programDir = executableDirectory();
    p.decimalSeparator = userDecimalSeparator();

    HandOver handOver = HandOver::Manager;
    try {
        handOver = startUp(p.app, argumentsFromCommandLine(::GetCommandLineA()), p.settingsFile(), p.fs, p.ui,
                           p.decimalSeparator);
    } catch (const SettingsError& e) {
        ::MessageBoxA(nullptr, e.userMessage().c_str(), "Tessaline", MB_OK | MB_ICONERROR);
        return 1;
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
