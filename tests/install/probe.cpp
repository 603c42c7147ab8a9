// The install test's hands inside Wine (tests/install/run.sh): what a sign-in does with the Run value,
// and whether an installed Tessaline is up in the tray. Prints what it found; exits 1 with a reason when
// the thing asked for did not happen.
//   install_probe signin         starts the command line of HKCU\...\Run "Tessaline", as a sign-in does
//   install_probe tray           waits for a Tessaline main window whose tray icon is there; prints its pid
//   install_probe running        prints the pid of a running Tessaline main window, if there is one
#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr const wchar_t* kMainClass = L"TessalineMain";

// The tray holds the icon when a modification that changes nothing is accepted.
bool trayHasIcon(HWND form) {
    NOTIFYICONDATAW nid{};
    nid.cbSize = NOTIFYICONDATAW_V1_SIZE;
    nid.hWnd = form;
    nid.uID = 1;
    return ::Shell_NotifyIconW(NIM_MODIFY, &nid) != FALSE;
}

int signIn() {
    wchar_t command[2048] = {};
    DWORD size = sizeof command - sizeof(wchar_t);
    if (::RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run", L"Tessaline",
                       RRF_RT_REG_SZ, nullptr, command, &size) != ERROR_SUCCESS) {
        std::puts("no Run value \"Tessaline\"");
        return 1;
    }
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!::CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
        std::printf("the Run value's command line did not start (error %lu)\n", ::GetLastError());
        return 1;
    }
    std::printf("%lu\n", pi.dwProcessId);
    ::CloseHandle(pi.hThread);
    ::CloseHandle(pi.hProcess);
    return 0;
}

int waitForTray() {
    for (int i = 0; i < 600; ++i) {
        for (HWND w = ::FindWindowExW(nullptr, nullptr, kMainClass, nullptr); w;
             w = ::FindWindowExW(nullptr, w, kMainClass, nullptr)) {
            if (trayHasIcon(w)) {
                DWORD pid = 0;
                ::GetWindowThreadProcessId(w, &pid);
                std::printf("%lu\n", pid);
                return 0;
            }
        }
        ::Sleep(100);
    }
    std::puts(::FindWindowW(kMainClass, nullptr) ? "Tessaline runs but has no tray icon" : "no Tessaline main window");
    return 1;
}

int running() {
    HWND w = ::FindWindowW(kMainClass, nullptr);
    if (!w) {
        std::puts("no Tessaline main window");
        return 1;
    }
    DWORD pid = 0;
    ::GetWindowThreadProcessId(w, &pid);
    std::printf("%lu\n", pid);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const char* command = argc > 1 ? argv[1] : "";
    if (std::strcmp(command, "signin") == 0) {
        return signIn();
    }
    if (std::strcmp(command, "tray") == 0) {
        return waitForTray();
    }
    if (std::strcmp(command, "running") == 0) {
        return running();
    }
    std::puts("usage: install_probe signin|tray|running");
    return 2;
}
