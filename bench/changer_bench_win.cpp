// Times frmMain's apply on a large picture, and counts GDI and USER objects over many applies.
// Usage: changer_bench_win <large picture> <folder of small pictures> [rounds] [applies] [second large picture]
//        changer_bench_win --scale-peak <large picture>   (one Scale apply in a fresh process: its peak memory)
// The small folder must hold small.bmp, small.jpg, small.gif and small.png. With a second large picture the
// two are also applied to two 1920 x 1080 monitors, filled. Prints one "name: value" line per figure; the
// bench script reads "apply best ms", "scale apply best ms" and "two-monitor apply best ms".
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "base/file_system_win.h"
#include "base/random.h"
#include "base/text_file_win.h"
#include "base/utf8_win.h"
#include "changer/apply_rules.h"
#include "changer/desktop_win.h"
#include "changer/main_form.h"
#include "changer/pictures_win.h"
#include "changer/scaler_win.h"
#include "changer/tray_win.h"
#include "gui_object_count_win.h"
#include "jpeg/decoder.h"
#include "lists/facts_panel_win.h"
#include "lists/list_box_win.h"
#include "lists/picture_scale.h"
#include "lists/picture_win.h"

namespace {

using namespace tl;
using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// frmMain's surroundings reduced to what an apply touches: a hidden window with List1 and the facts panel.
class BenchHost : public MainFormHost {
  public:
    BenchHost() {
        window_ = ::CreateWindowExW(0, L"STATIC", L"changer bench", WS_OVERLAPPEDWINDOW, 0, 0, 600, 500, nullptr,
                                    nullptr, nullptr, nullptr);
        HWND list = ::CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD | LBS_EXTENDEDSEL | LBS_NOTIFY, 0, 0, 300, 200,
                                      window_, nullptr, nullptr, nullptr);
        list1_ = std::make_unique<Win32ListBox>(list);
        panel.preview = ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_BITMAP, 300, 0, 200, 150, window_, nullptr,
                                          nullptr, nullptr);
        panel.previewDefaultWidth = 200;
        panel.previewDefaultHeight = 150;
        panel.fsize =
            ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 200, 100, 20, window_, nullptr, nullptr, nullptr);
        panel.fdate =
            ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 220, 100, 20, window_, nullptr, nullptr, nullptr);
        panel.dimensions =
            ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 240, 100, 20, window_, nullptr, nullptr, nullptr);
        panel.keepPicture = true;
    }
    ~BenchHost() override { ::DestroyWindow(window_); }

    HWND window() const { return window_; }
    FactsPanel panel;

    ListBoxView& list1() override { return *list1_; }
    void fillOrType() override {}
    void setOrTypeIndex(int index) override { orType_ = index; }
    int orTypeIndex() const override { return orType_; }
    void setMinuteTimer(bool) override {}
    // The desktop applied to: the display's, unless set.
    ScreenSize screen;
    ScreenSize screenSize() override {
        return screen.width > 0 ? screen : ScreenSize{::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
    }
    std::vector<ScreenRect> monitors() override { return monitorRects; }
    std::vector<ScreenRect> monitorRects{{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)}};
    double secondsSinceMidnight() override { return 0; }
    void saveSettings() override {}
    void beep() override {}
    bool removeFileFromDisk(const std::string&, bool, bool) override { return false; }
    void menusChanged() override {}
    void buildResolutionMenu() override {}
    void popUpTrayMenu() override {}
    void registerSwitchHotKey() override {}
    void unloadForm() override {}
    void showManager() override {}
    void loadTracker(const TrackedFolders&) override {}
    void allowTrackerUnload() override {}
    void unloadTracker() override {}
    void showTracker() override {}
    void setTrackerIgnoreEvents(bool) override {}
    void showDelayDialog() override {}
    void applyMainMode(int16_t) override {}
    void preparePanel() override {}
    void showFactsLabels() override {}
    bool livesInTray() override { return true; }
    void layoutPanel() override {}
    void openWebPage() override {}
    void popUpOptionsMenu() override {}
    void showPreviewWindow(const std::string&) override {}
    std::optional<std::string> browseForFolder(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::string currentDirectory() override { return {}; }
    void applyIconTextOptions() override {}
    void makeIconTextTransparent(bool) override {}

  private:
    HWND window_ = nullptr;
    std::unique_ptr<Win32ListBox> list1_;
    int orType_ = -1;
};

// Time spent in each part of frmMain's apply, added up over the applies.
struct Phases {
    double load = 0, save = 0, scale = 0, desktop = 0, tray = 0;
    void clear() { *this = Phases(); }
};

template <typename F>
auto timed(double& total, F&& f) {
    const auto start = Clock::now();
    auto result = f();
    total += msSince(start);
    return result;
}

class TimedPictures : public WallpaperPictures {
  public:
    TimedPictures(WallpaperPictures& inner, Phases& phases) : inner_(inner), phases_(phases) {}
    bool showImageFacts(WallpaperEntry& entry, PictureUse use, ScreenSize screen) override {
        return timed(phases_.load, [&] { return inner_.showImageFacts(entry, use, screen); });
    }
    bool saveCurrentBitmap(const std::string& path) override {
        return timed(phases_.save, [&] { return inner_.saveCurrentBitmap(path); });
    }
    bool saveScaledBitmap(const std::string& path, int32_t width, int32_t height) override {
        return timed(phases_.scale, [&] { return inner_.saveScaledBitmap(path, width, height); });
    }
    ScreenSize shownPictureSize() override { return inner_.shownPictureSize(); }
    bool composeWallpaper(const WallpaperPlan& plan, const std::string& path) override {
        return timed(phases_.save, [&] { return inner_.composeWallpaper(plan, path); });
    }
    void releasePicture() override { inner_.releasePicture(); }
    void clearPreview() override { inner_.clearPreview(); }
    void hidePreviewFrame() override { inner_.hidePreviewFrame(); }

  private:
    WallpaperPictures& inner_;
    Phases& phases_;
};

class TimedDesktop : public Desktop {
  public:
    TimedDesktop(Desktop& inner, Phases& phases) : inner_(inner), phases_(phases) {}
    void setDesktopValue(std::string_view name, std::string_view text) override {
        timed(phases_.desktop, [&] {
            inner_.setDesktopValue(name, text);
            return 0;
        });
    }
    void setDeskWallpaper(const std::string& path) override {
        timed(phases_.desktop, [&] {
            inner_.setDeskWallpaper(path);
            return 0;
        });
    }
    void setActiveDesktopWallpaper(const std::string& path, int style, bool enable) override {
        inner_.setActiveDesktopWallpaper(path, style, enable);
    }
    bool spansWallpaper() override { return inner_.spansWallpaper(); }
    bool isSomethingMaximised() override { return inner_.isSomethingMaximised(); }

  private:
    Desktop& inner_;
    Phases& phases_;
};

class TimedTray : public TrayIcon {
  public:
    TimedTray(TrayIcon& inner, Phases& phases) : inner_(inner), phases_(phases) {}
    bool add(TrayIconKind icon, std::string_view tip) override { return inner_.add(icon, tip); }
    bool modify(TrayIconKind icon, std::string_view tip) override {
        return timed(phases_.tray, [&] { return inner_.modify(icon, tip); });
    }
    void remove() override { inner_.remove(); }

  private:
    TrayIcon& inner_;
    Phases& phases_;
};

// One frmMain on a list file of its own, in a folder of its own.
struct BenchForm {
    BenchForm(const std::string& dir, const std::string& listText) {
        app.programDir = dir;
        app.settings.OutputPath = dir + "\\tl_current.bmp";
        app.settings.LastList = dir + "\\bench.wall";
        app.settings.Mode = 2;
        app.settings.Delay = 1;
        app.settings.AutomaticShowOnDesktop = true;
        fs.writeNewFile(app.settings.LastList, listText);
    }
    AppState app;
    Win32FileSystem fs;
    Win32AnsiCodePage ansi;
    DefaultRandom random;
    BenchHost host;
    Phases phases;
    Win32Desktop win32Desktop;
    Win32WallpaperPictures win32Pictures{host.panel};
    Win32TrayIcon win32Tray{host.window()};
    TimedDesktop desktop{win32Desktop, phases};
    TimedPictures pictures{win32Pictures, phases};
    TimedTray tray{win32Tray, phases};
    frmMain form{app, fs, ansi, random, host, desktop, pictures, tray};
};

void report(const char* what, std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    std::printf("%s best ms: %.1f\n%s median ms: %.1f\n", what, ms.front(), what, ms[ms.size() / 2]);
}

// The form's switch, forced each round so that the same entry is applied again in full, timed and reported.
void timeForcedSwitches(BenchForm& b, const char* what, int rounds) {
    std::vector<double> apply;
    b.phases.clear();
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        b.form.switchWallpaper(true);
        apply.push_back(msSince(start));
    }
    report(what, apply);
}

std::string temporaryFolder() {
    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH + 1, temp);
    std::string dir = narrow(temp) + "tl-changer-bench-" + std::to_string(::GetCurrentProcessId());
    ::CreateDirectoryW(widen(dir).c_str(), nullptr);
    return dir;
}

// One Scale apply of the picture to a 1920 x 1080 desktop in this fresh process: how far the resident memory
// rose above where it stood before (Wine's peak working set is the process's high-water mark), beside what
// it needs at the least: the file, read whole, and the screen-sized result. The picture itself is decoded
// at a reduced size a few rows at a time and resampled on the way, never held whole.
int scalePeak(const std::string& large) {
    const std::string dir = temporaryFolder();
    BenchForm b(dir, large + "\t3\r\n");
    b.host.screen = {1920, 1080};
    PROCESS_MEMORY_COUNTERS before{};
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &before, sizeof before);
    b.form.onLoad();
    PROCESS_MEMORY_COUNTERS after{};
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &after, sizeof after);
    const std::optional<LoadedPicture> natural = loadPictureFor(large, [](int, int) { return std::pair{1, 1}; });
    WIN32_FILE_ATTRIBUTE_DATA file{};
    if (b.form.previewTag() != large || !natural ||
        !::GetFileAttributesExW(widen(large).c_str(), GetFileExInfoStandard, &file)) {
        std::fprintf(stderr, "can't apply %s\n", large.c_str());
        return 1;
    }
    const double factor = scaleFactor(natural->naturalWidth, natural->naturalHeight, b.host.screen);
    const int width = scaledSide(natural->naturalWidth, factor);
    const int height = scaledSide(natural->naturalHeight, factor);
    const int eighths = jpegEighthsToCover(natural->naturalWidth, natural->naturalHeight, sideToResampleFrom(width),
                                           sideToResampleFrom(height));
    const double result = static_cast<double>(Picture::rowBytes(width)) * height;
    std::printf(
        "scale apply peak MB above the start: %.1f\n",
        static_cast<double>(after.PeakWorkingSetSize - std::min(after.PeakWorkingSetSize, before.WorkingSetSize)) /
            1048576.0);
    std::printf("file and result MB: %.1f + %.1f (decoded at %d/8 of its size a few rows at a time)\n",
                static_cast<double>(file.nFileSizeLow) / 1048576.0, result / 1048576.0, eighths);
    b.form.unload();
    ::DeleteFileA((dir + "\\tl_current.bmp").c_str());
    ::DeleteFileA((dir + "\\bench.wall").c_str());
    ::RemoveDirectoryA(dir.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--scale-peak") {
        scoped_com_init com;
        return scalePeak(argv[2]);
    }
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <large picture> <folder of small pictures> [rounds] [applies]\n", argv[0]);
        return 2;
    }
    const std::string large = argv[1];
    const std::string small = argv[2];
    const int rounds = argc > 3 ? std::max(1, std::atoi(argv[3])) : 5;
    const int applies = argc > 4 ? std::max(1, std::atoi(argv[4])) : 10000;
    scoped_com_init com;
    const std::string dir = temporaryFolder();

    {
        // The whole apply of the large picture, forced each time: decode (with the preview's copy), the BMP
        // written, the desktop's values and the system call.
        BenchForm b(dir, large + "\t0\r\n");
        b.form.onLoad();
        if (b.form.previewTag() != large) {
            std::fprintf(stderr, "can't apply %s\n", large.c_str());
            return 1;
        }
        timeForcedSwitches(b, "apply", rounds);
        std::printf(
            "apply parts mean ms: decode and preview %.1f, bmp write %.1f, desktop values and call %.1f, "
            "tray %.1f\n",
            b.phases.load / rounds, b.phases.save / rounds, b.phases.desktop / rounds, b.phases.tray / rounds);

        // Its parts.
        std::vector<double> decode, write, desktop;
        for (int i = 0; i < rounds; ++i) {
            auto start = Clock::now();
            std::optional<Picture> p = loadPicture(large);
            decode.push_back(msSince(start));
            start = Clock::now();
            writeBitmapFile(*p, b.app.settings.OutputPath);
            write.push_back(msSince(start));
            p.reset();
            start = Clock::now();
            b.win32Desktop.setDeskWallpaper(b.app.settings.OutputPath);
            desktop.push_back(msSince(start));
        }
        report("decode", decode);
        report("bmp write", write);
        report("desktop call", desktop);
        b.form.unload();
    }

    if (argc > 5) {
        // Two pictures filled on two 1920 x 1080 monitors side by side, forced each time: the current one
        // decoded with the preview's copy, the other at the size it needs, both resampled into one bitmap.
        const std::string second = argv[5];
        BenchForm b(dir, large + "\tFill...\r\n" + second + "\tFill...\r\n");
        b.host.monitorRects = {{0, 0, 1920, 1080}, {1920, 0, 1920, 1080}};
        b.form.onLoad();
        timeForcedSwitches(b, "two-monitor apply", rounds);
        std::printf("two-monitor apply parts mean ms: decode and preview %.1f, composition and bmp write %.1f\n",
                    b.phases.load / rounds, b.phases.save / rounds);
        b.form.unload();
    }

    {
        // The same picture with Scale to a 1920 x 1080 desktop, forced each time: decoded at the reduced size
        // that still covers the scaled one, resampled to it, the BMP written, the desktop's values and call.
        BenchForm b(dir, large + "\t3\r\n");
        b.host.screen = {1920, 1080};
        b.form.onLoad();
        // A Scale apply takes a fraction of the time of the others, so a pause of this shared machine weighs
        // more in it: three times the rounds.
        const int scaleRounds = 3 * rounds;
        timeForcedSwitches(b, "scale apply", scaleRounds);
        std::printf(
            "scale apply parts mean ms: decode and preview %.1f, resample and bmp write %.1f, desktop values and "
            "call %.1f\n",
            b.phases.load / scaleRounds, b.phases.scale / scaleRounds, b.phases.desktop / scaleRounds);
        b.form.unload();
    }

    {
        // Many applies of small pictures of every kind, Scale among them so that the Scaler runs too.
        BenchForm b(dir, small + "\\small.jpg\t0\r\n" + small + "\\small.png\t3\r\n" + small + "\\small.gif\t1\r\n" +
                             small + "\\small.bmp\t2\r\n");
        b.form.onLoad();
        const bench::GuiObjectCount first = bench::countGuiObjects();
        b.phases.clear();
        const auto start = Clock::now();
        for (int i = 1; i < applies; ++i) {
            b.form.switchWallpaper(false);
        }
        const double total = msSince(start);
        const bench::GuiObjectCount last = bench::countGuiObjects();
        std::printf("objects counted by: %s\n", first.probed ? "probing the handle tables" : "GetGuiResources");
        std::printf("GDI objects after apply 1: %lu\nGDI objects after apply %d: %lu\n", first.gdi, applies, last.gdi);
        std::printf("USER objects after apply 1: %lu\nUSER objects after apply %d: %lu\n", first.user, applies,
                    last.user);
        const double n = applies - 1;
        std::printf(
            "small apply mean ms: %.3f (decode and preview %.3f, bmp write %.3f, scaler %.3f, desktop %.3f, "
            "tray %.3f)\n",
            total / n, b.phases.load / n, b.phases.save / n, b.phases.scale / n, b.phases.desktop / n,
            b.phases.tray / n);
        b.form.unload();
    }
    ::DeleteFileW(widen(dir + "\\tl_current.bmp").c_str());
    ::DeleteFileW(widen(dir + "\\bench.wall").c_str());
    ::RemoveDirectoryW(widen(dir).c_str());
    return 0;
}
