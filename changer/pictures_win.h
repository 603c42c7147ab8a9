#pragma once

#include <functional>
#include <string>
#include <utility>

#include "changer/changer_platform.h"

namespace tl {

class FactsPanel;

// frmMain's picture work on Win32: the facts panel's preview (through ShowImageFacts), the decoded picture
// written as the BMP the desktop is given, and the Scaler. The decoded picture is kept only from
// ShowImageFacts to the end of the apply, so that an idle program holds no large buffer; for Scale it is
// decoded only about as large as the screen needs.
class Win32WallpaperPictures : public WallpaperPictures {
  public:
    // The panel must keep its picture (keepPicture) for saveCurrentBitmap to save it without decoding
    // it again.
    explicit Win32WallpaperPictures(FactsPanel& panel) : panel_(panel) {}
    // What the window does once a picture is on show (shows the frame's labels, places the preview) and
    // when the frame is hidden (hides them with it).
    void setFrameHandlers(std::function<void()> shown, std::function<void()> hidden) {
        frameShown_ = std::move(shown);
        frameHidden_ = std::move(hidden);
    }

    bool showImageFacts(WallpaperEntry& entry, PictureUse use, ScreenSize screen) override;
    bool saveCurrentBitmap(const std::string& bitmapPath) override;
    bool saveScaledBitmap(const std::string& bitmapPath, int32_t width, int32_t height) override;
    ScreenSize shownPictureSize() override { return shownSize_; }
    bool composeWallpaper(const WallpaperPlan& plan, const std::string& bitmapPath) override;
    void releasePicture() override;
    void clearPreview() override;
    void hidePreviewFrame() override;

  private:
    FactsPanel& panel_;
    std::string shownPath_;  // the picture the preview holds
    ScreenSize shownSize_;
    std::function<void()> frameShown_;
    std::function<void()> frameHidden_;
};

}  // namespace tl
