#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string>

#include "base/unique_handle_win.h"
#include "changer/panel_layout.h"
#include "changer/panel_rules.h"
#include "lists/facts_panel_win.h"
#include "lists/list_box_win.h"

namespace tl {

// The controls of frmMain's panel on its window: List1, orType, the facts frame with its labels, the
// preview and the five image buttons, with their tool tips, icons and font, laid out for the window's
// inner size and DPI.
class MainPanel {
  public:
    // Creates the controls on the window. orType and the facts stay hidden until a wallpaper is on show.
    void create(HWND window);
    // Lays the controls out for the window's inner size.
    void layout();
    // A new DPI: the font, the icons and the layout follow.
    void setDpi(int dpi);
    // The window is about to show: the buttons' icons are made the first time (a program that lives in the
    // tray never needs them, and each holds bitmaps for as long as it runs), and the preview of the picture
    // applied meanwhile.
    void showing();
    // The window's outer size for the panel's first opening, or the least it may be sized to.
    SIZE windowSize(int dpi, bool least) const;

    Win32ListBox& list1() { return list1_; }
    HWND orType() const { return orType_; }
    FactsPanel& facts() { return facts_; }
    // The button with that control id, if it is one.
    std::optional<PanelButton> buttonOf(int id) const;
    // The button's place on the screen: its pop-up menu opens under it, or over it, never on it.
    RECT buttonRect(PanelButton button) const;

    // orType and the facts' captions, once a wallpaper is on show.
    void showFactsLabels();
    // The frame's contents follow the frame: the preview centred in its box, the labels shown or hidden.
    void factsShown();
    void factsHidden();

  private:
    HWND control(int id) const { return ::GetDlgItem(window_, id); }
    void placePreview();
    void loadIcons();

    HWND window_ = nullptr;
    int dpi_ = 96;
    Win32ListBox list1_;
    HWND orType_ = nullptr;
    FactsPanel facts_;
    std::array<HWND, 3> captions_ = {};  // "Filesize:", "Date:", "Dimensions:"
    std::array<HWND, 3> values_ = {};    // fsize, fdate, dimensions
    HWND toolTips_ = nullptr;
    LayoutRect previewBox_;
    unique_hfont font_;
    std::array<unique_hicon, 5> icons_;
    bool iconsWanted_ = false;  // the panel has been shown: icons at every DPI from then on
};

}  // namespace tl
