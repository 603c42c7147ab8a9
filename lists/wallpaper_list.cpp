#include "lists/wallpaper_list.h"

#include <cmath>
#include <cstring>

#include "base/convert.h"
#include "base/file_system.h"
#include "base/random.h"
#include "base/text.h"
#include "base/text_file.h"

namespace tl {

const char* orientationName(Orientation code) {
    switch (code) {
        case kCenter:
            return "Center";
        case kTile:
            return "Tile";
        case kStretch:
            return "Stretch";
        case kScale:
            return "Scale";
        case kAuto:
            return "Auto";
        case kFill:
            return "Fill";
        default:
            return "";
    }
}

int orientationBoxIndex(Orientation code) {
    if (code >= kCenter && code <= kScale) {
        return code;
    }
    return code == kFill ? 4 : -1;
}

Orientation orientationAtBoxIndex(int index) {
    if (index >= 0 && index <= kScale) {
        return static_cast<Orientation>(index);
    }
    return index == 4 ? kFill : -1;
}

Orientation nextOrientation(Orientation code) {
    switch (code) {
        case kCenter:
        case kTile:
        case kStretch:
            return static_cast<Orientation>(code + 1);
        case kScale:
            return kFill;
        default:
            return kCenter;
    }
}

namespace {

// Fill's keyword, in the dotted seven-letter style of the old ones. An older reader finds no number in it
// and lays the picture as Center, where an unknown number would reach the desktop's registry as a style.
constexpr std::string_view kFillKeyword = "Fill...";

// The orientation field of an image line. The keywords are the spellings of old list files, matched
// exactly, dots and case included; anything else is read as a number the forgiving way.
Orientation orientationField(std::string_view field) {
    if (field == "Stretch") {
        return kStretch;
    }
    if (field == "Tile...") {
        return kTile;
    }
    if (field == "Centre.") {
        return kCenter;
    }
    if (field == "Scale..") {
        return kScale;
    }
    if (field == kFillKeyword) {
        return kFill;
    }
    return toInt16Or(leadingNumber(field), 0);
}

void appendDecimal(std::string& out, long long value) {
    char buf[24];
    char* end = buf + sizeof buf;
    char* p = end;
    const bool negative = value < 0;
    unsigned long long v =
        negative ? 0ull - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    do {
        *--p = static_cast<char>('0' + v % 10);
        v /= 10;
    } while (v != 0);
    if (negative) {
        *--p = '-';
    }
    out.append(p, static_cast<size_t>(end - p));
}

}  // namespace

ListFileContents parseListText(std::string_view text, ListReader reader, Orientation defaultAddOrientation) {
    ListFileContents out;
    out.entries.clear();
    size_t pos = 0;
    while (pos < text.size()) {
        // A line ends at CR or CR LF; a lone LF is part of the line.
        size_t end = text.find('\r', pos);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        const std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        if (pos < text.size() && text[pos] == '\n') {
            ++pos;
        }

        const size_t tab = line.find('\t');
        const std::string_view pathField = tab == std::string_view::npos ? line : line.substr(0, tab);
        const std::string_view orientationText = tab == std::string_view::npos ? line : line.substr(tab + 1);
        if (!pathField.empty() && pathField[0] == '#') {
            out.trackedFolders.emplace_back(pathField.substr(1));
            continue;
        }
        if (pathField.empty()) {
            continue;
        }
        WallpaperEntry entry;
        entry.path = std::string(pathField);
        entry.orientation = orientationField(orientationText);
        if (reader == ListReader::Changer && entry.orientation == kAuto) {
            entry.orientation = defaultAddOrientation;
        }
        if (entry.path.size() > out.longestPath) {
            out.longestPath = entry.path.size();
        }
        out.entries.push_back(std::move(entry));
    }
    out.entries.emplace_back();  // the spare slot
    return out;
}

ListFileContents readListFile(FileSystem& fs,
                              const AnsiCodePage& ansi,
                              const std::string& path,
                              ListReader reader,
                              Orientation defaultAddOrientation) {
    const std::optional<std::string> text = readTextFile(fs, path, ansi);
    if (!text) {
        return ListFileContents{};
    }
    return parseListText(*text, reader, defaultAddOrientation);
}

std::string listFileText(const WallpaperEntries& entries, const TrackedFolders& trackedFolders) {
    std::string out;
    size_t bytes = 0;
    for (const WallpaperEntry& e : entries) {
        bytes += e.path.size() + 10;
    }
    for (const std::string& f : trackedFolders) {
        bytes += f.size() + 3;
    }
    out.reserve(bytes);
    const int images = imageCount(entries);
    for (int i = 0; i < images; ++i) {
        const WallpaperEntry& e = entries[static_cast<size_t>(i)];
        // A blank path is not worth a line; the path itself is written as stored, blanks and all.
        if (trimBlanks(e.path).empty()) {
            continue;
        }
        out += e.path;
        out += '\t';
        if (e.orientation == kFill) {
            out += kFillKeyword;
        } else {
            appendDecimal(out, e.orientation);
        }
        out += "\r\n";
    }
    for (const std::string& folder : trackedFolders) {
        if (!folder.empty()) {
            out += '#';
            out += folder;
            out += "\r\n";
        }
    }
    return out;
}

void writeListFile(FileSystem& fs,
                   const WallpaperEntries& entries,
                   const std::string& path,
                   const TrackedFolders& trackedFolders) {
    // An empty list never overwrites a list file: an accident must not cost the user a list.
    if (imageCount(entries) == 0) {
        return;
    }
    replaceFileSafely(fs, path, listFileText(entries, trackedFolders));
}

WallpaperEntries compactEntries(const WallpaperEntries& entries) {
    WallpaperEntries out;
    out.reserve(entries.size());
    for (const WallpaperEntry& e : entries) {
        if (!e.path.empty()) {
            out.push_back(e);
        }
    }
    out.emplace_back();
    return out;
}

bool isImageFile(std::string_view name) {
    if (name.size() < 3) {
        return false;
    }
    const std::string lower = lowerCase(name);
    for (const char* ext : {".jpg", ".bmp", ".gif", ".jpeg", ".jpe"}) {
        if (endsWith(lower, ext)) {
            return true;
        }
    }
    return false;
}

namespace {

// The sort works on small records (the key's place and the entry's slot) over one buffer of
// lower-cased paths, so that a move copies 16 bytes and a comparison never lower-cases a path again;
// the entries are put in their new order at the end.
class EntrySorter {
  public:
    EntrySorter(const WallpaperEntries& entries, int lo, int hi, RandomSource& random) : random_(random), base_(lo) {
        size_t bytes = 0;
        for (int i = lo; i <= hi; ++i) {
            bytes += entries[static_cast<size_t>(i)].path.size();
        }
        keyText_.resize(bytes);
        items_.reserve(static_cast<size_t>(hi - lo + 1));
        size_t at = 0;
        for (int i = lo; i <= hi; ++i) {
            const std::string& path = entries[static_cast<size_t>(i)].path;
            // Lower-casing keeps the length, so the key takes the path's place in the buffer.
            const std::string key = lowerCase(path);
            key.copy(keyText_.data() + at, key.size());
            items_.push_back({keyText_.data() + at, static_cast<uint32_t>(path.size()), static_cast<uint32_t>(i)});
            at += path.size();
        }
    }

    // Runs the quicksort. Recursion is replaced by a stack of ranges taken in the same order (the lower
    // part first), so the pivots drawn are the same and a list of many equal paths can't overflow the
    // thread's stack.
    void run(int lo, int hi) {
        std::vector<std::pair<int, int>> pending;
        pending.emplace_back(lo, hi);
        while (!pending.empty()) {
            auto [l, h] = pending.back();
            pending.pop_back();
            if (l >= h) {
                continue;
            }
            const Partition part = partition(l, h);
            if (part.restEqual) {
                swapDownEqualRange(l + 1, h);
                continue;
            }
            pending.emplace_back(part.pivotSlot + 1, h);
            pending.emplace_back(l, part.pivotSlot - 1);
        }
    }

    void apply(WallpaperEntries& entries) const {
        std::vector<WallpaperEntry> sorted;
        sorted.reserve(items_.size());
        for (const Item& item : items_) {
            sorted.push_back(std::move(entries[item.entry]));
        }
        for (size_t k = 0; k < sorted.size(); ++k) {
            entries[static_cast<size_t>(base_) + k] = std::move(sorted[k]);
        }
    }

  private:
    struct Item {
        const char* key;
        uint32_t length;
        uint32_t entry;
        std::string_view view() const { return {key, length}; }
    };
    struct Partition {
        int pivotSlot;
        bool restEqual;  // the pivot ended at lo and every other key equals it
    };

    Item& slot(int i) { return items_[static_cast<size_t>(i - base_)]; }

    int drawPivot(int lo, int hi) {
        const double r = random_.next() * static_cast<double>(hi - lo + 1);
        const int p = lo + static_cast<int>(std::floor(r));
        return p > hi ? hi : p;
    }

    Partition partition(int lo, int hi) {
        const int p = drawPivot(lo, hi);
        const Item pivot = slot(p);
        const std::string_view pivotKey = pivot.view();
        slot(p) = slot(lo);
        int i = lo;
        int j = hi;
        bool moved = false;
        bool allEqual = true;
        for (;;) {
            while (j > i) {
                const int c = slot(j).view().compare(pivotKey);
                if (c < 0) {
                    break;
                }
                allEqual = allEqual && c == 0;
                --j;
            }
            if (j <= i) {
                slot(i) = pivot;
                return {i, !moved && allEqual};
            }
            slot(i) = slot(j);
            ++i;
            moved = true;
            while (i < j && slot(i).view().compare(pivotKey) < 0) {
                ++i;
            }
            if (i >= j) {
                slot(j) = pivot;
                return {j, false};
            }
            slot(j) = slot(i);
        }
    }

    // On a range of equal keys each partition only exchanges lo with the drawn pivot and moves on to
    // lo + 1; doing that directly keeps the result and the draws while avoiding a quadratic scan.
    void swapDownEqualRange(int lo, int hi) {
        for (; lo < hi; ++lo) {
            const int p = drawPivot(lo, hi);
            std::swap(slot(lo), slot(p));
        }
    }

    RandomSource& random_;
    int base_;
    std::string keyText_;
    std::vector<Item> items_;
};

}  // namespace

void sortEntries(WallpaperEntries& entries, int lo, int hi, RandomSource& random) {
    if (lo < 0 || hi >= static_cast<int>(entries.size()) || lo >= hi) {
        return;
    }
    EntrySorter sorter(entries, lo, hi, random);
    sorter.run(lo, hi);
    sorter.apply(entries);
}

}  // namespace tl
