#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "base/file_system_posix.h"
#include "base/random.h"
#include "changer/changer_platform.h"
#include "changer/main_form.h"
#include "support/fake_list_box.h"
#include "support/temp_dir.h"

namespace tl::test {

// Everything frmMain talks to, recorded in one log of short lines ("spi <path>", "reg Wallpaper=<path>",
// "load <path>" ...), so a test reads the order of what happened.
struct ChangerLog {
    std::vector<std::string> lines;
    void add(std::string line) { lines.push_back(std::move(line)); }
    int count(const std::string& prefix) const {
        int n = 0;
        for (const auto& l : lines) {
            n += l.rfind(prefix, 0) == 0 ? 1 : 0;
        }
        return n;
    }
    std::vector<std::string> matching(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const auto& l : lines) {
            if (l.rfind(prefix, 0) == 0) {
                out.push_back(l);
            }
        }
        return out;
    }
    void clear() { lines.clear(); }
};

class FakeDesktop : public Desktop {
  public:
    explicit FakeDesktop(ChangerLog& log) : log_(log) {}
    void setDesktopValue(std::string_view name, std::string_view text) override {
        log_.add("reg " + std::string(name) + "=" + std::string(text));
    }
    void setDeskWallpaper(const std::string& path) override { log_.add("spi " + path); }
    void setActiveDesktopWallpaper(const std::string& path, int style, bool enable) override {
        log_.add("activedesktop " + path + " style " + std::to_string(style) + (enable ? " on" : " off"));
    }
    bool isSomethingMaximised() override { return maximised; }

    bool maximised = false;

  private:
    ChangerLog& log_;
};

// The preview and the bitmap files. Pictures named in `unloadable` can't be loaded; the others have the
// size given in `sizes` (800 x 600 when not given), which ShowImageFacts stores into the entry unless
// `storeFacts` is off. saveCurrentBitmap writes a BMP header of the shown picture's size, so that the
// header reader finds it.
class FakePictures : public WallpaperPictures {
  public:
    FakePictures(ChangerLog& log, FileSystem& fs) : log_(log), fs_(fs) {}

    bool showImageFacts(WallpaperEntry& entry) override {
        log_.add("load " + entry.path);
        char here = 0;
        stackDepths.push_back(reinterpret_cast<uintptr_t>(&here));
        if (unloadable.count(entry.path) != 0) {
            return false;
        }
        shown = entry.path;
        const auto it = sizes.find(entry.path);
        shownSize = it == sizes.end() ? std::pair{800, 600} : it->second;
        if (storeFacts && (entry.width == 0 || entry.height == 0)) {
            entry.width = shownSize.first;
            entry.height = shownSize.second;
        }
        return true;
    }
    bool saveCurrentBitmap(const std::string& path) override {
        log_.add("save " + shown);
        fs_.writeNewFile(path, bmpHeader(shownSize.first, shownSize.second));
        return true;
    }
    bool scaleImageFile(const std::string& source,
                        const std::string& target,
                        double factor,
                        int32_t height,
                        int32_t width,
                        bool loadScaled) override {
        char text[160];
        std::snprintf(text, sizeof text, "scale %dx%d by %.4f%s", width, height, factor, loadScaled ? "" : " unscaled");
        log_.add(text);
        lastScale = {source, target, factor, height, width};
        return true;
    }
    void releasePicture() override {}
    void clearPreview() override { log_.add("clear preview"); }
    void hidePreviewFrame() override {}

    static std::string bmpHeader(int width, int height) {
        std::string b(54, '\0');
        b[0] = 'B';
        b[1] = 'M';
        auto put32 = [&](size_t at, uint32_t v) {
            for (int i = 0; i < 4; ++i) {
                b[at + static_cast<size_t>(i)] = static_cast<char>((v >> (8 * i)) & 0xFF);
            }
        };
        put32(18, static_cast<uint32_t>(width));
        put32(22, static_cast<uint32_t>(height));
        b[28] = 24;
        return b;
    }

    struct Scale {
        std::string source, target;
        double factor = 0;
        int32_t height = 0, width = 0;
    } lastScale;
    std::vector<uintptr_t> stackDepths;  // where on the stack each load ran
    std::set<std::string> unloadable;
    std::map<std::string, std::pair<int, int>> sizes;
    bool storeFacts = true;
    std::string shown;
    std::pair<int, int> shownSize{800, 600};

  private:
    ChangerLog& log_;
    FileSystem& fs_;
};

class FakeTray : public TrayIcon {
  public:
    explicit FakeTray(ChangerLog& log) : log_(log) {}
    bool add(TrayIconKind kind, std::string_view text) override {
        present = true;
        record("tray add", kind, text);
        return true;
    }
    bool modify(TrayIconKind kind, std::string_view text) override {
        record("tray modify", kind, text);
        return present;
    }
    void remove() override {
        present = false;
        log_.add("tray remove");
    }

    bool present = false;
    TrayIconKind icon = TrayIconKind::Normal;
    std::string tip;

  private:
    void record(const char* what, TrayIconKind kind, std::string_view text) {
        icon = kind;
        tip = std::string(text);
        log_.add(std::string(what) + (kind == TrayIconKind::Paused ? " paused " : " ") + tip);
    }
    ChangerLog& log_;
};

class FakeHost : public MainFormHost {
  public:
    explicit FakeHost(ChangerLog& log) : log_(log) {}

    ListBoxView& list1() override { return list; }
    void fillOrType() override { log_.add("fill orType"); }
    void setOrTypeIndex(int index) override { orType = index; }
    int orTypeIndex() const override { return orType; }
    void setMinuteTimer(bool enabled) override { timerEnabled = enabled; }
    ScreenSize screenSize() override { return screen; }
    double secondsSinceMidnight() override { return clock += 0.25; }
    void saveSettings() override { log_.add("save settings"); }
    void beep() override { log_.add("beep"); }
    // Files named in `kept` stay (the user said no to the shell's question); duringRemoval runs while a
    // file is being deleted, as the shell's question lets other messages through.
    bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) override {
        log_.add(std::string(recycle ? "recycle " : "delete ") + (useShell ? "" : "directly ") + path);
        if (duringRemoval) {
            duringRemoval(path);
        }
        return kept.count(path) == 0;
    }
    void menusChanged() override {}
    void buildResolutionMenu() override { log_.add("build resolution menu"); }
    void popUpTrayMenu() override { log_.add("pop up tray menu"); }
    void registerSwitchHotKey() override { log_.add("register hot key"); }
    void unloadForm() override {
        log_.add("unload form");
        if (form) {
            form->unload();
        }
    }
    void showManager() override { log_.add("show manager"); }
    void loadTracker(const TrackedFolders& folders) override {
        log_.add("load tracker " + std::to_string(folders.size() - 1));
    }
    void allowTrackerUnload() override { log_.add("allow tracker unload"); }
    void unloadTracker() override { log_.add("unload tracker"); }
    void showTracker() override { log_.add("show tracker"); }
    void setTrackerIgnoreEvents(bool ignore) override { log_.add(ignore ? "tracker ignores" : "tracker listens"); }
    void showDelayDialog() override {
        log_.add("delay dialog");
        if (newDelay && app) {
            app->settings.Delay = *newDelay;
        }
    }
    void applyMainMode(int16_t mode) override { log_.add("main mode " + std::to_string(mode)); }
    void preparePanel() override { log_.add("prepare panel"); }
    void showFactsLabels() override {}
    bool livesInTray() override { return inTray; }
    void layoutPanel() override { log_.add("layout panel"); }
    void openWebPage() override { log_.add("web page"); }
    void popUpOptionsMenu() override { log_.add("pop up options menu"); }
    void showPreviewWindow(const std::string& path) override { log_.add("preview window " + path); }
    std::optional<std::string> browseForFolder(const std::string& title,
                                               const std::string& prompt,
                                               const std::string& start) override {
        log_.add("browse " + title + " | " + prompt + " | " + start);
        return folderAnswer;
    }
    std::string currentDirectory() override { return cwd; }
    void applyIconTextOptions() override { log_.add("icon text options"); }
    void makeIconTextTransparent(bool redraw) override { log_.add(redraw ? "icon text redraw" : "icon text"); }

    FakeListBox list{std::initializer_list<std::string>{}, true};
    int orType = -1;
    bool timerEnabled = false;
    ScreenSize screen{1024, 768};
    double clock = 3600.0;
    bool inTray = true;
    std::set<std::string> kept;
    std::function<void(const std::string&)> duringRemoval;
    std::optional<std::string> folderAnswer;
    std::string cwd = "D:\\work\\lists";
    std::optional<int16_t> newDelay;
    frmMain* form = nullptr;
    AppState* app = nullptr;

  private:
    ChangerLog& log_;
};

// A frmMain on fakes, in a program directory of its own with the settings' defaults that matter here.
struct ChangerFixture {
    ChangerFixture() {
        app.programDir = dir.path();
        app.settings.OutputPath = dir.path() + "\\tl_current.bmp";
        app.settings.LastList = dir.path() + "\\MyWallpapers.wall";
        app.settings.Delay = 1;
        app.settings.Mode = 2;
        app.settings.AutomaticShowOnDesktop = true;
        app.settings.RatioTolerance = 0.25;
        app.settings.HalfRatio = 1.5;
        app.settings.UseTracker = true;
        host.form = &form;
        host.app = &app;
    }

    // Writes the list file with the given lines (CR LF ended).
    void writeList(const std::vector<std::string>& lines, const std::string& name = "MyWallpapers.wall") {
        std::string text;
        for (const auto& l : lines) {
            text += l + "\r\n";
        }
        dir.write(name, text);
    }
    std::string bitmap() const { return app.settings.OutputPath; }
    // Loads the form and forgets what the load did.
    void loadQuietly() {
        form.onLoad();
        log.clear();
    }

    TempDir dir;
    AppState app;
    PosixFileSystem fs;
    DefaultRandom random;
    ChangerLog log;
    FakeHost host{log};
    FakeDesktop desktop{log};
    FakePictures pictures{log, fs};
    FakeTray tray{log};
    frmMain form{app, fs, random, host, desktop, pictures, tray};
};

}  // namespace tl::test
