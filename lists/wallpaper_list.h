#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tl {

class AnsiCodePage;
class FileSystem;
class RandomSource;

// How an image is laid on the desktop: a 16-bit code. Boxes that offer orientations list them in code
// order, so an item's index is its code. Codes outside 0-5 read from a file are kept as they are.
using Orientation = int16_t;
inline constexpr Orientation kCenter = 0;
inline constexpr Orientation kTile = 1;
inline constexpr Orientation kStretch = 2;
inline constexpr Orientation kScale = 3;
inline constexpr Orientation kAuto = 4;
// Scaled to cover the screen, centred, the overflow cropped. Newer than the others: list files name it
// by a keyword, which an older reader takes for Center.
inline constexpr Orientation kFill = 5;

// "Center", "Tile", "Stretch", "Scale", "Auto", "Fill" (empty for other codes).
const char* orientationName(Orientation code);

// The boxes without Auto (orType) list Center, Tile, Stretch, Scale, then Fill: the index is the code up
// to Scale, and Fill's item is the fifth. -1 for a code such a box doesn't offer.
int orientationBoxIndex(Orientation code);
// The code of such a box's item; -1 for no item.
Orientation orientationAtBoxIndex(int index);
// What a click on the line on show steps to: Center, Tile, Stretch, Scale, Fill and round again; any other
// code starts the round at Center.
Orientation nextOrientation(Orientation code);

struct WallpaperEntry {
    std::string path;
    Orientation orientation = kCenter;
    // Facts cached in memory only; 0 = not yet known.
    int32_t height = 0;
    int32_t width = 0;
    double size = 0.0;
};

// A list in memory: the images in slots 0 to n - 1, then always one spare, empty entry.
using WallpaperEntries = std::vector<WallpaperEntry>;
// The folders of a list: slot 0 is always empty, the folders follow in file order.
using TrackedFolders = std::vector<std::string>;

// The number of images (the slots before the spare one).
inline int imageCount(const WallpaperEntries& entries) {
    return entries.empty() ? 0 : static_cast<int>(entries.size()) - 1;
}

// What a list file holds.
struct ListFileContents {
    WallpaperEntries entries = WallpaperEntries(1);
    TrackedFolders trackedFolders = TrackedFolders(1);
    size_t longestPath = 0;  // in characters, for the panel's list width
};

// The two readers of list files differ in one rule: the changer turns a stored Auto (4) into the
// default orientation for added files as it reads; the manager keeps it.
enum class ListReader { Changer, Manager };

// Reads a ".wall" or ".txt" list: UTF-8, or an earlier version's file in the ANSI code page (see
// decodeTextFile). A missing or unreadable file gives an empty list and no folders.
ListFileContents readListFile(FileSystem& fs,
                              const AnsiCodePage& ansi,
                              const std::string& path,
                              ListReader reader,
                              Orientation defaultAddOrientation);
// The same grammar on text already in memory.
ListFileContents parseListText(std::string_view text, ListReader reader, Orientation defaultAddOrientation);

// Writes images (path TAB code, Fill as its keyword) then folders ("#" folder), CR LF lines, in UTF-8
// without a byte order mark (which the first version would take for part of the first path). A list
// without images leaves the file untouched, and the file is replaced whole or not at all. Failures are
// not reported.
void writeListFile(FileSystem& fs,
                   const WallpaperEntries& entries,
                   const std::string& path,
                   const TrackedFolders& trackedFolders);
// The text writeListFile would write.
std::string listFileText(const WallpaperEntries& entries, const TrackedFolders& trackedFolders);

// The entries with a non-empty path, in order, followed by the spare slot.
WallpaperEntries compactEntries(const WallpaperEntries& entries);

// True for names ending (any case) in ".jpg", ".bmp", ".gif", ".jpeg" or ".jpe"; false under 3 characters.
bool isImageFile(std::string_view name);

// Sorts slots lo to hi in place by lower-cased path (byte order), with a random-pivot quicksort that
// draws from the given generator. Callers pass 0 and the last image slot.
void sortEntries(WallpaperEntries& entries, int lo, int hi, RandomSource& random);

}  // namespace tl
