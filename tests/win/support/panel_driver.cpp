#include "support/panel_driver.h"

#include <iterator>

#include "support/desktop_probe.h"
#include "support/program_dir.h"

namespace tl::wintest {

namespace {

// An item's text from another process's list or combo box, asked in UTF-16: Wine carries these messages
// between processes in that form only.
std::string itemText(HWND box, UINT lengthMessage, UINT textMessage, int index) {
    const auto length = ::SendMessageW(box, lengthMessage, static_cast<WPARAM>(index), 0);
    if (length < 0) {
        return {};
    }
    std::wstring wide(static_cast<size_t>(length) + 1, L'\0');
    ::SendMessageW(box, textMessage, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(wide.data()));
    wide.resize(wide.find(L'\0'));
    std::string text(wide.size() * 2 + 1, '\0');
    const int n = ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), static_cast<int>(wide.size()), text.data(),
                                        static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<size_t>(n > 0 ? n : 0));
    return text;
}

HWND openMenu() {
    HWND menu = ::FindWindowA("#32768", nullptr);
    return menu && ::IsWindowVisible(menu) ? menu : nullptr;
}

// Waits until the thread of the window under the point holds no mouse capture (a menu aside) and answers
// messages again. Wine sends mouse input to the window that has the capture when the input arrives: a
// click sent while a list box still holds it from the click before would become a drag in that list.
void settle(POINT at) {
    const DWORD thread = ::GetWindowThreadProcessId(::WindowFromPoint(at), nullptr);
    waitFor([&] {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return !::GetGUIThreadInfo(thread, &info) || info.hwndCapture == nullptr ||
               (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
    });
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutA(::WindowFromPoint(at), WM_NULL, 0, 0, SMTO_NORMAL, 10000, &ignored);
}

INPUT keyInput(WORD key, bool up) {
    INPUT in{};
    in.type = INPUT_KEYBOARD;
    in.ki.wVk = key;
    in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return in;
}

void press(WORD key) {
    INPUT in[2] = {keyInput(key, false), keyInput(key, true)};
    ::SendInput(2, in, sizeof(INPUT));
    ::Sleep(30);
}

INPUT mouseInput(POINT at, DWORD flags) {
    INPUT in{};
    in.type = INPUT_MOUSE;
    in.mi.dx = MulDiv(at.x, 65535, ::GetSystemMetrics(SM_CXSCREEN) - 1);
    in.mi.dy = MulDiv(at.y, 65535, ::GetSystemMetrics(SM_CYSCREEN) - 1);
    in.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE;
    return in;
}

bool mouseClick(POINT at, std::initializer_list<WORD> keys, DWORD down, DWORD up) {
    std::vector<INPUT> inputs;
    for (WORD k : keys) {
        inputs.push_back(keyInput(k, false));
    }
    for (DWORD flags : {DWORD{MOUSEEVENTF_MOVE}, down, up}) {
        inputs.push_back(mouseInput(at, flags));
    }
    for (auto it = std::rbegin(keys); it != std::rend(keys); ++it) {
        inputs.push_back(keyInput(*it, true));
    }
    settle(at);
    const bool sent = ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) == inputs.size();
    ::Sleep(50);
    settle(at);
    return sent;
}

}  // namespace

bool clickAt(POINT at, std::initializer_list<WORD> keys) {
    return mouseClick(at, keys, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
}

bool rightClickAt(POINT at) {
    return mouseClick(at, {}, MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP);
}

POINT centreOf(HWND window) {
    RECT r{};
    ::GetWindowRect(window, &r);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

POINT lineCentre(HWND list, int line) {
    const auto height = static_cast<int>(::SendMessageA(list, LB_GETITEMHEIGHT, 0, 0));
    const auto top = static_cast<int>(::SendMessageA(list, LB_GETTOPINDEX, 0, 0));
    POINT at{40, (line - top) * height + height / 2};
    ::ClientToScreen(list, &at);
    return at;
}

std::string chosenItem(HWND comboBox) {
    const auto index = static_cast<int>(::SendMessageA(comboBox, CB_GETCURSEL, 0, 0));
    return index < 0 ? std::string() : itemText(comboBox, CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
}

bool showPanel(HWND form) {
    return chooseTrayMenuItem(form, trayMenuCaptions(), "Show panel...") &&
           waitFor([&] { return ::IsWindowVisible(form) && ::GetForegroundWindow() == form; });
}

bool chooseOpenMenuItem(int position) {
    if (!waitFor([] { return openMenu() != nullptr; }, std::chrono::seconds(5))) {
        return false;
    }
    ::Sleep(100);
    // Home takes the first item whatever the pointer chose when the menu opened.
    press(VK_HOME);
    for (int i = 0; i < position; ++i) {
        press(VK_DOWN);
    }
    press(VK_RETURN);
    return waitFor([] { return openMenu() == nullptr; }, std::chrono::seconds(5));
}

}  // namespace tl::wintest
