// Times a 100,000-entry list: reading the file, sorting it and writing it back.
// Usage: lists_bench [entries] [rounds]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "base/file_system_posix.h"
#include "base/random.h"
#include "base/text_file.h"
#include "lists/wallpaper_list.h"

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Paths as a user's list holds them: a few deep folders, camera names, mixed case, in no order.
std::string sampleList(int entries) {
    static const char* const kFolders[] = {
        "C:\\Documents and Settings\\Anna\\My Documents\\My Pictures\\Holiday 2004\\", "D:\\Photos\\Family\\",
        "E:\\Wallpapers\\Landscapes\\Mountains\\", "C:\\WINDOWS\\Web\\Wallpaper\\", "F:\\Scans\\Old Prints\\Box 3\\"};
    static const char* const kNames[] = {"IMG_", "DSC", "Sunset ", "p", "Scan-"};
    static const char* const kExtensions[] = {".jpg", ".JPG", ".bmp", ".gif", ".jpeg"};
    std::mt19937 gen(42);
    std::string text;
    text.reserve(static_cast<size_t>(entries) * 80);
    for (int i = 0; i < entries; ++i) {
        text += kFolders[gen() % 5];
        text += kNames[gen() % 5];
        text += std::to_string(gen() % 1000000);
        text += kExtensions[gen() % 5];
        text += '\t';
        text += std::to_string(gen() % 5);
        text += "\r\n";
    }
    text += "#D:\\Photos\\Family\r\n#E:\\Wallpapers\r\n";
    return text;
}

void report(const char* what, std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-8s best %7.1f ms   median %7.1f ms\n", what, ms.front(), ms[ms.size() / 2]);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tl;
    const int entries = argc > 1 ? std::max(1, std::atoi(argv[1])) : 100000;
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 7;

    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "tl-lists-bench";
    std::filesystem::create_directories(dir);
    const std::string source = (dir / "big.wall").string();
    const std::string target = (dir / "sorted.wall").string();
    PosixFileSystem fs;
    const Windows1252 ansi;
    if (!fs.writeNewFile(source, sampleList(entries))) {
        std::fprintf(stderr, "can't write %s\n", source.c_str());
        return 1;
    }

    std::vector<double> read, sort, write, total;
    for (int r = 0; r < rounds; ++r) {
        auto start = Clock::now();
        ListFileContents list = readListFile(fs, ansi, source, ListReader::Changer, kCenter);
        read.push_back(msSince(start));

        DefaultRandom random(static_cast<uint64_t>(r) + 1);
        start = Clock::now();
        sortEntries(list.entries, 0, imageCount(list.entries) - 1, random);
        sort.push_back(msSince(start));

        start = Clock::now();
        writeListFile(fs, list.entries, target, list.trackedFolders);
        write.push_back(msSince(start));
        total.push_back(read.back() + sort.back() + write.back());
        if (imageCount(list.entries) != entries) {
            std::fprintf(stderr, "read %d entries, expected %d\n", imageCount(list.entries), entries);
            return 1;
        }
    }
    std::printf("list of %d entries (%ju bytes), %d rounds\n", entries,
                static_cast<uintmax_t>(std::filesystem::file_size(source)), rounds);
    report("read", read);
    report("sort", sort);
    report("write", write);
    report("total", total);
    std::filesystem::remove_all(dir);
    return 0;
}
