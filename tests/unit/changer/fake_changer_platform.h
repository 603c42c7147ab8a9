#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/settings.h"
#include "base/file_system_posix.h"
#include "base/random.h"
#include "base/text_file.h"
#include "changer/changer_platform.h"
#include "changer/main_form.h"
#include "support/fake_list_box.h"
#include "support/picture_bytes.h"
#include "support/temp_dir.h"

namespace tl::test {

// Everything frmMain talks to in one object, which records each call as a short line of one log ("spi
// <path>", "reg Wallpaper=<path>", "load <path>" ...), so a test reads the order of what happened.
// Pictures named in `unloadable` can't be loaded; the others have the size given in `sizes` (800 x 600
// when not given), which showImageFacts stores into the entry unless `storeFacts` is off.
class FakeChangerPlatform : public Desktop, public WallpaperPictures, public TrayIcon, public MainFormHost {
  public:
    int count(const std::string& prefix) const { return static_cast<int>(matching(prefix).size()); }
    std::vector<std::string> matching(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const auto& l : log) {
            if (l.rfind(prefix, 0) == 0) {
                out.push_back(l);
            }
        }
        return out;
    }

    // Desktop
    void setDesktopValue(std::string_view name, std::string_view text) override {
        log.push_back("reg " + std::string(name) + "=" + std::string(text));
    }
    void setDeskWallpaper(const std::string& path) override { log.push_back("spi " + path); }
    void setActiveDesktopWallpaper(const std::string& path, int style, bool enable) override {
        log.push_back("activedesktop " + path + " style " + std::to_string(style) + (enable ? " on" : " off"));
    }
    bool spansWallpaper() override { return spans; }
    bool isSomethingMaximised() override { return maximised; }

    // WallpaperPictures; a saved bitmap is a BMP header of the shown picture's size, a scaled one of the size
    // asked for.
    bool showImageFacts(WallpaperEntry& entry, PictureUse use, ScreenSize) override {
        log.push_back("load " + entry.path);
        lastUse = use;
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
        log.push_back("save " + shown);
        fs.writeNewFile(path, bmpHeader(shownSize.first, shownSize.second));
        return true;
    }
    bool saveScaledBitmap(const std::string& path, int32_t width, int32_t height) override {
        log.push_back("scale " + std::to_string(width) + "x" + std::to_string(height));
        lastScaled = path;
        fs.writeNewFile(path, bmpHeader(width, height));
        return true;
    }
    ScreenSize shownPictureSize() override {
        return shown.empty() ? ScreenSize{} : ScreenSize{shownSize.first, shownSize.second};
    }
    bool composeWallpaper(const WallpaperPlan& plan, const std::string& path) override {
        std::string line = "compose";
        for (const MonitorPicture& p : plan.pictures) {
            line += " " + p.path.substr(p.path.rfind('\\') + 1) + "@" + std::to_string(p.area.left) + "," +
                    std::to_string(p.area.top);
        }
        log.push_back(line);
        lastPlan = plan;
        fs.writeNewFile(path, bmpHeader(plan.desktop.width, plan.desktop.height));
        return true;
    }
    void releasePicture() override {}
    void clearPreview() override { log.push_back("clear preview"); }
    void hidePreviewFrame() override {}

    // TrayIcon
    bool add(TrayIconKind kind, std::string_view text) override {
        present = true;
        return recordTray("tray add", kind, text);
    }
    bool modify(TrayIconKind kind, std::string_view text) override {
        return recordTray("tray modify", kind, text) && present;
    }
    void remove() override {
        present = false;
        log.push_back("tray remove");
    }

    // MainFormHost. Files named in `kept` stay (the user said no to the shell's question); duringRemoval
    // runs while a file is being deleted, as the shell's question lets other messages through.
    ListBoxView& list1() override { return list; }
    void fillOrType() override { log.push_back("fill orType"); }
    void setOrTypeIndex(int index) override { orType = index; }
    int orTypeIndex() const override { return orType; }
    void setMinuteTimer(bool enabled) override { timerEnabled = enabled; }
    ScreenSize screenSize() override { return {1024, 768}; }
    std::vector<ScreenRect> monitors() override { return monitorRects; }
    double secondsSinceMidnight() override { return clock += 0.25; }
    void saveSettings() override { log.push_back("save settings"); }
    void beep() override { log.push_back("beep"); }
    bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) override {
        log.push_back(std::string(recycle ? "recycle " : "delete ") + (useShell ? "" : "directly ") + path);
        if (duringRemoval) {
            duringRemoval(path);
        }
        return kept.count(path) == 0;
    }
    void menusChanged() override {}
    void buildResolutionMenu() override { log.push_back("build resolution menu"); }
    void popUpTrayMenu() override { log.push_back("pop up tray menu"); }
    void registerSwitchHotKey() override { log.push_back("register hot key"); }
    void unloadForm() override {
        log.push_back("unload form");
        form->unload();
    }
    void showManager() override { log.push_back("show manager"); }
    void loadTracker(const TrackedFolders& folders) override {
        log.push_back("load tracker " + std::to_string(folders.size() - 1));
    }
    void allowTrackerUnload() override { log.push_back("allow tracker unload"); }
    void unloadTracker() override { log.push_back("unload tracker"); }
    void showTracker() override { log.push_back("show tracker"); }
    void setTrackerIgnoreEvents(bool ignore) override { log.push_back(ignore ? "tracker ignores" : "tracker listens"); }
    void showDelayDialog() override {
        log.push_back("delay dialog");
        if (newDelay) {
            app->settings.Delay = *newDelay;
        }
    }
    void applyMainMode(int16_t mode) override { log.push_back("main mode " + std::to_string(mode)); }
    void preparePanel() override { log.push_back("prepare panel"); }
    void showFactsLabels() override {}
    bool livesInTray() override { return inTray; }
    void layoutPanel() override { log.push_back("layout panel"); }
    void openWebPage() override { log.push_back("web page"); }
    void popUpOptionsMenu() override { log.push_back("pop up options menu"); }
    void showPreviewWindow(const std::string& path) override { log.push_back("preview window " + path); }
    std::optional<std::string> browseForFolder(const std::string& title,
                                               const std::string& prompt,
                                               const std::string& start) override {
        log.push_back("browse " + title + " | " + prompt + " | " + start);
        return folderAnswer;
    }
    std::string currentDirectory() override { return "D:\\work\\lists"; }
    void applyIconTextOptions() override { log.push_back("icon text options"); }
    void makeIconTextTransparent(bool redraw) override { log.push_back(redraw ? "icon text redraw" : "icon text"); }

    std::vector<std::string> log;
    PosixFileSystem fs;
    bool maximised = false;
    std::string lastScaled;  // the path of the last scaled bitmap
    PictureUse lastUse = PictureUse::whole;
    std::vector<ScreenRect> monitorRects{{0, 0, 1024, 768}};
    WallpaperPlan lastPlan;
    bool spans = false;
    std::vector<uintptr_t> stackDepths;  // where on the stack each load ran
    std::set<std::string> unloadable;
    std::map<std::string, std::pair<int, int>> sizes;
    bool storeFacts = true;
    std::string shown;
    std::pair<int, int> shownSize{800, 600};
    bool present = false;
    TrayIconKind icon = TrayIconKind::Normal;
    std::string tip;
    FakeListBox list{std::initializer_list<std::string>{}, true};
    int orType = -1;
    bool timerEnabled = false;
    double clock = 3600.0;
    bool inTray = true;
    std::set<std::string> kept;
    std::function<void(const std::string&)> duringRemoval;
    std::optional<std::string> folderAnswer;
    std::optional<int16_t> newDelay;
    frmMain* form = nullptr;
    AppState* app = nullptr;

  private:
    bool recordTray(const char* what, TrayIconKind kind, std::string_view text) {
        icon = kind;
        tip = std::string(text);
        log.push_back(std::string(what) + (kind == TrayIconKind::Paused ? " paused " : " ") + tip);
        return true;
    }
};

// A frmMain on the fake, in a program directory of its own with the default settings, in sequence.
struct ChangerFixture {
    ChangerFixture() {
        app.programDir = dir.path();
        applyDefaultSettings(app);
        app.settings.Mode = 2;
        fake.form = &form;
        fake.app = &app;
    }

    void writeList(const std::vector<std::string>& lines, const std::string& name = "MyWallpapers.wall") {
        std::string text;
        for (const auto& l : lines) {
            text += l + "\r\n";
        }
        dir.write(name, text);
    }
    // The list of these lines loaded; the load's own calls are forgotten unless kept.
    void load(const std::vector<std::string>& lines, bool keepLog = false) {
        writeList(lines);
        form.onLoad();
        if (!keepLog) {
            fake.log.clear();
        }
    }
    // The list "C:\p\<name>.jpg<TAB>0" of the named pictures, loaded with the first on show.
    void start(std::initializer_list<std::string> names) {
        std::vector<std::string> lines;
        for (const auto& n : names) {
            lines.push_back(pic(n) + "\t0");
        }
        load(lines);
    }
    static std::string pic(const std::string& name) { return "C:\\p\\" + name + ".jpg"; }
    void tick(int times) {
        for (int i = 0; i < times; ++i) {
            form.onMinuteTimer();
        }
    }
    // What the user's click does in a multiple-selection list box: only that line selected.
    void userClick(int line) {
        for (int i = 0; i < fake.list.count(); ++i) {
            fake.list.setSelected(i, false);
        }
        fake.list.setListIndex(line);
        form.onList1Click();
    }
    std::string bitmap() const { return app.settings.OutputPath; }

    TempDir dir;
    AppState app;
    DefaultRandom random;
    Windows1252 ansi;
    FakeChangerPlatform fake;
    frmMain form{app, fake.fs, ansi, random, fake, fake, fake, fake};
};

}  // namespace tl::test
