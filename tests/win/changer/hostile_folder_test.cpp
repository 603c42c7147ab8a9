// The real program in the tray over a tracked folder and a list full of files that are no pictures, are
// cut short, claim an enormous size, are held open by someone else or vanish before their turn.
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/program_test.h"

namespace tl::wintest {
namespace {

using HostileFolder = ProgramTest;

// The program's private memory (its commit charge), in MB.
double privateMegabytes(DWORD pid) {
    unique_handle process(::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    if (!process || !::GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                                            sizeof counters)) {
        return -1;
    }
    return static_cast<double>(counters.PagefileUsage) / (1024.0 * 1024.0);
}

TEST_F(HostileFolder, NothingInItStopsTheChangerOrCostsAGoodPicture) {
    dir.makeFolder("photos");
    // A folder near MAX_PATH: the good picture in it has a path of 250 characters.
    const std::string longFolder =
        "photos\\" + std::string(250 - dir.file("photos\\").size() - std::string("\\long.png").size(), 'd');
    dir.makeFolder(longFolder);
    // Good pictures have sizes of their own, so that tl_current.bmp tells which one is on show.
    const std::vector<TestPicture> good = {{"photos\\first.jpg", "jpg", 64, 48, 0xCC3300},
                                           {"photos\\png-named.jpg", "png", 80, 60, 0x3366CC},
                                           {"photos\\locked.jpg", "jpg", 96, 72, 0x33CC33},
                                           {longFolder + "\\long.png", "png", 112, 84, 0xFFCC00},
                                           {"photos\\last.bmp", "bmp", 128, 96, 0x9933CC}};
    const std::vector<TestPicture> bad = {
        {"photos\\empty.jpg", nullptr, 0, 0, 0}, {"photos\\cut.jpg", nullptr, 0, 0, 0},
        {"photos\\text.jpg", nullptr, 0, 0, 0},  {"photos\\huge.jpg", nullptr, 0, 0, 0},
        {"photos\\x.jpg", nullptr, 0, 0, 0},     {"photos\\vanishing.jpg", "jpg", 200, 150, 0}};
    write({good[0], bad[0], bad[1], bad[2], good[1], bad[3], bad[4], good[2], good[3], bad[5], good[4]},
          "UseTracker=True\r\n", "#" + dir.file("photos") + "\r\n");
    std::string settings = dir.read("setup.pref");
    settings.replace(settings.find("Delay=5"), 7, "Delay=1");  // every tick of the clock switches
    dir.write("setup.pref", settings);
    std::string jpeg = dir.read("photos\\first.jpg");
    dir.write("photos\\empty.jpg", "");
    dir.write("photos\\cut.jpg", jpeg.substr(0, jpeg.size() / 2));
    dir.write("photos\\text.jpg", "Not a picture, whatever its name says.\r\n");
    const size_t sof = jpeg.find("\xFF\xC0");
    ASSERT_NE(sof, std::string::npos);
    jpeg.replace(sof + 5, 4, "\xFF\xFF\xFF\xFF");  // 65,535 x 65,535: 12 GB as a bitmap
    dir.write("photos\\huge.jpg", jpeg);
    dir.makeFolder("photos\\x.jpg");
    unique_hfile lock(
        ::CreateFileA(dir.file(good[2].name).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock) << "the picture could not be held open";

    RunningProgram tl(dir);
    HWND form = started(tl, 64, 48);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(::DeleteFileA(dir.file(bad[5].name).c_str())) << "gone after the list was read";
    pause(milliseconds(500));
    const double idle = privateMegabytes(tl.pid());

    // Another thread asks the program's window for an answer all along.
    std::atomic<bool> done{false};
    std::atomic<long long> slowest{0};
    std::thread pinger([&] {
        while (!done) {
            const auto asked = std::chrono::steady_clock::now();
            DWORD_PTR result = 0;
            ::SendMessageTimeoutA(form, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result);
            const auto waited = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - asked);
            slowest = std::max(slowest.load(), static_cast<long long>(waited.count()));
            std::this_thread::sleep_for(milliseconds(100));
        }
    });

    // Turns by the clock and by the hot key in turn; the held picture is let go after the first round.
    std::set<std::string> shown{bitmapSizeText()};
    int switches[2] = {0, 0};  // by the clock, by the hot key
    const auto turn = [&](int i) {
        const std::string before = bitmapSizeText();
        if (i % 2 == 0) {
            ::PostMessageA(form, WM_TIMER, 1, 0);  // the minute timer
        } else {
            ASSERT_TRUE(pressKeys({VK_CONTROL, VK_MENU}, 'S'));
        }
        if (waitFor([&] { return bitmapSizeText() != before; }, seconds(3))) {
            ++switches[i % 2];
        }
        shown.insert(bitmapSizeText());
    };
    for (int i = 0; i < 4; ++i) {
        turn(i);
    }
    EXPECT_EQ(shown.count("96x72"), 0u) << "a picture held open by another program was shown";
    lock.reset();
    for (int i = 4; i < 14 && shown.size() < good.size(); ++i) {
        turn(i);
    }
    EXPECT_EQ(shown, (std::set<std::string>{"64x48", "80x60", "96x72", "112x84", "128x96"}));
    EXPECT_GT(switches[0], 0) << "the clock never switched";
    EXPECT_GT(switches[1], 0) << "the hot key never switched";

    // The tracker meets a picture cut short, then a good one.
    const std::string cutLater = dir.file("photos\\cut-later.jpg");
    dir.write("photos\\cut-later.jpg", dir.read("photos\\cut.jpg"));
    pause(milliseconds(500));
    writePicture(dir.file("photos\\later.jpg"), "jpg", 144, 108, 0x3399CC);
    EXPECT_TRUE(bitmapBecomes(144, 108)) << "the tracker's good picture after the bad one";
    pause(seconds(1));
    const double after = privateMegabytes(tl.pid());
    done = true;
    pinger.join();
    EXPECT_LT(slowest.load(), 1000) << "the window took " << slowest.load() << " ms to answer";
    EXPECT_LT(after, idle + 16) << "private memory " << idle << " MB idle, " << after << " MB after";
    std::printf("[ memory   ] %.1f MB idle, %.1f MB after; slowest answer %lld ms\n", idle, after, slowest.load());

    ASSERT_TRUE(quit(tl, form));
    const std::string list = dir.read("MyWallpapers.wall");
    for (const TestPicture& p : good) {
        EXPECT_NE(list.find(dir.file(p.name) + "\t"), std::string::npos) << p.name << " left the list";
    }
    for (const TestPicture& p : bad) {
        EXPECT_EQ(list.find(dir.file(p.name) + "\t"), std::string::npos) << p.name << " stayed in the list";
    }
    EXPECT_EQ(list.find(cutLater), std::string::npos) << "the tracker kept a picture cut short";
    EXPECT_FALSE(dir.exists("tl_current.bmp.new")) << "a temporary wallpaper file was left behind";
}

}  // namespace
}  // namespace tl::wintest
