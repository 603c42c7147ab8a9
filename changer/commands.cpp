#include "changer/commands.h"

namespace tl {

namespace {

constexpr MenuItemDef kFileMenu[] = {
    {0, mnuDelete, "mnuDelete", "Delete"},
    {0, mnuRename, "mnuRename", "Rename"},
    {0, mnus3, "mnus3", "-"},
    {0, mnuPreview, "mnuPreview", "Show preview"},
    {0, mnuRemoveFile, "mnuRemoveFile", "Remove"},
};

constexpr MenuItemDef kOptionsMenu[] = {
    {0, mnuDelay, "mnuDelay", "Delay (x)..."},
    {0, mnuSetDefaultSaveDir, "mnuSetDefaultSaveDir", "Default wallpaper save directory"},
    {0, mnuIconTextColour, "mnuIconTextColour", "Icon text colour..."},
    {0, mnuTrackedFolders, "mnuTrackedFolders", "Tracked folders..."},
    {0, mnuOptionsChangeHotkey, "mnuOptionsChangeHotkey", "Change paper hotkey..."},
    {0, mnuOptionsS1, "mnuOptionsS1", "-"},
    {0, mnuPaused, "mnuPaused", "Pause"},
    {0, mnuRandom, "mnuRandom", "Random Switching"},
    {0, mnuAutoShutdown, "mnuAutoShutdown", "Auto-shutdown"},
    {0, mnuAutoShowDesktop, "mnuAutoShowDesktop", "Auto show on desktop"},
    {0, mnuOptUseActiveDesktop, "mnuOptUseActiveDesktop", "Use Active Desktop"},
    {0, mnuSmartSwitch, "mnuSmartSwitch", "SmartSwitch"},
    {0, mnuTransIcon, "mnuTransIcon", "Transparent icon text"},
    {0, mnuTrapIEWallpaper, "mnuTrapIEWallpaper", "Trap IE Wallpaper"},
    {0, mnuOptionsHideIcons, "mnuOptionsHideIcons", "Hide desktop icons"},
    {0, mnupopups1, "mnupopups1", "-"},
    {0, mnuAbout, "mnuAbout", "About..."},
};

// "Start Screensaver" stands in the tray menu itself, after the "Display Properties" submenu.
constexpr MenuItemDef kTrayMenu[] = {
    {0, mnuTrayNextPaper, "mnuTrayNextPaper", "Next"},
    {0, mnuPreviousPaper, "mnuPreviousPaper", "Previous"},
    {0, mnuTraySwitchOrientation, "mnuTraySwitchOrientation", "Switch Orientation"},
    {1, mnuTraySOTiled, "mnuTraySOTiled", "Tiled"},
    {1, mnuTraySOCentered, "mnuTraySOCentered", "Centered"},
    {1, mnuTraySOStretch, "mnuTraySOStretch", "Stretched"},
    {1, mnuTraySOScaled, "mnuTraySOScaled", "Scaled"},
    {1, mnuTraySOFilled, "mnuTraySOFilled", "Filled"},
    {0, mnuTrayRemoveFromList, "mnuTrayRemoveFromList", "Remove from list"},
    {0, mnuTrayDelete, "mnuTrayDelete", "Delete file"},
    {0, mnuTrays1, "mnuTrays1", "-"},
    {0, mnuTrayDelay, "mnuTrayDelay", "Delay"},
    {0, mnuTrayPause, "mnuTrayPause", "Pause"},
    {0, mnuTrayRandom, "mnuTrayRandom", "Random switching"},
    {0, mnuPickDifferentList, "mnuPickDifferentList", "Pick different list"},
    {0, mnus4, "mnus4", "-"},
    {0, mnuTrayDeskop, "mnuTrayDeskop", "Display Properties"},
    {1, mnuTrayDisplayProps, "mnuTrayDisplayProps", "Show..."},
    {1, mnuTrayDisplayHideIcons, "mnuTrayDisplayHideIcons", "Hide desktop icons"},
    {1, mnuDisplayS1, "mnuDisplayS1", "-"},
    {1, mnuDisplayDisableSS, "mnuDisplayDisableSS", "Disable Screensaver"},
    {1, mnuDisplayEnableSS, "mnuDisplayEnableSS", "Enable Screensaver"},
    {1, mnuDisplayS2, "mnuDisplayS2", "-"},
    {1, mnuChangeRes, "mnuChangeRes", "Change Resolution"},
    {1, mnuDisplayS3, "mnuDisplayS3", "-"},
    {1, mnuDisplayMonitorsSame, "mnuDisplayMonitorsSame", "One picture on every monitor"},
    {1, mnuDisplayMonitorsEach, "mnuDisplayMonitorsEach", "A picture for each monitor"},
    {1, mnuDisplayMonitorsAcross, "mnuDisplayMonitorsAcross", "One picture across all monitors"},
    {0, mnuStartSaver, "mnuStartSaver", "Start Screensaver"},
    {0, mnuShowPanel, "mnuShowPanel", "Show panel..."},
    {0, mnuTrayAbout, "mnuTrayAbout", "About..."},
    {0, mnuTrayQuit, "mnuTrayQuit", "Quit"},
};

}  // namespace

std::span<const MenuItemDef> fileMenuItems() {
    return kFileMenu;
}

std::span<const MenuItemDef> optionsMenuItems() {
    return kOptionsMenu;
}

std::span<const MenuItemDef> trayMenuItems() {
    return kTrayMenu;
}

const MenuItemDef* findMenuItem(int id) {
    for (auto table : {fileMenuItems(), optionsMenuItems(), trayMenuItems()}) {
        for (const MenuItemDef& item : table) {
            if (item.id == id) {
                return &item;
            }
        }
    }
    return nullptr;
}

}  // namespace tl
