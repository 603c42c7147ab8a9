#include "changer/about_window_win.h"

#include <shellapi.h>

#include <memory>
#include <vector>

#include "app/resource_ids.h"
#include "base/file_system_win.h"
#include "base/utf8_win.h"
#include "changer/small_dialog_win.h"
#include "version.h"

namespace tl {

namespace {

constexpr const char* kAboutClass = "TessalineAbout";
constexpr int kLabel3 = 103;
constexpr COLORREF kLinkColour = RGB(0, 102, 204);

std::string versionString(const std::vector<char>& record, const std::string& name) {
    struct Translation {
        WORD language;
        WORD codePage;
    };
    Translation* translations = nullptr;
    UINT length = 0;
    std::vector<std::wstring> blocks;
    if (::VerQueryValueW(record.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&translations),
                         &length)) {
        for (UINT i = 0; i < length / sizeof(Translation); ++i) {
            wchar_t block[16];
            wsprintfW(block, L"%04x%04x", translations[i].language, translations[i].codePage);
            blocks.push_back(block);
        }
    }
    blocks.push_back(L"040904b0");  // US English in Unicode, where a record carries no translation table
    for (const std::wstring& block : blocks) {
        wchar_t* text = nullptr;
        UINT size = 0;
        const std::wstring path = L"\\StringFileInfo\\" + block + L"\\" + widen(name);
        if (::VerQueryValueW(record.data(), path.c_str(), reinterpret_cast<void**>(&text), &size) && text) {
            return size > 0 ? narrow(text) : std::string();
        }
    }
    return {};
}

class AboutWindow : public SmallDialog {
  public:
    void open(HWND owner) {
        if (hwnd()) {
            showInFront();
            return;
        }
        if (!createDialog(kAboutClass, "About", 340, 214, owner)) {
            return;
        }
        const VersionFacts facts = readVersionFacts(executablePath().value_or(std::string()));
        const int iconSize = scaleForDpi(32, dpi());
        icon_.reset(static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_TESSALINE),
                                                    IMAGE_ICON, iconSize, iconSize, LR_DEFAULTCOLOR)));
        HWND picture = addControl("STATIC", "", SS_ICON | SS_CENTERIMAGE, 12, 14, 32, 32, 0);
        ::SendMessageW(picture, STM_SETICON, reinterpret_cast<WPARAM>(icon_.get()), 0);
        addControl("STATIC", "Version:", SS_LEFT, 66, 16, 48, 14, 0);
        addControl("STATIC", facts.version.c_str(), SS_LEFT | SS_NOPREFIX, 116, 16, 204, 14, 0);
        addControl("STATIC", facts.trademarks.c_str(), SS_LEFT | SS_NOPREFIX, 66, 32, 254, 14, 0);
        addControl("STATIC", facts.copyright.c_str(), SS_LEFT | SS_NOPREFIX, 66, 48, 254, 14, 0);
        addControl("STATIC", "This program is freeware. It can be distributed as per the requirements in the license.",
                   SS_LEFT, 12, 80, 316, 28, 0);
        addControl("STATIC",
                   "For more information about this and other programs, check out the below URL. I hope you enjoy "
                   "this program!",
                   SS_LEFT, 12, 114, 316, 28, 0);
        link_ = addControl("STATIC", TL_WEB_PAGE, SS_LEFT | SS_NOPREFIX | SS_NOTIFY, 12, 150, 316, 14, kLabel3);
        HWND button =
            addControl("BUTTON", "&Love your work, baby", BS_DEFPUSHBUTTON | WS_TABSTOP, 100, 178, 140, 25, IDOK);
        useFont(createPointFont("Tahoma", 8, dpi()));
        linkFont_ = underlinedCopy();
        ::SendMessageW(link_, WM_SETFONT, reinterpret_cast<WPARAM>(linkFont_.get()), FALSE);
        setFocusControl(button);
        showInFront();
    }

  protected:
    void onCommand(int id, int notification, HWND) override {
        if (id == kLabel3 && notification == STN_CLICKED) {
            // The address opens in the user's browser; no window of a command shell comes up on the way.
            ::ShellExecuteW(hwnd(), L"open", widen(TL_WEB_PAGE).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
        } else if (id == IDOK || id == IDCANCEL) {
            close();
        }
    }

    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        if (msg == WM_CTLCOLORSTATIC && reinterpret_cast<HWND>(lParam) == link_) {
            const LRESULT brush = defaultProc(msg, wParam, lParam);
            ::SetTextColor(reinterpret_cast<HDC>(wParam), kLinkColour);
            return brush;
        }
        if (msg == WM_PAINT) {
            onPaint();
            return 0;
        }
        if (msg == WM_SETCURSOR && reinterpret_cast<HWND>(wParam) == link_) {
            ::SetCursor(::LoadCursorW(nullptr, IDC_HAND));
            return TRUE;
        }
        return SmallDialog::onMessage(msg, wParam, lParam);
    }

  private:
    // The frame shape around the version lines.
    void onPaint() {
        PAINTSTRUCT ps;
        HDC dc = ::BeginPaint(hwnd(), &ps);
        RECT frame{scaleForDpi(56, dpi()), scaleForDpi(8, dpi()), scaleForDpi(328, dpi()), scaleForDpi(68, dpi())};
        ::DrawEdge(dc, &frame, EDGE_ETCHED, BF_RECT);
        ::EndPaint(hwnd(), &ps);
    }

    unique_hfont underlinedCopy() {
        LOGFONTW lf{};
        ::GetObjectW(font(), sizeof lf, &lf);
        lf.lfUnderline = TRUE;
        return unique_hfont(::CreateFontIndirectW(&lf));
    }

    HWND link_ = nullptr;
    unique_hicon icon_;
    unique_hfont linkFont_;
};

std::unique_ptr<AboutWindow> aboutWindow;

}  // namespace

VersionFacts readVersionFacts(const std::string& path) {
    VersionFacts facts;
    DWORD ignored = 0;
    const std::wstring wide = widen(path);
    const DWORD size = ::GetFileVersionInfoSizeW(wide.c_str(), &ignored);
    if (size == 0) {
        return facts;
    }
    std::vector<char> record(size);
    if (!::GetFileVersionInfoW(wide.c_str(), 0, size, record.data())) {
        return facts;
    }
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (::VerQueryValueW(record.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) && fixed &&
        length >= sizeof(VS_FIXEDFILEINFO)) {
        // The build numbers its releases major.minor.revision in the record's first three fields.
        facts.version = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                        std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                        std::to_string(HIWORD(fixed->dwFileVersionLS));
    }
    facts.trademarks = versionString(record, "LegalTrademarks");
    facts.copyright = versionString(record, "LegalCopyright");
    return facts;
}

void showAbout(HWND owner) {
    if (!aboutWindow) {
        aboutWindow = std::make_unique<AboutWindow>();
    }
    aboutWindow->open(owner);
}

}  // namespace tl
