#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "base/unique_handle_win.h"
#include "lists/picture_win.h"
#include "lists/wallpaper_list.h"

namespace tl {

// The facts panel a window offers: its own controls, which it creates and lays out, and which
// ShowImageFacts fills. Sizes are in pixels.
//   preview     a STATIC control with SS_BITMAP; it is resized (top-left kept) to the fitted picture
//   previewDefaultWidth, previewDefaultHeight   the box the preview must fit
//   prevFrame   the frame around the facts, shown once there is something to show
//   fsize, fdate, dimensions   the labels
//
// The preview only ever holds a small copy fitted to the box. The decoded picture of the last successful
// ShowImageFacts is kept only when keepPicture is set (the changer saves it as its bitmap without decoding
// twice): take it with takePicture(), or drop it with releasePicture(); the next ShowImageFacts replaces it.
// It is whole, unless keepSize gives the size it is wanted at: then it comes resampled to that size (the
// preview is made from it). With keepPicture clear (the default) it is decoded only as large as the preview needs and
// freed before ShowImageFacts returns.
class FactsPanel {
  public:
    FactsPanel() = default;
    FactsPanel(const FactsPanel&) = delete;
    FactsPanel& operator=(const FactsPanel&) = delete;
    ~FactsPanel();

    HWND preview = nullptr;
    int previewDefaultHeight = 0;
    int previewDefaultWidth = 0;
    HWND prevFrame = nullptr;
    HWND fsize = nullptr;
    HWND fdate = nullptr;
    HWND dimensions = nullptr;
    bool keepPicture = false;
    SizeNeeded keepSize;

    // The kept picture, or null.
    const Picture* picture() const { return picture_ ? &*picture_ : nullptr; }
    Picture takePicture();
    void releasePicture() { picture_.reset(); }

    // Hides the preview and frees its picture (the labels stay as they are).
    void clearPreview();
    // Makes the preview that ShowImageFacts left for later because its window was hidden; to be called
    // as the window shows.
    void showPendingPreview();

  private:
    friend bool ShowImageFacts(WallpaperEntry& entry, FactsPanel& panel);
    void showPreview(Picture scaled, int width, int height);

    struct PendingPreview {
        std::string path;
        int width = 0;
        int height = 0;
    };
    unique_hbitmap previewBitmap_;
    std::optional<PendingPreview> pending_;
    std::optional<Picture> picture_;
};

// Loads the entry's picture into the panel's preview, fitted to its box (when its window shows, if it is
// hidden now), and fills the labels with the file's size, date and dimensions. The picture's natural size and the
// file's size are stored into the entry where it has 0; stored ones are used as they are. False when the picture can't
// be loaded (the preview is left hidden and empty, the labels as they were).
bool ShowImageFacts(WallpaperEntry& entry, FactsPanel& panel);

}  // namespace tl
