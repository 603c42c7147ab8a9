#include "changer/pictures_win.h"

#include "changer/apply_rules.h"
#include "changer/monitors_win.h"
#include "changer/scaler_win.h"
#include "lists/facts_panel_win.h"
#include "lists/picture_scale.h"
#include "lists/picture_win.h"

namespace tl {

bool Win32WallpaperPictures::showImageFacts(WallpaperEntry& entry, PictureUse use, ScreenSize screen) {
    panel_.keepPicture = use != PictureUse::previewOnly;
    panel_.keepSize = nullptr;
    if (use == PictureUse::fitted) {
        // Room to spare for the resampler, as the size the Scaler works out may differ a little.
        panel_.keepSize = [screen](int width, int height) {
            const double factor = scaleFactor(width, height, screen);
            return std::pair{sideToResampleFrom(scaledSide(width, factor)),
                             sideToResampleFrom(scaledSide(height, factor))};
        };
    }
    const bool shown = ShowImageFacts(entry, panel_);
    panel_.keepSize = nullptr;
    if (!shown) {
        shownPath_.clear();
        shownSize_ = {};
        return false;
    }
    shownPath_ = entry.path;
    shownSize_ = {entry.width, entry.height};
    if (frameShown_) {
        frameShown_();
    }
    return true;
}

bool Win32WallpaperPictures::saveCurrentBitmap(const std::string& bitmapPath) {
    if (const Picture* picture = panel_.picture()) {
        return writeBitmapFile(*picture, bitmapPath);
    }
    // The full picture went after the last apply (only the orientation changed since); the preview still
    // shows it, so it is decoded again.
    if (shownPath_.empty()) {
        return false;
    }
    const std::optional<Picture> picture = loadPicture(shownPath_);
    return picture && writeBitmapFile(*picture, bitmapPath);
}

bool Win32WallpaperPictures::saveScaledBitmap(const std::string& bitmapPath, int32_t width, int32_t height) {
    std::optional<Picture> loaded;
    const Picture* picture = panel_.picture();
    if (!picture) {
        // As for saveCurrentBitmap: decoded again, this time only about as large as needed.
        if (shownPath_.empty() ||
            !(loaded = loadPictureAtLeast(shownPath_, sideToResampleFrom(width), sideToResampleFrom(height)))) {
            return false;
        }
        picture = &*loaded;
    }
    const Picture scaled = resampledPicture(*picture, width, height);
    loaded.reset();
    panel_.releasePicture();  // the larger picture goes before the file is written
    return scaled && writeBitmapFile(scaled, bitmapPath);
}

bool Win32WallpaperPictures::composeWallpaper(const WallpaperPlan& plan, const std::string& bitmapPath) {
    // The picture just shown is decoded already; the others are decoded at the size they need.
    const bool ok = tl::composeWallpaper(plan, bitmapPath, panel_.picture(), shownPath_);
    panel_.releasePicture();
    return ok;
}

void Win32WallpaperPictures::releasePicture() {
    panel_.releasePicture();
}

void Win32WallpaperPictures::clearPreview() {
    panel_.clearPreview();
    panel_.releasePicture();
    shownPath_.clear();
}

void Win32WallpaperPictures::hidePreviewFrame() {
    if (panel_.prevFrame) {
        ::ShowWindow(panel_.prevFrame, SW_HIDE);
    }
    if (frameHidden_) {
        frameHidden_();
    }
}

}  // namespace tl
