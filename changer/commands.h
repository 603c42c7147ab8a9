#pragma once

#include <cstddef>
#include <span>

// The menu items of frmMain: command ids (the changer's range, 1000-1999) and the three pop-up menus as
// tables, in the order the user sees them. The Win32 side builds its menus from these tables, so a
// caption lives here and nowhere else.
namespace tl {

enum ChangerCommand : int {
    // mnuFile, the pop-up of List1.
    mnuFile = 1000,
    mnuDelete,
    mnuRename,
    mnus3,
    mnuPreview,
    mnuRemoveFile,

    // mnuOptions, the pop-up of the preferences button.
    mnuOptions = 1100,
    mnuDelay,
    mnuSetDefaultSaveDir,
    mnuIconTextColour,
    mnuTrackedFolders,
    mnuOptionsChangeHotkey,
    mnuOptionsS1,
    mnuPaused,
    mnuRandom,
    mnuAutoShutdown,
    mnuAutoShowDesktop,
    mnuOptUseActiveDesktop,
    mnuSmartSwitch,
    mnuTransIcon,
    mnuTrapIEWallpaper,
    mnuOptionsHideIcons,
    mnupopups1,
    mnuAbout,

    // mnuTray, the pop-up of the tray icon.
    mnuTray = 1200,
    mnuTrayNextPaper,
    mnuPreviousPaper,
    mnuTraySwitchOrientation,
    mnuTraySOTiled,
    mnuTraySOCentered,
    mnuTraySOStretch,
    mnuTraySOScaled,
    mnuTraySOFilled,
    mnuTrayRemoveFromList,
    mnuTrayDelete,
    mnuTrays1,
    mnuTrayDelay,
    mnuTrayPause,
    mnuTrayRandom,
    mnuPickDifferentList,
    mnus4,
    mnuTrayDeskop,  // spelled so in the design
    mnuTrayDisplayProps,
    mnuTrayDisplayHideIcons,
    mnuDisplayS1,
    mnuDisplayDisableSS,
    mnuDisplayEnableSS,
    mnuDisplayS2,
    mnuChangeRes,
    mnuDisplayS3,
    mnuDisplayMonitorsSame,
    mnuDisplayMonitorsEach,
    mnuDisplayMonitorsAcross,
    mnuStartSaver,
    mnuShowPanel,
    mnuTrayAbout,
    mnuTrayQuit,

    // The "Pick different list" items (mnuListItem): one per list file of the program directory.
    mnuListItemFirst = 1500,
    mnuListItemLast = 1999,
};

// The controls of frmMain's panel.
enum ChangerControl : int {
    idList1 = 1300,
    idOrType,
    idPreview,
    idPrevFrame,
    idLabel1,
    idFsize,
    idLabel2,
    idFdate,
    idLabel3,
    idDimensions,
    // The image buttons, in design order.
    idImage5,
    idImage1,
    idImage4,
    idImage3,
    idImage2,
};

// One item of a pop-up menu table. depth 0 items belong to the pop-up itself, depth 1 items to the
// nearest depth 0 item before them, which is then a submenu. A caption of "-" is a separator.
struct MenuItemDef {
    int depth;
    int id;
    const char* name;  // the design's item name
    const char* caption;
};

std::span<const MenuItemDef> fileMenuItems();
std::span<const MenuItemDef> optionsMenuItems();
std::span<const MenuItemDef> trayMenuItems();

// The table item with that id, or null.
const MenuItemDef* findMenuItem(int id);

inline bool isListItemCommand(int id) {
    return id >= mnuListItemFirst && id <= mnuListItemLast;
}

}  // namespace tl
