#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/file_system_posix.h"
#include "lists/wallpaper_list.h"
#include "support/faulty_file_system.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

using test::Crash;
using test::FaultyFileSystem;

WallpaperEntries makeList(const std::string& prefix, int n) {
    WallpaperEntries e;
    for (int i = 0; i < n; ++i) {
        e.push_back({"C:\\Pictures\\" + prefix + std::to_string(i) + ".jpg", static_cast<Orientation>(i % 5)});
    }
    e.emplace_back();
    return e;
}

TEST(ListWriteSafety, AWriteInterruptedAnywhereLeavesTheOldListOrTheNewOne) {
    const WallpaperEntries oldList = makeList("old", 40);
    const WallpaperEntries newList = makeList("new", 60);
    const TrackedFolders folders{"", "D:\\Photos"};
    const std::string oldText = listFileText(oldList, folders);
    const std::string newText = listFileText(newList, folders);
    using F = FaultyFileSystem::Fault;
    for (F fault : {F::CrashDuringWrite, F::DiskFullDuringWrite, F::CrashBeforeMove, F::CrashAfterMove}) {
        for (size_t cut = 0; cut <= newText.size(); cut += 61) {
            test::TempDir dir;
            PosixFileSystem disk;
            writeListFile(disk, oldList, dir.file("my.wall"), folders);
            ASSERT_EQ(dir.read("my.wall"), oldText);

            FaultyFileSystem fs;
            fs.fault = fault;
            fs.bytesBeforeFault = cut;
            try {
                writeListFile(fs, newList, dir.file("my.wall"), folders);
            } catch (const Crash&) {
            }
            const std::string now = dir.read("my.wall");
            ASSERT_TRUE(now == oldText || now == newText) << "stopped (" << static_cast<int>(fault) << ") after " << cut
                                                          << " bytes: " << now.size() << " bytes left";
            const auto back = readListFile(disk, dir.file("my.wall"), ListReader::Manager, 0);
            EXPECT_EQ(imageCount(back.entries), now == oldText ? 40 : 60);
            if (fault == F::DiskFullDuringWrite) {
                EXPECT_EQ(now, oldText);
                EXPECT_FALSE(dir.exists("my.wall.new")) << "a failed write leaves no temporary file behind";
            }
        }
    }
}

TEST(ListWriteSafety, AKilledWriterNeverLeavesADamagedList) {
    test::TempDir dir;
    const WallpaperEntries a = makeList("a", 20000);
    const WallpaperEntries b = makeList("b", 25000);
    const TrackedFolders folders{"", "D:\\x"};
    const std::string aText = listFileText(a, folders);
    const std::string bText = listFileText(b, folders);
    PosixFileSystem fs;
    writeListFile(fs, a, dir.file("big.wall"), folders);
    for (int round = 0; round < 8; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int i = 0;; ++i) {
                writeListFile(fs, i % 2 ? a : b, dir.file("big.wall"), folders);
            }
        }
        ::usleep(static_cast<useconds_t>(3000 + 4100 * round));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        const std::string now = dir.read("big.wall");
        ASSERT_TRUE(now == aText || now == bText) << "round " << round << ": " << now.size() << " bytes";
    }
}

}  // namespace
}  // namespace tl
