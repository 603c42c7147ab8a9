#include "changer/pictures_win.h"

#include "changer/scaler_win.h"
#include "lists/facts_panel_win.h"
#include "lists/picture_win.h"

namespace tl {

bool Win32WallpaperPictures::showImageFacts(WallpaperEntry& entry) {
    if (!ShowImageFacts(entry, panel_)) {
        shownPath_.clear();
        return false;
    }
    shownPath_ = entry.path;
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

bool Win32WallpaperPictures::scaleImageFile(const std::string& sourcePath,
                                            const std::string& targetPath,
                                            double factor,
                                            int32_t height,
                                            int32_t width,
                                            bool loadScaled) {
    return tl::scaleImageFile(sourcePath, targetPath, factor, height, width, loadScaled);
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
