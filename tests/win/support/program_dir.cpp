#include "support/program_dir.h"

#include <wincodec.h>

#include <atomic>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/unique_handle_win.h"

namespace tl::wintest {

namespace {

void removeTree(const std::string& dir) {
    WIN32_FIND_DATAA data{};
    unique_hfind find(::FindFirstFileA((dir + "\\*").c_str(), &data));
    if (find) {
        do {
            const std::string name = data.cFileName;
            if (name == "." || name == "..") {
                continue;
            }
            const std::string full = dir + "\\" + name;
            ::SetFileAttributesA(full.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                removeTree(full);
            } else {
                ::DeleteFileA(full.c_str());
            }
        } while (::FindNextFileA(find.get(), &data));
    }
    find.reset();
    ::RemoveDirectoryA(dir.c_str());
}

}  // namespace

std::string buildDirectory() {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string dir = path;
    return dir.substr(0, dir.find_last_of('\\'));
}

ProgramDir::ProgramDir(bool withProgram) {
    static std::atomic<int> counter{0};
    char temp[MAX_PATH] = {};
    ::GetTempPathA(MAX_PATH, temp);
    std::string base = temp;
    if (!base.empty() && base.back() == '\\') {
        base.pop_back();
    }
    path_ = base + "\\tl-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++counter) + "-" +
            std::to_string(::GetTickCount());
    if (!::CreateDirectoryA(path_.c_str(), nullptr)) {
        throw std::runtime_error("can't create " + path_);
    }
    if (withProgram && !::CopyFileA((buildDirectory() + "\\tessaline.exe").c_str(), exe().c_str(), FALSE)) {
        throw std::runtime_error("can't copy tessaline.exe into " + path_);
    }
}

ProgramDir::~ProgramDir() {
    removeTree(path_);
}

void ProgramDir::write(const std::string& name, const std::string& contents) const {
    std::ofstream out(file(name), std::ios::binary | std::ios::trunc);
    out << contents;
}

std::string ProgramDir::read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool ProgramDir::exists(const std::string& name) const {
    return ::GetFileAttributesA(file(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<std::string> ProgramDir::lines(const std::string& name) const {
    std::vector<std::string> out;
    std::string text = read(name), line;
    for (char c : text) {
        if (c == '\n') {
            out.push_back(line);
            line.clear();
        } else if (c != '\r') {
            line += c;
        }
    }
    if (!line.empty()) {
        out.push_back(line);
    }
    return out;
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) {
            return true;
        }
        MSG msg;
        while (::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&msg);
            ::DispatchMessageA(&msg);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    return condition();
}

void writePicture(const std::string& path, const std::string& type, int width, int height, unsigned colour) {
    scoped_com_init com;
    com_ptr<IWICImagingFactory> factory;
    if (FAILED(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  factory.put_void()))) {
        throw std::runtime_error("no WIC");
    }
    GUID container = GUID_ContainerFormatBmp;
    if (type == "jpg") {
        container = GUID_ContainerFormatJpeg;
    } else if (type == "gif") {
        container = GUID_ContainerFormatGif;
    } else if (type == "png") {
        container = GUID_ContainerFormatPng;
    }
    const std::wstring wpath(path.begin(), path.end());
    com_ptr<IWICStream> stream;
    com_ptr<IWICBitmapEncoder> encoder;
    com_ptr<IWICBitmapFrameEncode> frame;
    if (FAILED(factory->CreateStream(stream.put())) ||
        FAILED(stream->InitializeFromFilename(wpath.c_str(), GENERIC_WRITE)) ||
        FAILED(factory->CreateEncoder(container, nullptr, encoder.put())) ||
        FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) ||
        FAILED(encoder->CreateNewFrame(frame.put(), nullptr)) || FAILED(frame->Initialize(nullptr)) ||
        FAILED(frame->SetSize(static_cast<UINT>(width), static_cast<UINT>(height)))) {
        throw std::runtime_error("can't start writing " + path);
    }
    WICPixelFormatGUID format = type == "gif" ? GUID_WICPixelFormat8bppIndexed : GUID_WICPixelFormat24bppBGR;
    frame->SetPixelFormat(&format);
    const UINT stride = (static_cast<UINT>(width) * 3 + 3) & ~3u;
    std::vector<BYTE> pixels(static_cast<size_t>(stride) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            BYTE* p = &pixels[static_cast<size_t>(y) * stride + static_cast<size_t>(x) * 3];
            const bool stripe = ((x / 16) + (y / 16)) % 2 == 0;
            p[0] = static_cast<BYTE>(stripe ? (colour & 0xFF) : 0xF0);
            p[1] = static_cast<BYTE>(stripe ? ((colour >> 8) & 0xFF) : 0xF0);
            p[2] = static_cast<BYTE>(stripe ? ((colour >> 16) & 0xFF) : 0xF0);
        }
    }
    if (format == GUID_WICPixelFormat24bppBGR) {
        if (FAILED(frame->WritePixels(static_cast<UINT>(height), stride, static_cast<UINT>(pixels.size()),
                                      pixels.data()))) {
            throw std::runtime_error("can't write pixels of " + path);
        }
    } else {
        // GIF wants indexed pixels: convert through a WIC bitmap.
        com_ptr<IWICBitmap> bitmap;
        com_ptr<IWICFormatConverter> converter;
        com_ptr<IWICPalette> palette;
        if (FAILED(factory->CreateBitmapFromMemory(static_cast<UINT>(width), static_cast<UINT>(height),
                                                   GUID_WICPixelFormat24bppBGR, stride,
                                                   static_cast<UINT>(pixels.size()), pixels.data(), bitmap.put())) ||
            FAILED(factory->CreatePalette(palette.put())) ||
            FAILED(palette->InitializePredefined(WICBitmapPaletteTypeFixedWebPalette, FALSE)) ||
            FAILED(frame->SetPalette(palette.get())) || FAILED(factory->CreateFormatConverter(converter.put())) ||
            FAILED(converter->Initialize(bitmap.get(), GUID_WICPixelFormat8bppIndexed, WICBitmapDitherTypeNone,
                                         palette.get(), 0.0, WICBitmapPaletteTypeFixedWebPalette)) ||
            FAILED(frame->WriteSource(converter.get(), nullptr))) {
            throw std::runtime_error("can't write GIF pixels of " + path);
        }
    }
    if (FAILED(frame->Commit()) || FAILED(encoder->Commit())) {
        throw std::runtime_error("can't finish " + path);
    }
}

}  // namespace tl::wintest
