#include "lists/fuzz/list_file_input.h"

#include <algorithm>
#include <string_view>

#include "base/fuzz/fuzz_check.h"
#include "base/random.h"
#include "base/text.h"
#include "lists/wallpaper_list.h"

namespace tl::fuzz {

namespace {

void check(bool holds, const char* what) {
    fuzz::check(holds, "list_file", what);
}

// What a list says once written: the entries with a path that is not all blanks, the folders not empty.
struct Kept {
    std::vector<std::pair<std::string, Orientation>> entries;
    std::vector<std::string> folders;
    bool operator==(const Kept&) const = default;
};

Kept kept(const ListFileContents& list) {
    Kept k;
    for (int i = 0; i < imageCount(list.entries); ++i) {
        const WallpaperEntry& e = list.entries[static_cast<size_t>(i)];
        if (!trimBlanks(e.path).empty()) {
            k.entries.emplace_back(e.path, e.orientation);
        }
    }
    for (const std::string& f : list.trackedFolders) {
        if (!f.empty()) {
            k.folders.push_back(f);
        }
    }
    return k;
}

void checkShape(const ListFileContents& list) {
    check(!list.entries.empty() && list.entries.back().path.empty(), "no spare slot");
    check(!list.trackedFolders.empty() && list.trackedFolders.front().empty(), "no empty folder slot");
    size_t longest = 0;
    for (int i = 0; i < imageCount(list.entries); ++i) {
        const std::string& path = list.entries[static_cast<size_t>(i)].path;
        check(!path.empty() && path.front() != '#', "an image line with no path, or a folder line taken as one");
        check(path.find_first_of("\r\t") == std::string::npos, "a path holding a line end or a TAB");
        longest = std::max(longest, path.size());
    }
    check(list.longestPath == longest, "longest path miscounted");
}

}  // namespace

void listFileInput(std::span<const uint8_t> input) {
    if (input.empty()) {
        return;
    }
    const ListReader reader = (input[0] & 1) != 0 ? ListReader::Manager : ListReader::Changer;
    const auto defaultAdd = static_cast<Orientation>((input[0] >> 1) & 7);
    const std::string_view text(reinterpret_cast<const char*>(input.data() + 1), input.size() - 1);

    const ListFileContents list = parseListText(text, reader, defaultAdd);
    checkShape(list);
    if (reader == ListReader::Changer && defaultAdd != kAuto) {
        for (const WallpaperEntry& e : list.entries) {
            check(e.orientation != kAuto, "the changer kept an Auto entry");
        }
    }

    // The manager's reader keeps every number, so a written list must read back as it was.
    const std::string written = listFileText(list.entries, list.trackedFolders);
    const ListFileContents reread = parseListText(written, ListReader::Manager, defaultAdd);
    checkShape(reread);
    check(kept(reread) == kept(list), "writing and reading back changed the list");
    check(listFileText(reread.entries, reread.trackedFolders) == written, "the written text does not read back");

    WallpaperEntries sorted = list.entries;
    DefaultRandom random(input.size());
    sortEntries(sorted, 0, imageCount(sorted) - 1, random);
    for (int i = 1; i < imageCount(sorted); ++i) {
        check(lowerCase(sorted[static_cast<size_t>(i - 1)].path) <= lowerCase(sorted[static_cast<size_t>(i)].path),
              "the sort left entries out of order");
    }
    check(sorted.back().path.empty() && sorted.size() == list.entries.size(), "the sort lost the spare slot");
    const WallpaperEntries compact = compactEntries(list.entries);
    check(compact.size() == list.entries.size(), "compacting dropped an entry read from a file");
    for (const WallpaperEntry& e : compact) {
        static_cast<void>(isImageFile(e.path));
    }
}

}  // namespace tl::fuzz
