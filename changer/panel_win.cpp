#include "changer/panel_win.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/resource_ids.h"
#include "base/window_win.h"
#include "changer/commands.h"

namespace tl {

namespace {

constexpr DWORD kWindowStyle = WS_OVERLAPPEDWINDOW;

struct ButtonDesign {
    PanelButton button;
    int id;
    int icon;
    const char* toolTip;
};

// The tool tips are the design's own texts, spelling included.
constexpr ButtonDesign kButtons[] = {
    {PanelButton::Image5, idImage5, IDI_PANEL_WEB, "Get wallpapers from the web"},
    {PanelButton::Image1, idImage1, IDI_PANEL_MANAGER, "Open Paperlist Manager"},
    {PanelButton::Image4, idImage4, IDI_PANEL_OPTIONS, "Click for Preferences"},
    {PanelButton::Image3, idImage3, IDI_PANEL_REMOVE, "Remove selected wallpaper(s) from list"},
    {PanelButton::Image2, idImage2, IDI_PANEL_DELETE,
     "Recycle selected wallpaper(s). Hold CTRL to delete permenately without prompt, SHIFT for delete permenately"},
};

constexpr int kCaptionIds[] = {idLabel1, idLabel2, idLabel3};
constexpr const char* kCaptions[] = {"Filesize:", "Date:", "Dimensions:"};
constexpr int kValueIds[] = {idFsize, idFdate, idDimensions};

void place(HWND control, const LayoutRect& r, int extraHeight = 0) {
    ::MoveWindow(control, r.x, r.y, r.width, r.height + extraHeight, FALSE);
}

}  // namespace

void MainPanel::create(HWND window) {
    window_ = window;
    dpi_ = dpiOf(window);
    // Positions come from layout(); the controls are made at no size.
    HWND list = createControl(
        window, "LISTBOX", "",
        WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP | LBS_EXTENDEDSEL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 0, 0,
        0, 0, idList1, WS_EX_CLIENTEDGE);
    list1_.attach(list);
    list1_.keepExtentFitted(true);  // paths wider than the box scroll sideways
    orType_ = createControl(window, "COMBOBOX", "", WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST, 0, 0, 0, 0, idOrType);
    for (const ButtonDesign& b : kButtons) {
        // The window text is the button's name for screen readers; an icon button does not draw it.
        createControl(window, "BUTTON", b.toolTip, WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON | BS_ICON, 0, 0, 0, 0, b.id);
    }
    facts_.preview = createControl(window, "STATIC", "", SS_BITMAP | SS_NOTIFY, 0, 0, 0, 0, idPreview);
    facts_.keepPicture = true;  // the applier saves the decoded picture as its bitmap
    for (size_t i = 0; i < 3; ++i) {
        captions_[i] = createControl(window, "STATIC", kCaptions[i], SS_LEFT | SS_NOPREFIX, 0, 0, 0, 0, kCaptionIds[i]);
        values_[i] =
            createControl(window, "STATIC", "", SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS, 0, 0, 0, 0, kValueIds[i]);
    }
    facts_.fsize = values_[0];
    facts_.fdate = values_[1];
    facts_.dimensions = values_[2];
    // Made last, so that it lies under the labels it frames.
    facts_.prevFrame = createControl(window, "BUTTON", "", BS_GROUPBOX, 0, 0, 0, 0, idPrevFrame);

    toolTips_ = createToolTips(window);
    addToolTip(toolTips_, orType_, "Current paper(s) orientation");
    addToolTip(toolTips_, facts_.preview, "Click to see larger view");
    for (const ButtonDesign& b : kButtons) {
        addToolTip(toolTips_, control(b.id), b.toolTip);
    }
    setDpi(dpi_);
}

void MainPanel::setDpi(int dpi) {
    dpi_ = dpi;
    font_ = createMessageFont(dpi);
    setFontOnChildren(window_, font_.get());
    if (iconsWanted_) {
        loadIcons();
    }
    list1_.fitExtent();
    layout();
}

void MainPanel::showing() {
    if (!iconsWanted_) {
        iconsWanted_ = true;
        loadIcons();
    }
    facts_.showPendingPreview();
}

void MainPanel::loadIcons() {
    const int iconSize = panelIconSize(dpi_);
    for (size_t i = 0; i < std::size(kButtons); ++i) {
        unique_hicon icon(
            static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kButtons[i].icon), IMAGE_ICON,
                                            iconSize, iconSize, LR_DEFAULTCOLOR)));
        ::SendMessageW(control(kButtons[i].id), BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon.get()));
        icons_[i] = std::move(icon);  // the button only borrows it
    }
}

void MainPanel::layout() {
    if (!window_) {
        return;
    }
    RECT client{};
    ::GetClientRect(window_, &client);
    const PanelLayout l = layoutPanel(client.right, client.bottom, dpi_);
    place(list1_.hwnd(), l.list1);
    place(orType_, l.orType, scaleForDpi(160, dpi_));  // the height of its drop-down list
    for (size_t i = 0; i < std::size(kButtons); ++i) {
        place(control(kButtons[i].id), l.buttons[i]);
    }
    place(facts_.prevFrame, l.prevFrame);
    for (size_t i = 0; i < 3; ++i) {
        place(captions_[i], l.captions[i]);
        place(values_[i], l.values[i]);
    }
    previewBox_ = l.preview;
    facts_.previewDefaultWidth = l.preview.width;
    facts_.previewDefaultHeight = l.preview.height;
    placePreview();
    ::InvalidateRect(window_, nullptr, TRUE);
}

void MainPanel::placePreview() {
    // The picture is fitted to the box with its proportions kept; it sits in the box's middle.
    RECT r{};
    ::GetWindowRect(facts_.preview, &r);
    const int width = std::min<int>(r.right - r.left, previewBox_.width);
    const int height = std::min<int>(r.bottom - r.top, previewBox_.height);
    ::MoveWindow(facts_.preview, previewBox_.x + (previewBox_.width - width) / 2,
                 previewBox_.y + (previewBox_.height - height) / 2, width, height, TRUE);
}

SIZE MainPanel::windowSize(int dpi, bool least) const {
    const PanelSize inner = least ? minimumPanelSize(dpi) : defaultPanelSize(dpi);
    RECT r{0, 0, inner.width, inner.height};
    ::AdjustWindowRectEx(&r, kWindowStyle, FALSE, 0);
    return {r.right - r.left, r.bottom - r.top};
}

std::optional<PanelButton> MainPanel::buttonOf(int id) const {
    for (const ButtonDesign& b : kButtons) {
        if (b.id == id) {
            return b.button;
        }
    }
    return std::nullopt;
}

RECT MainPanel::buttonRect(PanelButton button) const {
    RECT r{};
    for (const ButtonDesign& b : kButtons) {
        if (b.button == button) {
            ::GetWindowRect(control(b.id), &r);
        }
    }
    return r;
}

void MainPanel::showFactsLabels() {
    ::ShowWindow(orType_, SW_SHOWNA);
    for (HWND caption : captions_) {
        ::ShowWindow(caption, SW_SHOWNA);
    }
}

void MainPanel::factsShown() {
    placePreview();
    for (HWND value : values_) {
        ::ShowWindow(value, SW_SHOWNA);
    }
    showFactsLabels();
}

void MainPanel::factsHidden() {
    for (const auto& group : {values_, captions_}) {
        for (HWND h : group) {
            ::ShowWindow(h, SW_HIDE);
        }
    }
}

}  // namespace tl
