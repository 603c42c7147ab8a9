#include "lists/facts_panel_win.h"

#include <algorithm>

#include "base/file_system_win.h"
#include "base/window_win.h"
#include "lists/image_facts.h"
#include "lists/picture_scale.h"

namespace tl {

FactsPanel::~FactsPanel() {
    if (preview && ::IsWindow(preview)) {
        ::SendMessageW(preview, STM_SETIMAGE, IMAGE_BITMAP, 0);
    }
}

Picture FactsPanel::takePicture() {
    Picture p = picture_ ? std::move(*picture_) : Picture();
    picture_.reset();
    return p;
}

void FactsPanel::clearPreview() {
    if (preview) {
        ::ShowWindow(preview, SW_HIDE);
        ::SendMessageW(preview, STM_SETIMAGE, IMAGE_BITMAP, 0);
    }
    previewBitmap_.reset();
    pending_.reset();
}

void FactsPanel::showPendingPreview() {
    if (!pending_ || !preview) {
        return;
    }
    const PendingPreview p = std::move(*pending_);
    pending_.reset();
    const std::optional<LoadedPicture> loaded = loadPictureFor(p.path, [&](int, int) {
        return std::pair{sideToResampleFrom(p.width), sideToResampleFrom(p.height)};
    });
    if (!loaded) {
        return;  // gone or changed since: the preview stays empty, as for a picture that can't be loaded
    }
    Picture scaled = scaledPicture(loaded->picture, p.width, p.height);
    if (scaled) {
        showPreview(std::move(scaled), p.width, p.height);
    }
}

void FactsPanel::showPreview(Picture scaled, int width, int height) {
    unique_hbitmap bitmap = scaled.releaseBitmap();
    const auto handle = reinterpret_cast<LPARAM>(bitmap.get());
    ::SendMessageW(preview, STM_SETIMAGE, IMAGE_BITMAP, handle);
    // A static control of common controls 6 may keep a copy of its own instead; then the copy is the one
    // to free later, and ours can go now.
    const auto shown = reinterpret_cast<HBITMAP>(::SendMessageW(preview, STM_GETIMAGE, IMAGE_BITMAP, 0));
    if (shown && shown != bitmap.get()) {
        bitmap.reset(shown);
    }
    previewBitmap_ = std::move(bitmap);
    ::SetWindowPos(preview, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    ::ShowWindow(preview, SW_SHOW);
}

bool ShowImageFacts(WallpaperEntry& entry, FactsPanel& panel) {
    const bool needDimensions = entry.height == 0 || entry.width == 0;
    const bool needSize = entry.size == 0;

    panel.releasePicture();
    panel.clearPreview();
    // The preview's box for a picture of the entry's size (the picture's own where the entry has none).
    const auto previewBox = [&](int naturalWidth, int naturalHeight) {
        const int32_t width = needDimensions ? naturalWidth : entry.width;
        const int32_t height = needDimensions ? naturalHeight : entry.height;
        int boxWidth = 0;
        int boxHeight = 0;
        if (const auto fit = fitPreview(width, height, panel.previewDefaultWidth, panel.previewDefaultHeight)) {
            boxWidth = fit->width;
            boxHeight = fit->height;
        } else {
            RECT r{};
            ::GetClientRect(panel.preview, &r);
            boxWidth = r.right;
            boxHeight = r.bottom;
        }
        // A side rounded to nothing still shows a line of one pixel rather than no picture at all.
        return std::pair{std::max(boxWidth, 1), std::max(boxHeight, 1)};
    };
    // Decoded no larger than the preview and the caller need: a photo shown only in the preview is
    // decoded at an eighth of its size.
    const SizeNeeded needed = [&](int naturalWidth, int naturalHeight) {
        if (panel.keepPicture) {
            return std::pair{naturalWidth, naturalHeight};
        }
        if (panel.preview) {
            const auto [w, h] = previewBox(naturalWidth, naturalHeight);
            return std::pair{sideToResampleFrom(w), sideToResampleFrom(h)};
        }
        return std::pair{1, 1};
    };
    std::optional<LoadedPicture> loaded = panel.keepPicture && panel.keepSize
                                              ? loadPictureFitted(entry.path, panel.keepSize)
                                              : loadPictureFor(entry.path, needed);
    if (!loaded) {
        return false;
    }
    Win32FileSystem fs;
    const std::optional<FileFacts> facts = fs.facts(entry.path);
    if (!facts) {
        return false;
    }

    if (needDimensions) {
        entry.height = loaded->naturalHeight;
        entry.width = loaded->naturalWidth;
    }
    const int32_t height = entry.height;
    const int32_t width = entry.width;

    if (panel.preview) {
        const auto [boxWidth, boxHeight] = previewBox(loaded->naturalWidth, loaded->naturalHeight);
        if (!::IsWindowVisible(::GetAncestor(panel.preview, GA_ROOT))) {
            // Nobody sees the preview of a program in the tray: made when its window shows, so that a change
            // there shrinks no whole picture and leaves no bitmap held while idle.
            panel.pending_ = FactsPanel::PendingPreview{entry.path, boxWidth, boxHeight};
        } else {
            Picture scaled = scaledPicture(loaded->picture, boxWidth, boxHeight);
            if (!scaled) {
                return false;
            }
            panel.showPreview(std::move(scaled), boxWidth, boxHeight);
        }
    }

    if (panel.fdate) {
        setWindowText(panel.fdate, dateText(facts->modified));
    }
    if (needSize) {
        entry.size = static_cast<double>(facts->size);
    }
    if (panel.fsize) {
        setWindowText(panel.fsize, sizeText(entry.size));
    }
    if (panel.dimensions) {
        setWindowText(panel.dimensions, dimensionsText(width, height));
    }
    if (panel.prevFrame && (::GetWindowLongW(panel.prevFrame, GWL_STYLE) & WS_VISIBLE) == 0) {
        ::ShowWindow(panel.prevFrame, SW_SHOW);
    }
    if (panel.keepPicture) {
        panel.picture_ = std::move(loaded->picture);
    }
    return true;
}

}  // namespace tl
