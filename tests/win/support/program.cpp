#include "support/program.h"

#include <wincodec.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/file_system_win.h"
#include "base/utf8_win.h"
#include "support/driver.h"

namespace tl::wintest {

namespace {

// Works in UTF-16 throughout, so that names UTF-8 can't hold go too.
void removeTree(const std::wstring& dir) {
    WIN32_FIND_DATAW data{};
    unique_hfind find(::FindFirstFileW((dir + L"\\*").c_str(), &data));
    while (find) {
        const std::wstring name = data.cFileName;
        const std::wstring full = dir + L"\\" + name;
        if (name != L"." && name != L"..") {
            ::SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                removeTree(full);
            } else {
                ::DeleteFileW(full.c_str());
            }
        }
        if (!::FindNextFileW(find.get(), &data)) {
            break;
        }
    }
    find.reset();
    ::RemoveDirectoryW(dir.c_str());
}

}  // namespace

std::string buildDirectory() {
    return directoryOf(executablePath().value_or(std::string()));
}

ProgramDir::ProgramDir(bool withProgram, const std::string& prefix) {
    static std::atomic<int> counter{0};
    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH + 1, temp);
    path_ = narrow(temp);
    if (!path_.empty() && path_.back() == '\\') {
        path_.pop_back();
    }
    path_ += "\\" + prefix + "tl-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++counter) + "-" +
             std::to_string(::GetTickCount());
    if (!::CreateDirectoryW(widen(path_).c_str(), nullptr)) {
        throw std::runtime_error("can't create " + path_);
    }
    if (withProgram &&
        !::CopyFileW(widen(buildDirectory() + "\\tessaline.exe").c_str(), widen(exe()).c_str(), FALSE)) {
        throw std::runtime_error("can't copy tessaline.exe into " + path_);
    }
}

ProgramDir::~ProgramDir() {
    removeTree(widen(path_));
}

void ProgramDir::write(const std::string& name, const std::string& contents) const {
    std::ofstream(std::filesystem::path(widen(file(name))), std::ios::binary | std::ios::trunc) << contents;
}

std::string ProgramDir::read(const std::string& name) const {
    std::ostringstream s;
    s << std::ifstream(std::filesystem::path(widen(file(name))), std::ios::binary).rdbuf();
    return s.str();
}

bool ProgramDir::exists(const std::string& name) const {
    return ::GetFileAttributesW(widen(file(name)).c_str()) != INVALID_FILE_ATTRIBUTES;
}

void ProgramDir::makeFolder(const std::string& name) const {
    ::CreateDirectoryW(widen(file(name)).c_str(), nullptr);
}

std::vector<std::string> ProgramDir::lines(const std::string& name) const {
    std::vector<std::string> out;
    std::istringstream in(read(name));
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        out.push_back(line);
    }
    return out;
}

bool waitFor(const std::function<bool()>& condition, milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) {
            return true;
        }
        MSG msg;
        while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&msg);
            ::DispatchMessageW(&msg);
        }
        std::this_thread::sleep_for(milliseconds(25));
    }
    return condition();
}

void pause(milliseconds duration) {
    waitFor([] { return false; }, duration);
}

void writePicture(const std::string& path, const std::string& type, int width, int height, unsigned colour) {
    scoped_com_init com;
    com_ptr<IWICImagingFactory> factory;
    const GUID container = type == "jpg"   ? GUID_ContainerFormatJpeg
                           : type == "gif" ? GUID_ContainerFormatGif
                           : type == "png" ? GUID_ContainerFormatPng
                                           : GUID_ContainerFormatBmp;
    const std::wstring wide = widen(path);
    com_ptr<IWICStream> stream;
    com_ptr<IWICBitmapEncoder> encoder;
    com_ptr<IWICBitmapFrameEncode> frame;
    if (FAILED(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  factory.put_void())) ||
        FAILED(factory->CreateStream(stream.put())) ||
        FAILED(stream->InitializeFromFilename(wide.c_str(), GENERIC_WRITE)) ||
        FAILED(factory->CreateEncoder(container, nullptr, encoder.put())) ||
        FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) ||
        FAILED(encoder->CreateNewFrame(frame.put(), nullptr)) || FAILED(frame->Initialize(nullptr)) ||
        FAILED(frame->SetSize(static_cast<UINT>(width), static_cast<UINT>(height)))) {
        throw std::runtime_error("can't start writing " + path);
    }
    const UINT stride = (static_cast<UINT>(width) * 3 + 3) & ~3u;
    std::vector<BYTE> pixels(static_cast<size_t>(stride) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const unsigned c = ((x / 16) + (y / 16)) % 2 == 0 ? colour : 0xF0F0F0;
            BYTE* p = &pixels[static_cast<size_t>(y) * stride + static_cast<size_t>(x) * 3];
            p[0] = static_cast<BYTE>(c & 0xFF);
            p[1] = static_cast<BYTE>((c >> 8) & 0xFF);
            p[2] = static_cast<BYTE>((c >> 16) & 0xFF);
        }
    }
    // GIF takes indexed pixels only: they go through a converter to the web palette.
    com_ptr<IWICBitmap> bitmap;
    com_ptr<IWICFormatConverter> converter;
    com_ptr<IWICPalette> palette;
    WICPixelFormatGUID format = type == "gif" ? GUID_WICPixelFormat8bppIndexed : GUID_WICPixelFormat24bppBGR;
    const bool written =
        SUCCEEDED(frame->SetPixelFormat(&format)) &&
        (type != "gif" ? SUCCEEDED(frame->WritePixels(static_cast<UINT>(height), stride,
                                                      static_cast<UINT>(pixels.size()), pixels.data()))
                       : SUCCEEDED(factory->CreateBitmapFromMemory(
                             static_cast<UINT>(width), static_cast<UINT>(height), GUID_WICPixelFormat24bppBGR, stride,
                             static_cast<UINT>(pixels.size()), pixels.data(), bitmap.put())) &&
                             SUCCEEDED(factory->CreatePalette(palette.put())) &&
                             SUCCEEDED(palette->InitializePredefined(WICBitmapPaletteTypeFixedWebPalette, FALSE)) &&
                             SUCCEEDED(frame->SetPalette(palette.get())) &&
                             SUCCEEDED(factory->CreateFormatConverter(converter.put())) &&
                             SUCCEEDED(converter->Initialize(bitmap.get(), GUID_WICPixelFormat8bppIndexed,
                                                             WICBitmapDitherTypeNone, palette.get(), 0.0,
                                                             WICBitmapPaletteTypeFixedWebPalette)) &&
                             SUCCEEDED(frame->WriteSource(converter.get(), nullptr)));
    if (!written || FAILED(frame->Commit()) || FAILED(encoder->Commit())) {
        throw std::runtime_error("can't write " + path);
    }
}

std::optional<BitmapSize> bitmapFileSize(const std::string& path) {
    unsigned char h[54] = {};
    if (!std::ifstream(std::filesystem::path(widen(path)), std::ios::binary).read(reinterpret_cast<char*>(h), sizeof h) || h[0] != 'B' ||
        h[1] != 'M') {
        return std::nullopt;
    }
    const auto le32 = [&](int at) {
        return static_cast<int>(h[at] | (h[at + 1] << 8) | (h[at + 2] << 16) |
                                (static_cast<unsigned>(h[at + 3]) << 24));
    };
    return BitmapSize{le32(18), le32(22), h[28] | (h[29] << 8)};
}

std::optional<std::string> desktopValue(const char* name) {
    wchar_t buffer[4096] = {};
    DWORD size = sizeof buffer;
    if (::RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", widen(name).c_str(), RRF_RT_REG_SZ, nullptr,
                       buffer, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return narrow(buffer);
}

void setDesktopValue(const char* name, const std::string& value) {
    const std::wstring wide = widen(value);
    ::RegSetKeyValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", widen(name).c_str(), REG_SZ, wide.c_str(),
                      static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
}

DesktopValueGuard::~DesktopValueGuard() {
    if (old_) {
        setDesktopValue(name_, *old_);
    } else {
        ::RegDeleteKeyValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", widen(name_).c_str());
    }
}

RunningProgram::RunningProgram(const ProgramDir& dir, const std::string& arguments) {
    std::wstring commandLine = widen("\"" + dir.exe() + "\"" + (arguments.empty() ? "" : " " + arguments));
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!::CreateProcessW(widen(dir.exe()).c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          widen(dir.path()).c_str(), &si, &pi)) {
        throw std::runtime_error("can't start " + dir.exe());
    }
    ::CloseHandle(pi.hThread);
    process_.reset(pi.hProcess);
    pid_ = pi.dwProcessId;
    ::WaitForInputIdle(pi.hProcess, 5000);
}

RunningProgram::~RunningProgram() {
    if (hasExited(milliseconds(0))) {
        return;
    }
    ::EnumWindows(
        [](HWND window, LPARAM pid) -> BOOL {
            DWORD owner = 0;
            ::GetWindowThreadProcessId(window, &owner);
            if (owner == static_cast<DWORD>(pid)) {
                ::PostMessageW(window, WM_CLOSE, 0, 0);
            }
            return TRUE;
        },
        static_cast<LPARAM>(pid_));
    if (!hasExited(seconds(5))) {
        ::TerminateProcess(process_.get(), 99);
        ::WaitForSingleObject(process_.get(), 5000);
    }
}

bool RunningProgram::hasExited(milliseconds wait) const {
    return ::WaitForSingleObject(process_.get(), static_cast<DWORD>(wait.count())) == WAIT_OBJECT_0;
}

DWORD RunningProgram::exitCode() const {
    DWORD code = STILL_ACTIVE;
    ::GetExitCodeProcess(process_.get(), &code);
    return code;
}

HWND RunningProgram::window(const char* className, const char* caption) const {
    return findWindow(pid_, className, caption, false);
}

HWND RunningProgram::waitForWindow(const char* className,
                                   const char* caption,
                                   milliseconds timeout,
                                   bool visible) const {
    HWND found = nullptr;
    waitFor([&] { return (found = findWindow(pid_, className, caption, visible)) != nullptr; }, timeout);
    return found;
}

}  // namespace tl::wintest
