#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "changer/apply_rules.h"
#include "changer/monitor_layout.h"
#include "lists/wallpaper_list.h"

// What frmMain's rules ask of the platform. The Win32 side implements these over the real desktop, tray
// and windows; the unit tests implement them as fakes that record what was asked.
namespace tl {

class ListBoxView;

// The desktop the wallpaper goes to.
class Desktop {
  public:
    virtual ~Desktop() = default;
    // A REG_SZ value under HKEY_CURRENT_USER\Control Panel\desktop. Failures are passed over.
    virtual void setDesktopValue(std::string_view valueName, std::string_view text) = 0;
    // SystemParametersInfo(SPI_SETDESKWALLPAPER, 0, path, SPIF_UPDATEINIFILE), without the broadcast flag.
    virtual void setDeskWallpaper(const std::string& path) = 0;
    // Sets the wallpaper through IActiveDesktop, switching Active Desktop on first when asked to.
    virtual void setActiveDesktopWallpaper(const std::string& path, int style, bool enableActiveDesktop) = 0;
    // Whether the desktop lays a wallpaper over the rectangle of all monitors ("WallpaperStyle" 22, from
    // Windows 8 on); otherwise a tiled wallpaper starts at the primary monitor's corner.
    virtual bool spansWallpaper() = 0;
    // Whether the window in front is maximised.
    virtual bool isSomethingMaximised() = 0;
};

// What an apply does with the picture it loads, besides the preview: nothing (Active Desktop takes the
// entry's own file), a bitmap of the picture's own size, or one scaled to fit the screen (Scale), which
// needs the picture only about as large as that.
enum class PictureUse { previewOnly, whole, fitted };

// The picture work of frmMain's panel: its preview and the bitmap files made from it.
class WallpaperPictures {
  public:
    virtual ~WallpaperPictures() = default;
    // ShowImageFacts on frmMain's panel: loads the entry's picture into the preview and fills the facts,
    // storing the dimensions and size into the entry where it has 0; keeps the picture as large as `use`
    // needs with this screen. False when it can't be loaded.
    virtual bool showImageFacts(WallpaperEntry& entry, PictureUse use, ScreenSize screen) = 0;
    // saveCurrentBitmap: writes the picture the preview holds as a BMP file.
    virtual bool saveCurrentBitmap(const std::string& bitmapPath) = 0;
    // The Scaler: writes the picture the preview holds resampled to exactly width x height as a BMP file.
    virtual bool saveScaledBitmap(const std::string& bitmapPath, int32_t width, int32_t height) = 0;
    // The natural size of the picture the preview holds; 0 x 0 when there is none.
    virtual ScreenSize shownPictureSize() = 0;
    // One bitmap spanning the virtual screen with each picture of the plan laid out in its area, written
    // as a BMP: what the desktop is given when there is more than one monitor, or a picture to fill.
    virtual bool composeWallpaper(const WallpaperPlan& plan, const std::string& bitmapPath) = 0;
    // Lets go of the full-size picture an apply worked on; the preview keeps its small copy.
    virtual void releasePicture() = 0;
    // Empties the preview.
    virtual void clearPreview() = 0;
    virtual void hidePreviewFrame() = 0;
};

enum class TrayIconKind { Normal, Paused };

// The tray icon (uID 1 on frmMain's window).
class TrayIcon {
  public:
    virtual ~TrayIcon() = default;
    virtual bool add(TrayIconKind icon, std::string_view tip) = 0;
    virtual bool modify(TrayIconKind icon, std::string_view tip) = 0;
    virtual void remove() = 0;
};

// Everything else frmMain's rules reach: its controls and timer, the other windows, the clock. The
// methods marked "seam" are carried out by the parts of the program that own them (the panel, the
// desktop options, the small windows, the folder tracker) and may do nothing until those exist.
class MainFormHost {
  public:
    virtual ~MainFormHost() = default;

    // List1, the cursor of the list.
    virtual ListBoxView& list1() = 0;
    // orType, the orientation box: items in code order, so an item's index is its code. Setting the index
    // from code raises no click.
    virtual void fillOrType() = 0;
    virtual void setOrTypeIndex(int index) = 0;
    virtual int orTypeIndex() const = 0;

    virtual void setMinuteTimer(bool enabled) = 0;
    virtual ScreenSize screenSize() = 0;
    // The monitors' rectangles on the desktop, the primary's at (0, 0).
    virtual std::vector<ScreenRect> monitors() = 0;
    virtual double secondsSinceMidnight() = 0;
    virtual void saveSettings() = 0;
    virtual void beep() = 0;
    // removeFileFromDisk: through the shell (to the recycle bin when recycle is set, else for good, the
    // shell asking first) or directly. True when the file is gone.
    virtual bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) = 0;

    // The menus' state changed; the Win32 side puts it on the menus.
    virtual void menusChanged() = 0;
    // Builds the resolution submenu once, at load.
    virtual void buildResolutionMenu() = 0;
    // Refills the resolution submenu and pops up mnuTray at the cursor.
    virtual void popUpTrayMenu() = 0;

    // Registers the "switch" hot key from the settings, errors ignored; a press comes back as
    // frmMain::onSwitchHotKey.
    virtual void registerSwitchHotKey() = 0;
    // Unloads frmMain: its window goes, and the unload steps run if they have not yet.
    virtual void unloadForm() = 0;
    virtual void showManager() = 0;

    // The folder tracker: load frmTracker on the list's folders (frmMain is its host); let it close; unload
    // it; show its window; have it drop or follow the changes it is told of.
    virtual void loadTracker(const TrackedFolders& folders) = 0;
    virtual void allowTrackerUnload() = 0;
    virtual void unloadTracker() = 0;
    virtual void showTracker() = 0;
    virtual void setTrackerIgnoreEvents(bool ignore) = 0;
    // Seam (delay window): frmDelay, modal; it edits Settings.Delay.
    virtual void showDelayDialog() = 0;
    // The panel: its display state from Settings.MainMode; its start-up; orType and the facts labels
    // shown once a wallpaper is; whether the program lives in the tray now (the panel is hidden or
    // minimised); List1 and the row under it fitted to the panel's inner size.
    virtual void applyMainMode(int16_t mainMode) = 0;
    virtual void preparePanel() = 0;
    virtual void showFactsLabels() = 0;
    virtual bool livesInTray() = 0;
    virtual void layoutPanel() = 0;
    // The panel's buttons: the project's web page in the default browser; mnuOptions popped up at the
    // preferences button; frmPreview on a picture.
    virtual void openWebPage() = 0;
    virtual void popUpOptionsMenu() = 0;
    virtual void showPreviewWindow(const std::string& path) = 0;
    // A folder browse dialog with a title and a prompt, starting at start; nullopt when cancelled.
    virtual std::optional<std::string> browseForFolder(const std::string& title,
                                                       const std::string& prompt,
                                                       const std::string& start) = 0;
    virtual std::string currentDirectory() = 0;
    // Seam (desktop options): the icon-text options at load, and transparent icon text after an apply.
    virtual void applyIconTextOptions() = 0;
    virtual void makeIconTextTransparent(bool redraw) = 0;
};

}  // namespace tl
