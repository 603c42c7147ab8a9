// changeWallpaper: putting one list entry on the desktop.
#include <string>

#include "app/app_state.h"
#include "base/file_system.h"
#include "changer/main_form.h"

namespace tl {

void frmMain::changeWallpaper(int index, bool& forceChange) {
    if (forceNextApply_) {
        forceChange = true;
    }
    if (!validIndex(index)) {
        return;
    }
    const Settings& s = app_.settings;
    const std::string& currentBitmapPath = s.OutputPath;

    // A copy: the facts ShowImageFacts finds are this apply's, not the list's.
    WallpaperEntry e = entries_[static_cast<size_t>(index)];
    const std::string path = e.path;
    std::string fileToSet = path;
    const Orientation orientation = e.orientation;
    int style = orientation;
    const bool mustApply =
        previewTag_ != path || orientation != lastAppliedOrientation_ || forceChange || othersChanged_;

    // A forced re-apply of the entry on show keeps the history as it is, so that "Previous" still
    // goes back one step; a switch of every monitor's picture is a step of its own.
    if (!(forceChange && previousIndex_ == currentIndex_) || switchedOthers_) {
        previousIndex_ = currentIndex_;
        currentIndex_ = index;
    }

    // A picture there but unreadable is held open by another program for now: its entry stays for a later
    // turn, and this change shows nothing new.
    const auto heldOpen = [&] {
        const std::optional<FileFacts> facts = fs_.facts(path);
        return facts && !facts->isDirectory && !fs_.readFile(path, 1);
    };

    // From here on a failing step is passed over and the next one runs.
    bool tiled = orientation == kTile;
    bool composed = false;
    if (composes(orientation)) {
        // The composition decodes the other monitors' pictures itself, at the size each needs; this one is
        // kept whole from the preview's load for it.
        if ((path != previewTag_ || forceChange) && !pictures_.showImageFacts(e, PictureUse::whole, screen_)) {
            if (!heldOpen()) {
                removeSelectedEntries();
            }
            return;
        }
        applyComposed(e, mustApply);
        // The composed bitmap is the virtual screen's size: spanned over it where the desktop can, else
        // tiled from the primary monitor's corner.
        fileToSet = currentBitmapPath;
        style = kTile;
        tiled = !desktop_.spansWallpaper();
        composed = true;
    } else if (path != previewTag_ || forceChange) {
        const PictureUse use = orientation == kScale ? PictureUse::fitted
                               : s.UseActiveDesktop  ? PictureUse::previewOnly
                                                     : PictureUse::whole;
        if (!pictures_.showImageFacts(e, use, screen_)) {
            if (heldOpen()) {
                return;
            }
            // The picture can't be loaded: the entry leaves the list, a neighbour is applied instead, and
            // the tag keeps the old path.
            removeSelectedEntries();
            return;
        }
        if (!s.UseActiveDesktop && orientation != kScale) {
            // Always a BMP, whatever the source: the desktop takes no JPEG without Active Desktop.
            pictures_.saveCurrentBitmap(currentBitmapPath);
        }
    } else if (mustApply && (lastAppliedOrientation_ == kScale || composedOnShow_) && orientation != kScale &&
               !s.UseActiveDesktop) {
        // The bitmap was scaled or composed for the entry on show: the picture goes back to its own size.
        pictures_.saveCurrentBitmap(currentBitmapPath);
    }
    if (!composed && mustApply) {
        composedOnShow_ = false;
    }
    if (!composed && (!s.UseActiveDesktop || orientation == kScale)) {
        fileToSet = currentBitmapPath;
    }
    if (!composed && orientation == kScale && mustApply) {
        if (e.height == 0 || e.width == 0) {
            // The entry came from a list without the picture's size, and ShowImageFacts didn't run for it
            // this time: the size of the picture on show, else 1 x 1 below.
            const ScreenSize shown = pictures_.shownPictureSize();
            e.height = shown.height;
            e.width = shown.width;
        }
        const int32_t height = e.height == 0 ? 1 : e.height;
        const int32_t width = e.width == 0 ? 1 : e.width;
        const double factor = scaleFactor(width, height, screen_);
        style = kCenter;  // the scaled bitmap is centred
        pictures_.saveScaledBitmap(currentBitmapPath, scaledSide(width, factor), scaledSide(height, factor));
    }

    if (s.UseActiveDesktop && mustApply) {
        // AutomaticShowOnDesktop is not consulted on this path.
        desktop_.setActiveDesktopWallpaper(fileToSet, style, true);
    } else {
        if (mustApply && s.AutomaticShowOnDesktop) {
            // Tiling is "TileWallpaper" 1 with "WallpaperStyle" 0, spanning "WallpaperStyle" 22; a list's
            // Tile writes its own code, 1, as it always has.
            desktop_.setDesktopValue("WallpaperStyle", !composed ? std::to_string(style) : tiled ? "0" : "22");
            desktop_.setDesktopValue("TileWallpaper", tiled ? "1" : "0");
            desktop_.setDeskWallpaper(fileToSet);
        }
        // Written after the system call, and also when nothing was applied, on purpose.
        if (s.AutomaticShowOnDesktop) {
            desktop_.setDesktopValue("Wallpaper", fileToSet);
        }
    }
    pictures_.releasePicture();

    previewTag_ = path;
    updateTrayIcon();
    lastAppliedOrientation_ = orientation;
    forceNextApply_ = false;
    switchedOthers_ = false;
    othersChanged_ = false;
    if (s.TransText) {
        host_.makeIconTextTransparent(true);
    }
}

void frmMain::applyComposed(const WallpaperEntry& e, bool mustApply) {
    if (mustApply) {
        const MonitorLayout layout = monitorLayout();
        std::vector<WallpaperEntry> shown;
        if (layout == MonitorLayout::EachOwn) {
            shown = others_;
        }
        shown.push_back(e);
        const Settings& s = app_.settings;
        WallpaperPlan plan = planWallpaper(layout, monitors_, shown, s.RatioTolerance, s.HalfRatio);
        plan.spanned = desktop_.spansWallpaper();
        pictures_.composeWallpaper(plan, s.OutputPath);
    }
    composedOnShow_ = true;
}

}  // namespace tl
