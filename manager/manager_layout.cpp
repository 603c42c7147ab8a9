#include "manager/manager_layout.h"

#include <algorithm>

namespace tl {

namespace {

constexpr int kMargin = 8;
constexpr int kGap = 6;
constexpr int kRightColumn = 320;
constexpr int kBrowserHeight = 190;
constexpr int kImageButton = 36;
constexpr int kToggleHeight = 26;
constexpr int kRowHeight = 24;
constexpr int kDropHeight = 200;
constexpr int kFrameTop = 20;  // below a frame's caption
constexpr int kFrameInset = 10;
constexpr int kLabelHeight = 18;
constexpr int kLabelStep = 20;

}  // namespace

ManagerLayout layoutManager(int clientWidth, int clientHeight, bool browserShown) {
    const int w = std::max(clientWidth, ManagerLayout::kMinClientWidth);
    const int h = std::max(clientHeight, ManagerLayout::kMinClientHeight);
    ManagerLayout l;

    // Right column.
    const int rx = w - kMargin - kRightColumn;
    l.conFrame = {rx, kMargin, kRightColumn, kFrameTop + kImageButton + 8};
    l.orType = {kFrameInset, kFrameTop + 6, 150, kDropHeight};
    l.removeFile = {170, kFrameTop, kImageButton, kImageButton};
    l.killFile = {l.removeFile.right() + kGap, kFrameTop, kImageButton, kImageButton};

    l.addOrType = {rx, l.conFrame.bottom() + kGap, 150, kDropHeight};
    l.dupeChecking = {rx + 160, l.addOrType.y, kRightColumn - 160, kRowHeight};

    const int labelsTop = kFrameTop + ManagerLayout::kPreviewHeight + 8;
    l.prevFrame = {rx, l.addOrType.y + kRowHeight + kGap, kRightColumn, labelsTop + 3 * kLabelStep + 8};
    l.preview = {8, kFrameTop, ManagerLayout::kPreviewWidth, ManagerLayout::kPreviewHeight};
    const int valueX = 92;
    const int valueWidth = kRightColumn - valueX - 8;
    l.label1 = {8, labelsTop, valueX - 12, kLabelHeight};
    l.fsize = {valueX, labelsTop, valueWidth, kLabelHeight};
    l.label2 = {8, labelsTop + kLabelStep, valueX - 12, kLabelHeight};
    l.fdate = {valueX, labelsTop + kLabelStep, valueWidth, kLabelHeight};
    l.label3 = {8, labelsTop + 2 * kLabelStep, valueX - 12, kLabelHeight};
    l.dimensions = {valueX, labelsTop + 2 * kLabelStep, valueWidth, kLabelHeight};
    // The help text stands where the preview will be, until the list is first clicked.
    l.label4 = {rx + 4, l.prevFrame.y + kFrameTop, kRightColumn - 8, 80};

    // Left column: the list takes what the browser leaves.
    const int leftWidth = rx - kGap - kMargin;
    const int browser = browserShown ? kBrowserHeight + kGap : 0;
    l.list1 = {kMargin, kMargin, leftWidth, h - kMargin - kGap - kToggleHeight - browser - kMargin};
    l.command1 = {kMargin, l.list1.bottom() + kGap, kImageButton, kToggleHeight};
    l.browseFrame = {kMargin, l.command1.bottom() + kGap, leftWidth, kBrowserHeight};

    const int fh = kBrowserHeight;
    l.drive1 = {kFrameInset, kFrameTop, 170, kDropHeight};
    l.dir1 = {kFrameInset, kFrameTop + 30, 170, fh - kFrameTop - 30 - kFrameInset};
    l.addFolder = {l.dir1.right() + kGap, l.dir1.y, kImageButton, kImageButton};
    const int fileX = l.addFolder.right() + kGap;
    const int fileWidth = leftWidth - fileX - kGap - kImageButton - kFrameInset;
    l.file1 = {fileX, kFrameTop, fileWidth, fh - kFrameTop - kFrameInset - kLabelStep};
    l.fileCount = {fileX, l.file1.bottom() + 2, fileWidth, kLabelHeight};
    l.addFiles = {l.file1.right() + kGap, kFrameTop, kImageButton, kImageButton};

    // Busy mode: the animation and the text in the top left corner, all that the shrunk window shows.
    l.kern = {kMargin, kMargin, 32, 32};
    l.scanDir = {kMargin + 40, kMargin, 380, 40};
    return l;
}

}  // namespace tl
