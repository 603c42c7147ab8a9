#pragma once

#include "base/layout_rect.h"

namespace tl {

// Where frmManager's controls go for a client area: the list on the left and below it the browser
// (when shown), which take up the room the window is given; the entry controls and the preview panel in a
// column of fixed width on the right. Drop-down lists are given the height of their open list.
struct ManagerLayout {
    static constexpr int kMinClientWidth = 762;
    static constexpr int kMinClientHeight = 470;
    // The box the preview of a picture is fitted into (previewDefaultWidth, previewDefaultHeight).
    static constexpr int kPreviewWidth = 303;
    static constexpr int kPreviewHeight = 257;

    LayoutRect list1, command1, kern, scanDir, label4;
    LayoutRect browseFrame, drive1, dir1, addFolder, file1, fileCount, addFiles;  // inside browseFrame
    LayoutRect conFrame, orType, removeFile, killFile;                            // inside conFrame
    LayoutRect addOrType, dupeChecking;
    LayoutRect prevFrame, preview, label1, fsize, label2, fdate, label3, dimensions;  // inside prevFrame
};

// The layout for a client area of the given size (at least the minimum is used).
ManagerLayout layoutManager(int clientWidth, int clientHeight, bool browserShown);

}  // namespace tl
