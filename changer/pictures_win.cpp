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
        // Decoded straight to the size Scale shows it at, which saveScaledBitmap then only writes.
        panel_.keepSize = [screen](int width, int height) {
            const double factor = scaleFactor(width, height, screen);
            return std::pair{scaledSide(width, factor), scaledSide(height, factor)};
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
    const Picture* picture = panel_.picture();
    if (picture && picture->width() == width && picture->height() == height) {
        const bool written = writeBitmapFile(*picture, bitmapPath);
        panel_.releasePicture();
        return written;
    }
    // Not decoded for Scale this time (the picture on show turned to Scale), or at another size (the entry's
    // size is not the file's, from a list written before the picture changed): decoded again, straight to
    // the size.
    panel_.releasePicture();
    if (shownPath_.empty()) {
        return false;
    }
    const std::optional<LoadedPicture> scaled = loadPictureFitted(shownPath_, [=](int, int) {
        return std::pair{width, height};
    });
    return scaled && writeBitmapFile(scaled->picture, bitmapPath);
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
