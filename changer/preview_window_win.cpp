#include "changer/preview_window_win.h"

#include <wincodec.h>

#include <memory>
#include <optional>

#include "app/resource_ids.h"
#include "app/settings.h"
#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "changer/preview_layout.h"

namespace tl {

namespace {

constexpr const char* kPreviewClass = "TessalinePreview";

struct LoadedPicture {
    unique_hbitmap bitmap;
    int width = 0;
    int height = 0;
};

// Decodes a picture file (BMP, JPEG, GIF, PNG: whatever WIC reads) into a 32-bit DIB section. An empty
// bitmap when the file can't be read.
LoadedPicture loadPreviewPicture(const std::string& path) {
    LoadedPicture picture;
    scoped_com_init com;
    const int wideLength = ::MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, nullptr, 0);
    if (wideLength <= 0) {
        return picture;
    }
    std::wstring widePath(static_cast<size_t>(wideLength), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, widePath.data(), wideLength);

    com_ptr<IWICImagingFactory> factory;
    com_ptr<IWICBitmapDecoder> decoder;
    com_ptr<IWICBitmapFrameDecode> frame;
    com_ptr<IWICFormatConverter> converter;
    UINT width = 0;
    UINT height = 0;
    if (FAILED(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  factory.put_void())) ||
        FAILED(factory->CreateDecoderFromFilename(widePath.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnDemand, decoder.put())) ||
        FAILED(decoder->GetFrame(0, frame.put())) || FAILED(factory->CreateFormatConverter(converter.put())) ||
        FAILED(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&width, &height)) || width == 0 || height == 0 || width > 32767 || height > 32767) {
        return picture;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(width);
    info.bmiHeader.biHeight = -static_cast<LONG>(height);  // top-down, as WIC hands the rows over
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    unique_hbitmap bitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const UINT stride = width * 4;
    if (!bitmap || !bits || FAILED(converter->CopyPixels(nullptr, stride, stride * height, static_cast<BYTE*>(bits)))) {
        return picture;
    }
    picture.bitmap = std::move(bitmap);
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    return picture;
}

class PreviewWindow : public Window {
  public:
    void open(const std::string& path, Settings& settings) {
        settings_ = &settings;
        tag_ = path;
        if (!hwnd() && !createWindow()) {
            return;
        }
        moveToStoredPosition();
        picture_ = {};
        ::ShowWindow(label_, SW_SHOW);
        ::ShowWindow(hwnd(), ::IsIconic(hwnd()) ? SW_RESTORE : SW_SHOW);
        ::SetForegroundWindow(hwnd());
        ::UpdateWindow(hwnd());

        picture_ = loadPreviewPicture(tag_);
        // Until a mode says otherwise the picture sits at the top left in its own size.
        layout_ = PreviewLayout{false, 0, 0, picture_.width, picture_.height, std::nullopt};
        if (picture_.bitmap) {
            layOut();
        }
        ::ShowWindow(label_, SW_HIDE);
        ::InvalidateRect(hwnd(), nullptr, TRUE);
    }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        switch (msg) {
            case WM_PAINT:
                onPaint();
                return 0;
            case WM_ERASEBKGND:
                return 1;  // painted whole in WM_PAINT, around the picture, so that it does not flicker
            case WM_SIZE:
                onResize();
                return defaultProc(msg, wParam, lParam);
            case WM_LBUTTONDOWN:
                onButtonDown(lParam);
                return 0;
            case WM_LBUTTONUP:
                onButtonUp(lParam);
                return 0;
            case WM_DESTROY:
                onUnload();
                return defaultProc(msg, wParam, lParam);
            default:
                return defaultProc(msg, wParam, lParam);
        }
    }

  private:
    bool createWindow() {
        HINSTANCE instance = ::GetModuleHandleA(nullptr);
        registerClass(kPreviewClass, ::LoadIconA(instance, MAKEINTRESOURCEA(IDI_TESSALINE)), nullptr,
                      CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW);
        const int dpi = dpiOf(nullptr);
        if (!create(kPreviewClass, "Preview", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, CW_USEDEFAULT, CW_USEDEFAULT,
                    scaleForDpi(320, dpi), scaleForDpi(240, dpi))) {
            return false;
        }
        label_ = createControl(hwnd(), "STATIC", "LOADING...", SS_LEFT | SS_NOPREFIX, 8, 8, 120, 16, 0);
        labelFont_ = createPointFont("MS Sans Serif", 8, dpiOf(hwnd()));
        ::SendMessageA(label_, WM_SETFONT, reinterpret_cast<WPARAM>(labelFont_.get()), FALSE);
        return true;
    }

    // The position is kept in twips of the screen; a place no monitor shows any more is not used.
    void moveToStoredPosition() {
        const int dpi = dpiOf(nullptr);
        RECT r{};
        ::GetWindowRect(hwnd(), &r);
        const int x = twipsToPixels(settings_->PreviewLeft, dpi);
        const int y = twipsToPixels(settings_->PreviewTop, dpi);
        const RECT target{x, y, x + (r.right - r.left), y + (r.bottom - r.top)};
        if (::MonitorFromRect(&target, MONITOR_DEFAULTTONULL)) {
            ::SetWindowPos(hwnd(), nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }

    void layOut() {
        busy_ = true;
        modeInUse_ = settings_->PreviewMode;
        RECT client{};
        RECT outer{};
        ::GetClientRect(hwnd(), &client);
        ::GetWindowRect(hwnd(), &outer);
        const PixelSize inner{client.right, client.bottom};
        // What the window adds around its inner area, measured on the window itself: caption, borders and
        // the frame width of the user's theme and DPI, where the old fixed allowances guessed.
        const PixelSize frame{(outer.right - outer.left) - client.right, (outer.bottom - outer.top) - client.bottom};
        if (auto layout = layoutPreview(settings_->PreviewMode, {picture_.width, picture_.height}, inner, frame)) {
            layout_ = *layout;
            if (layout_.windowSize && !::IsZoomed(hwnd()) && !::IsIconic(hwnd())) {
                ::SetWindowPos(hwnd(), nullptr, 0, 0, layout_.windowSize->width, layout_.windowSize->height,
                               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
            }
        }
        ::InvalidateRect(hwnd(), nullptr, FALSE);
        busy_ = false;
    }

    void onResize() {
        if (!busy_ && modeInUse_ == kPreviewStretched && picture_.bitmap) {
            layOut();
        }
    }

    RECT pictureRect() const {
        return RECT{layout_.left, layout_.top, layout_.left + layout_.width, layout_.top + layout_.height};
    }

    bool onPicture(LPARAM lParam) const {
        const POINT p{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        const RECT r = pictureRect();
        return picture_.bitmap && ::PtInRect(&r, p);
    }

    void onButtonDown(LPARAM lParam) {
        pressed_ = onPicture(lParam);
        if (pressed_) {
            ::SetCapture(hwnd());
        }
    }

    // A click is a press and a release both on the picture.
    void onButtonUp(LPARAM lParam) {
        if (!pressed_) {
            return;
        }
        pressed_ = false;
        ::ReleaseCapture();
        if (onPicture(lParam)) {
            settings_->PreviewMode = nextPreviewMode(settings_->PreviewMode);
            layOut();
        }
    }

    void onPaint() {
        PAINTSTRUCT ps;
        HDC dc = ::BeginPaint(hwnd(), &ps);
        if (picture_.bitmap && !::IsWindowVisible(label_)) {
            unique_hdc memory(::CreateCompatibleDC(dc));
            scoped_select_object select(memory.get(), picture_.bitmap.get());
            const RECT r = pictureRect();
            if (layout_.stretch) {
                ::SetStretchBltMode(dc, HALFTONE);
                ::SetBrushOrgEx(dc, 0, 0, nullptr);
                ::StretchBlt(dc, r.left, r.top, layout_.width, layout_.height, memory.get(), 0, 0, picture_.width,
                             picture_.height, SRCCOPY);
            } else {
                ::BitBlt(dc, r.left, r.top, picture_.width, picture_.height, memory.get(), 0, 0, SRCCOPY);
            }
            ::ExcludeClipRect(dc, r.left, r.top, r.right, r.bottom);
        }
        RECT client{};
        ::GetClientRect(hwnd(), &client);
        ::FillRect(dc, &client, ::GetSysColorBrush(COLOR_BTNFACE));
        ::EndPaint(hwnd(), &ps);
    }

    void onUnload() {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        RECT r{};
        if ((::IsIconic(hwnd()) || ::IsZoomed(hwnd())) && ::GetWindowPlacement(hwnd(), &placement)) {
            r = placement.rcNormalPosition;
        } else {
            ::GetWindowRect(hwnd(), &r);
        }
        const int dpi = dpiOf(nullptr);
        settings_->PreviewLeft = pixelsToTwips(r.left, dpi);
        settings_->PreviewTop = pixelsToTwips(r.top, dpi);
        // The mode chosen by clicking lasts only while the window is open.
        settings_->PreviewMode = kPreviewNatural;
        picture_ = {};
        label_ = nullptr;
    }

    Settings* settings_ = nullptr;
    std::string tag_;
    LoadedPicture picture_;
    PreviewLayout layout_;
    int16_t modeInUse_ = kPreviewNatural;
    bool busy_ = false;
    bool pressed_ = false;
    HWND label_ = nullptr;
    unique_hfont labelFont_;
};

std::unique_ptr<PreviewWindow> previewInstance;

}  // namespace

void showPreview(const std::string& path, Settings& settings) {
    if (!previewInstance) {
        previewInstance = std::make_unique<PreviewWindow>();
    }
    previewInstance->open(path, settings);
}

HWND previewWindow() {
    return previewInstance ? previewInstance->hwnd() : nullptr;
}

}  // namespace tl
