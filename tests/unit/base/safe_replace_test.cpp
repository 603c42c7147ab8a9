#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "base/file_system.h"
#include "base/file_system_posix.h"
#include "support/faulty_file_system.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

using test::Crash;
using test::FaultyFileSystem;

std::string listText(char c, size_t lines) {
    std::string s;
    for (size_t i = 0; i < lines; ++i) {
        s += "C:\\Pictures\\";
        s += c;
        s += std::to_string(i) + ".jpg\t2\r\n";
    }
    return s;
}

TEST(SafeReplace, AnInterruptionAtAnyPointLeavesTheOldOrTheNewFile) {
    const std::string oldText = listText('o', 50);
    const std::string newText = listText('n', 80);
    using F = FaultyFileSystem::Fault;
    for (F fault : {F::CrashDuringWrite, F::DiskFullDuringWrite, F::CrashBeforeMove, F::CrashAfterMove}) {
        for (size_t cut = 0; cut <= newText.size(); cut += 97) {
            test::TempDir dir;
            dir.write("a.wall", oldText);
            FaultyFileSystem fs;
            fs.fault = fault;
            fs.bytesBeforeFault = cut;
            bool reported = false;
            try {
                reported = replaceFileSafely(fs, dir.file("a.wall"), newText);
            } catch (const Crash&) {
            }
            const std::string now = dir.read("a.wall");
            ASSERT_TRUE(now == oldText || now == newText)
                << "fault " << static_cast<int>(fault) << " after " << cut << " bytes left " << now.size() << " bytes";
            if (reported) {
                EXPECT_EQ(now, newText);
            }
            if (fault == F::DiskFullDuringWrite) {
                EXPECT_FALSE(reported);
                EXPECT_EQ(now, oldText);
                EXPECT_FALSE(dir.exists("a.wall.new")) << "a failed write cleans up after itself";
            }
            // The next write after a crash still works and replaces whatever was left.
            PosixFileSystem good;
            ASSERT_TRUE(replaceFileSafely(good, dir.file("a.wall"), newText));
            EXPECT_EQ(dir.read("a.wall"), newText);
        }
    }
}

TEST(SafeReplace, AProcessKilledWhileWritingNeverLeavesADamagedFile) {
    test::TempDir dir;
    const std::string a = listText('a', 20000);
    const std::string b = listText('b', 30000);
    dir.write("big.wall", a);
    std::mt19937 random(12345);
    for (int round = 0; round < 12; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            PosixFileSystem fs;
            for (int i = 0;; ++i) {
                replaceFileSafely(fs, dir.file("big.wall"), i % 2 ? a : b);
            }
        }
        ::usleep(static_cast<useconds_t>(2000 + random() % 20000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        const std::string now = dir.read("big.wall");
        ASSERT_TRUE(now == a || now == b) << "round " << round << ": " << now.size() << " bytes";
    }
}

}  // namespace
}  // namespace tl
