#include "changer/preview_window_win.h"

#include <memory>
#include <optional>

#include "app/resource_ids.h"
#include "app/settings.h"
#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "changer/preview_layout.h"
#include "lists/picture_win.h"

namespace tl {

namespace {

constexpr const char* kPreviewClass = "TessalinePreview";

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

        if (auto loaded = loadPicture(tag_)) {
            picture_ = std::move(*loaded);
        }
        // Until a mode says otherwise the picture sits at the top left in its own size.
        layout_ = PreviewLayout{false, 0, 0, picture_.width(), picture_.height(), std::nullopt};
        if (picture_) {
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
        HINSTANCE instance = ::GetModuleHandleW(nullptr);
        registerClass(kPreviewClass, ::LoadIconW(instance, MAKEINTRESOURCEW(IDI_TESSALINE)), nullptr,
                      CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW);
        const int dpi = dpiOf(nullptr);
        if (!create(kPreviewClass, "Preview", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, CW_USEDEFAULT, CW_USEDEFAULT,
                    scaleForDpi(320, dpi), scaleForDpi(240, dpi))) {
            return false;
        }
        label_ = createControl(hwnd(), "STATIC", "LOADING...", SS_LEFT | SS_NOPREFIX, 8, 8, 120, 16, 0);
        labelFont_ = createPointFont("MS Sans Serif", 8, dpiOf(hwnd()));
        ::SendMessageW(label_, WM_SETFONT, reinterpret_cast<WPARAM>(labelFont_.get()), FALSE);
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
        if (auto layout = layoutPreview(settings_->PreviewMode, {picture_.width(), picture_.height()}, inner, frame)) {
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
        if (!busy_ && modeInUse_ == kPreviewStretched && picture_) {
            layOut();
        }
    }

    RECT pictureRect() const {
        return RECT{layout_.left, layout_.top, layout_.left + layout_.width, layout_.top + layout_.height};
    }

    bool onPicture(LPARAM lParam) const {
        const POINT p{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        const RECT r = pictureRect();
        return picture_ && ::PtInRect(&r, p);
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
        if (picture_ && !::IsWindowVisible(label_)) {
            unique_hdc memory(::CreateCompatibleDC(dc));
            scoped_select_object select(memory.get(), picture_.bitmap());
            const RECT r = pictureRect();
            if (layout_.stretch) {
                ::SetStretchBltMode(dc, HALFTONE);
                ::SetBrushOrgEx(dc, 0, 0, nullptr);
                ::StretchBlt(dc, r.left, r.top, layout_.width, layout_.height, memory.get(), 0, 0, picture_.width(),
                             picture_.height(), SRCCOPY);
            } else {
                ::BitBlt(dc, r.left, r.top, picture_.width(), picture_.height(), memory.get(), 0, 0, SRCCOPY);
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
    Picture picture_;
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
