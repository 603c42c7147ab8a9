#include "support/desktop_probe.h"

#include <shellapi.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

#include "base/unique_handle_win.h"
#include "support/program_dir.h"

namespace tl::wintest {

namespace {

void pressKey(WORD vk) {
    INPUT in[2]{};
    for (INPUT& i : in) {
        i.type = INPUT_KEYBOARD;
        i.ki.wVk = vk;
        i.ki.wScan = static_cast<WORD>(::MapVirtualKeyA(vk, MAPVK_VK_TO_VSC));
    }
    in[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ::SendInput(2, in, sizeof(INPUT));
    ::Sleep(30);
}

HWND visiblePopupMenu() {
    HWND menu = ::FindWindowA("#32768", nullptr);
    return menu && ::IsWindowVisible(menu) ? menu : nullptr;
}

NOTIFYICONDATAA iconRecord(HWND form) {
    NOTIFYICONDATAA nid{};
    nid.cbSize = NOTIFYICONDATAA_V1_SIZE;
    nid.hWnd = form;
    nid.uID = 1;
    return nid;
}

}  // namespace

void postTrayMouse(HWND form, UINT mouseMessage) {
    ::PostMessageA(form, WM_MOUSEMOVE, 1, static_cast<LPARAM>(mouseMessage));
}

bool chooseTrayMenuItem(HWND form, const std::vector<std::string>& visibleCaptions, const std::string& caption) {
    int downs = 0;
    bool found = false;
    for (const auto& c : visibleCaptions) {
        if (c == "-") {
            continue;  // the arrow keys pass over separators
        }
        ++downs;
        if (c == caption) {
            found = true;
            break;
        }
    }
    if (!found) {
        return false;
    }
    postTrayMouse(form, WM_RBUTTONDOWN);
    if (!waitFor([] { return visiblePopupMenu() != nullptr; }, std::chrono::seconds(5))) {
        return false;
    }
    // Home takes the first item, whatever the pointer may have chosen where the menu opened.
    ::Sleep(100);
    pressKey(VK_HOME);
    for (int i = 1; i < downs; ++i) {
        pressKey(VK_DOWN);
    }
    pressKey(VK_RETURN);
    return waitFor([] { return visiblePopupMenu() == nullptr; }, std::chrono::seconds(5));
}

const std::vector<std::string>& trayMenuCaptions() {
    static const std::vector<std::string> captions = {
        "Next",
        "Previous",
        "Switch Orientation",
        "Remove from list",
        "Delete file",
        "-",
        "Delay",
        "Pause",
        "Random switching",
        "Pick different list",
        "-",
        "Display Properties",
        "Start Screensaver",
        "Show panel...",
        "About...",
        "Quit",
    };
    return captions;
}

bool trayHasIcon(HWND form) {
    NOTIFYICONDATAA nid = iconRecord(form);
    nid.uFlags = 0;
    return ::Shell_NotifyIconA(NIM_MODIFY, &nid) != FALSE;
}

void removeTrayIconOf(HWND form) {
    NOTIFYICONDATAA nid = iconRecord(form);
    ::Shell_NotifyIconA(NIM_DELETE, &nid);
}

std::optional<std::string> desktopValue(const char* name) {
    unique_hkey key;
    if (::RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    char buffer[1024] = {};
    DWORD size = sizeof buffer - 1;
    DWORD type = 0;
    if (::RegQueryValueExA(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS ||
        type != REG_SZ) {
        return std::nullopt;
    }
    return std::string(buffer);
}

std::optional<BitmapSize> bitmapFileSize(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    unsigned char h[54] = {};
    if (!in.read(reinterpret_cast<char*>(h), sizeof h) || h[0] != 'B' || h[1] != 'M') {
        return std::nullopt;
    }
    auto le32 = [&](int at) {
        return static_cast<int>(h[at] | (h[at + 1] << 8) | (h[at + 2] << 16) |
                                (static_cast<unsigned>(h[at + 3]) << 24));
    };
    return BitmapSize{le32(18), le32(22), h[28] | (h[29] << 8)};
}

ScreenShot::ScreenShot() {
    width_ = ::GetSystemMetrics(SM_CXSCREEN);
    height_ = ::GetSystemMetrics(SM_CYSCREEN);
    unique_window_dc screen(nullptr);
    unique_hdc memory(::CreateCompatibleDC(screen.get()));
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    unique_hbitmap dib(::CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!dib || !memory) {
        width_ = height_ = 0;
        return;
    }
    {
        scoped_select_object select(memory.get(), dib.get());
        ::BitBlt(memory.get(), 0, 0, width_, height_, screen.get(), 0, 0, SRCCOPY);
        ::GdiFlush();
    }
    const size_t stride = (static_cast<size_t>(width_) * 3 + 3) & ~size_t{3};
    const auto* p = static_cast<const unsigned char*>(bits);
    bits_.assign(p, p + stride * static_cast<size_t>(height_));
}

unsigned ScreenShot::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return 0;
    }
    const size_t stride = (static_cast<size_t>(width_) * 3 + 3) & ~size_t{3};
    const unsigned char* p = &bits_[static_cast<size_t>(height_ - 1 - y) * stride + static_cast<size_t>(x) * 3];
    return (static_cast<unsigned>(p[2]) << 16) | (static_cast<unsigned>(p[1]) << 8) | p[0];
}

bool ScreenShot::save(const std::string& path) const {
    if (bits_.empty()) {
        return false;
    }
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = width_;
    info.biHeight = height_;
    info.biPlanes = 1;
    info.biBitCount = 24;
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = static_cast<DWORD>(file.bfOffBits + bits_.size());
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(reinterpret_cast<const char*>(bits_.data()), static_cast<std::streamsize>(bits_.size()));
    return static_cast<bool>(out);
}

bool closeColour(unsigned a, unsigned b, int tolerance) {
    for (int shift : {0, 8, 16}) {
        const int ca = static_cast<int>((a >> shift) & 0xFF);
        const int cb = static_cast<int>((b >> shift) & 0xFF);
        if (std::abs(ca - cb) > tolerance) {
            return false;
        }
    }
    return true;
}

}  // namespace tl::wintest
