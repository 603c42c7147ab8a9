#include "hotkey/hotkey_form_win.h"

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/window_win.h"
#include "hotkey/hot_key_control_win.h"
#include "hotkey/hotkey_form.h"

namespace tl {

namespace {

constexpr const char* kFormClass = "TessalineHotkey";
constexpr const char* kFace = "Tahoma";
constexpr int kPointSize = 8;
constexpr int kIdLabel1 = 4001;
constexpr int kIdHotKey = 4002;

// Layout at 96 DPI.
constexpr int kClientWidth = 300;
constexpr int kClientHeight = 112;

class HotkeyForm : public Window {
  public:
    // Builds the dialog and runs it until it is unloaded.
    bool run(HWND owner) {
        registerClass(kFormClass, ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_TESSALINE)));
        const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
        const DWORD exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
        create(kFormClass, "Hot key", style, exStyle, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, owner);
        if (!hwnd()) {
            return false;
        }
        placeOver(owner, style, exStyle);
        onLoad();
        ::ShowWindow(hwnd(), SW_SHOW);
        ::SetForegroundWindow(hwnd());
        focusField();
        runModal(hwnd(), owner);
        return stored_;
    }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        switch (msg) {
            case WM_CREATE:
                onCreate();
                return 0;
            case WM_COMMAND:
                onCommand(LOWORD(wParam), HIWORD(wParam));
                return 0;
            case DM_GETDEFID:
                return MAKELRESULT(IDOK, DC_HASDEFID);
            case WM_ACTIVATE:
                if (LOWORD(wParam) != WA_INACTIVE) {
                    // As a dialog does: the activated form gives the focus back to its field.
                    focusField();
                    return 0;
                }
                break;
            case WM_CLOSE:
                unload();
                return 0;
            case WM_DESTROY:
                // The tool tip window is owned by the form and goes with it.
                toolTips_.release();
                break;
            default:
                break;
        }
        return defaultProc(msg, wParam, lParam);
    }

  private:
    void onCreate() {
        const int dpi = dpiOf(hwnd());
        font_ = createPointFont(kFace, kPointSize, dpi);
        createControl(hwnd(), "STATIC", "Press the key combination you want to trigger a change in the wallpaper",
                      WS_VISIBLE | SS_LEFT, 12, 10, 276, 28, kIdLabel1);
        HotKeySavedProperties saved;
        saved.Font = ControlFont{kFace, kPointSize, false, false, false, false};
        hk_.create(hwnd(), 12, 44, 276, 22, kIdHotKey, saved);
        createControl(hwnd(), "BUTTON", "&Ok", WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 132, 78, 75, 23, IDOK);
        createControl(hwnd(), "BUTTON", "&Cancel", WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 213, 78, 75, 23, IDCANCEL);
        // The field keeps its own font; every other text is in the form's.
        for (HWND child = ::GetWindow(hwnd(), GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
            if (child != hk_.hwnd()) {
                ::SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
            }
        }
        toolTips_.reset(createToolTips(hwnd()));
        addToolTip(toolTips_.get(), hk_.field(), "Press the key combination in this box");
    }

    // The client area at the window's DPI, centred over the owner (or the screen).
    void placeOver(HWND owner, DWORD style, DWORD exStyle) {
        const int dpi = dpiOf(hwnd());
        RECT frame{0, 0, scaleForDpi(kClientWidth, dpi), scaleForDpi(kClientHeight, dpi)};
        ::AdjustWindowRectEx(&frame, style, FALSE, exStyle);
        const int width = frame.right - frame.left;
        const int height = frame.bottom - frame.top;
        RECT area{};
        if (!owner || !::IsWindowVisible(owner) || !::GetWindowRect(owner, &area)) {
            ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        }
        const int x = area.left + ((area.right - area.left) - width) / 2;
        const int y = area.top + ((area.bottom - area.top) - height) / 2;
        ::SetWindowPos(hwnd(), nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void onLoad() { loadHotkeyForm(hk_.hk(), program().app.settings); }

    void onCommand(int id, int code) {
        if (code != BN_CLICKED) {
            return;
        }
        if (id == IDOK) {
            onOk();
        } else if (id == IDCANCEL) {
            unload();
        }
    }

    void onOk() {
        storeHotkeyForm(hk_.hk(), program().app.settings);
        program().saveSettings();
        stored_ = true;
        unload();
    }

    void focusField() {
        if (hk_.field()) {
            ::SetFocus(hk_.field());
        }
    }

    void unload() { ::DestroyWindow(hwnd()); }

    unique_hfont font_;
    unique_hwnd toolTips_;
    HotKeyControl hk_;
    bool stored_ = false;
};

}  // namespace

bool showHotkeyDialog(HWND owner) {
    HotkeyForm form;
    return form.run(owner);
}

}  // namespace tl
