#pragma once

#include <string>
#include <vector>

namespace tl::test {

// setup.pref's lines as a first run in the program folder dir writes them: every key, in order, with
// its default.
inline std::vector<std::string> defaultSettingsFile(const std::string& dir) {
    return {
        "[Tessaline]",
        "AutomaticShutdown=False",
        "OutputPath=" + dir + "\\tl_current.bmp",
        "DefaultOrientation=0",
        "Delay=1",
        "LastList=" + dir + "\\MyWallpapers.wall",
        "Mode=1",
        "PreviewLeft=0",
        "PreviewTop=0",
        "PreviewMode=0",
        "MainMode=0",
        "AutomaticShowOnDesktop=True",
        "AutoSortFolder=True",
        "DefaultAddOrientation=0",
        "CheckForDuplicates=True",
        "RatioTolerance=0.25",
        "HalfRatio=1.5",
        "UseActiveDesktop=False",
        "SmartSwitch=False",
        "IconTextColour=0",
        "TransText=False",
        "ScreenSaver=-1",
        "WallpaperDirectory=" + dir + "\\",
        "TrapIEWallpaper=True",
        "UseTracker=True",
        "HotKey=83",
        "HotKeyMod=3",
        "HideDesktopIcons=False",
        "MonitorMode=0",
    };
}

}  // namespace tl::test
