#include "changer/desktop_options.h"

#include <gtest/gtest.h>

#include <map>

#include "app/settings.h"
#include "base/file_system_posix.h"
#include "changer/input_box.h"
#include "support/fake_ui.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

constexpr ShellWindow kProgman = 0x100, kDefView = 0x200, kListView = 0x300;

// A desktop shell whose windows exist as configured, recording what is asked of them.
class FakeShell : public DesktopShell {
  public:
    bool hasProgman = true, hasDefView = true, hasListView = true;
    std::intptr_t answer = 1;
    bool maximised = false;
    std::string log;

    ShellWindow findWindow(const char* className, const char* title) override {
        return hasProgman && std::string(className) == "Progman" && std::string(title) == "Program Manager" ? kProgman
                                                                                                            : 0;
    }
    ShellWindow findChildWindow(ShellWindow parent, const char* className) override {
        if (parent == kProgman && std::string(className) == "SHELLDLL_DefView" && hasDefView) {
            return kDefView;
        }
        if (parent == kDefView && std::string(className) == "SysListView32" && hasListView) {
            return kListView;
        }
        return 0;
    }
    ShellWindow firstChild(ShellWindow window) override { return window == kProgman && hasDefView ? kDefView : 0; }
    std::intptr_t sendMessage(ShellWindow window, unsigned message, std::uintptr_t, std::intptr_t lParam) override {
        log += "send " + std::to_string(window) + " " + std::to_string(message) + " " + std::to_string(lParam) + ";";
        return answer;
    }
    void showWindow(ShellWindow window, bool show) override {
        log += (show ? "show " : "hide ") + std::to_string(window) + ";";
    }
    void updateWindow(ShellWindow window) override { log += "update " + std::to_string(window) + ";"; }
    void invalidateWindow(ShellWindow window) override { log += "invalidate " + std::to_string(window) + ";"; }
    bool isSomethingMaximised() override { return maximised; }
};

class FakeSystem : public DesktopSystem {
  public:
    bool getSucceeds = false;
    std::map<std::string, std::string> values;
    std::vector<std::string> calls;
    // The registry value that SPI_SETSCREENSAVETIMEOUT writes, as the system keeps it.
    bool systemParameter(unsigned action, unsigned param, unsigned flags) override {
        calls.push_back(std::to_string(action) + " " + std::to_string(param) + " " + std::to_string(flags));
        if (action == kSpiSetScreenSaveTimeout) {
            values["ScreenSaveTimeout"] = std::to_string(param);
            return true;
        }
        return getSucceeds;
    }
    std::string desktopValue(const char* name) override {
        auto it = values.find(name);
        return it == values.end() ? std::string() : it->second;
    }
};

class FakeInputBox : public InputBox {
  public:
    std::vector<std::string> answers;
    std::vector<std::string> asked;
    std::string ask(std::string_view prompt, std::string_view title, std::string_view defaultText) override {
        asked.push_back(std::string(title) + "|" + std::string(prompt) + "|" + std::string(defaultText));
        std::string a = answers.empty() ? std::string() : answers.front();
        if (!answers.empty()) {
            answers.erase(answers.begin());
        }
        return a;
    }
};

class FakeSaveDialog : public SaveDialog {
  public:
    std::optional<std::string> answer;
    std::vector<FileDialogRequest> requests;
    std::function<void()> whileOpen;
    std::optional<std::string> ask(const FileDialogRequest& request) override {
        requests.push_back(request);
        if (whileOpen) {
            whileOpen();
        }
        return answer;
    }
};

class FakeBusyPointer : public BusyPointer {
  public:
    std::string log;
    void show(bool busy) override { log += busy ? "wait;" : "arrow;"; }
};

class DesktopOptionsTest : public ::testing::Test {
  protected:
    DesktopOptionsTest()
        : options(settings, {shell, system, inputBox, ui, saveDialog, fs, busy}, [this](const std::string& path) {
              added.push_back(path);
          }) {
        settings.ScreenSaver = -1;
        settings.WallpaperDirectory = "C:\\Walls\\";
    }

    Settings settings;
    FakeShell shell;
    FakeSystem system;
    FakeInputBox inputBox;
    test::FakeUi ui;
    FakeSaveDialog saveDialog;
    PosixFileSystem fs;
    FakeBusyPointer busy;
    std::vector<std::string> added;
    DesktopOptions options;
};

TEST(BrowserWallpaperName, MatchesTheBrowsersFileAtTheEndOfTheValue) {
    const struct {
        const char* value;
        bool expected;
    } cases[] = {
        {"C:\\WINDOWS\\Internet Explorer Wallpaper.bmp", true},
        // One character before the name still lies in the last n + 1.
        {"C:\\x\\MyInternet Explorer Wallpaper.bmp", true},
        {"c:\\windows\\INTERNET EXPLORER WALLPAPER.BMP", true},
        {"  C:\\WINDOWS\\Internet Explorer Wallpaper.bmp  ", true},
        {"Internet Explorer Wallpaper.bmp", true},
        // Shorter than the name.
        {"nternet Explorer Wallpaper.bmp", false},
        {"", false},
        // The name, but not at the end.
        {"C:\\Internet Explorer Wallpaper.bmp.old", false},
        {"C:\\Internet Explorer Wallpaper.bmp2", true},
        {"C:\\WINDOWS\\tl_current.bmp", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(isBrowserWallpaper(c.value), c.expected) << c.value;
    }
}

TEST_F(DesktopOptionsTest, DesktopListViewIsFoundThroughTheShellsWindowsAndKeptWhenAStepFails) {
    options.findDesktopListView();
    EXPECT_EQ(options.desktopListView(), kListView);
    // A later search that fails at any step leaves the handle found before.
    for (bool* missing : {&shell.hasListView, &shell.hasDefView, &shell.hasProgman}) {
        *missing = false;
        options.findDesktopListView();
        EXPECT_EQ(options.desktopListView(), kListView);
    }
}

TEST_F(DesktopOptionsTest, NoShellLeavesTheListViewAtZero) {
    shell.hasListView = false;
    options.findDesktopListView();
    EXPECT_EQ(options.desktopListView(), 0u);
}

TEST_F(DesktopOptionsTest, TransparentTextSendsNoColourThenRedrawsOnlyWhenAsked) {
    options.findDesktopListView();
    options.makeIconTextTransparent(false);
    EXPECT_EQ(shell.log, "send 768 4134 4294967295;update 768;");
    shell.log.clear();
    options.makeIconTextTransparent(true);
    EXPECT_EQ(shell.log, "send 768 4134 4294967295;update 768;invalidate 768;");

    shell.answer = 0;
    EXPECT_FALSE(options.setIconTextBackground(kClrNone));
    shell.answer = 1;
    EXPECT_TRUE(options.setIconTextBackground(kClrNone));
}

TEST_F(DesktopOptionsTest, TransIconToggleMakesTextTransparentOnlyWhenTurnedOn) {
    options.findDesktopListView();
    EXPECT_TRUE(options.toggleOption(OptionItem::mnuTransIcon));
    EXPECT_TRUE(settings.TransText);
    EXPECT_EQ(shell.log, "send 768 4134 4294967295;update 768;");
    shell.log.clear();
    EXPECT_FALSE(options.toggleOption(OptionItem::mnuTransIcon));
    EXPECT_FALSE(settings.TransText);
    EXPECT_EQ(shell.log, "") << "turning it off must not touch the icon text";
}

TEST_F(DesktopOptionsTest, TimerKeepsTextTransparentOnlyWhileTransTextIsOn) {
    options.findDesktopListView();
    options.onTransTimer();
    EXPECT_EQ(shell.log, "");
    settings.TransText = true;
    options.onTransTimer();
    EXPECT_EQ(shell.log, "send 768 4134 4294967295;update 768;");
    shell.log.clear();
    options.afterWallpaperApplied();
    EXPECT_EQ(shell.log, "send 768 4134 4294967295;update 768;invalidate 768;");
}

TEST_F(DesktopOptionsTest, HideIconsTogglesTheShellsChildAndBothCheckMarks) {
    EXPECT_TRUE(options.toggleOption(OptionItem::mnuOptionsHideIcons));
    EXPECT_EQ(shell.log, "hide 512;");
    EXPECT_TRUE(options.iconsHidden());
    EXPECT_FALSE(options.toggleOption(OptionItem::mnuTrayDisplayHideIcons));
    EXPECT_EQ(shell.log, "hide 512;show 512;");
    EXPECT_FALSE(settings.HideDesktopIcons) << "hiding is never stored";
}

TEST_F(DesktopOptionsTest, HideIconsWithActiveDesktopChangesOnlyTheCheckMark) {
    settings.UseActiveDesktop = true;
    EXPECT_TRUE(options.toggleOption(OptionItem::mnuOptionsHideIcons));
    EXPECT_EQ(shell.log, "");
    for (const auto& check : options.checkMarks()) {
        if (check.item == OptionItem::mnuOptionsHideIcons || check.item == OptionItem::mnuTrayDisplayHideIcons) {
            EXPECT_TRUE(check.checked);
        }
    }
}

TEST_F(DesktopOptionsTest, OptionTogglesFlipTheirSettingAndApplyNothing) {
    const struct {
        OptionItem item;
        bool Settings::*field;
    } cases[] = {
        {OptionItem::mnuSmartSwitch, &Settings::SmartSwitch},
        {OptionItem::mnuAutoShowDesktop, &Settings::AutomaticShowOnDesktop},
        {OptionItem::mnuAutoShutdown, &Settings::AutomaticShutdown},
        {OptionItem::mnuOptUseActiveDesktop, &Settings::UseActiveDesktop},
        {OptionItem::mnuTrapIEWallpaper, &Settings::TrapIEWallpaper},
    };
    for (const auto& c : cases) {
        const bool before = settings.*c.field;
        EXPECT_EQ(options.toggleOption(c.item), !before);
        EXPECT_EQ(settings.*c.field, !before);
        bool checked = before;
        for (const auto& check : options.checkMarks()) {
            if (check.item == c.item) {
                checked = check.checked;
            }
        }
        EXPECT_EQ(checked, !before) << "the check mark follows the setting";
        EXPECT_EQ(options.toggleOption(c.item), before);
    }
    EXPECT_EQ(shell.log, "");
    EXPECT_TRUE(system.calls.empty());
}

TEST_F(DesktopOptionsTest, BrowserWallpaperIsOfferedForSavingCopiedAndAdded) {
    test::TempDir dir;
    dir.write("Internet Explorer Wallpaper.bmp", "BMpicture");
    system.values["Wallpaper"] = " " + dir.file("Internet Explorer Wallpaper.bmp") + " ";
    saveDialog.answer = dir.file("kept.bmp");
    saveDialog.whileOpen = [&] { EXPECT_TRUE(options.catchInProgress()); };

    options.onTransTimer();

    ASSERT_EQ(saveDialog.requests.size(), 1u);
    const FileDialogRequest& r = saveDialog.requests[0];
    EXPECT_EQ(r.title, "Choose the destination for this image");
    EXPECT_EQ(r.initialDirectory, "C:\\Walls\\");
    EXPECT_EQ(r.defaultName, "wallpaper.bmp");
    EXPECT_EQ(r.defaultExtension, ".bmp");
    EXPECT_EQ(r.filter, "Image|*.bmp");
    EXPECT_EQ(dir.read("kept.bmp"), "BMpicture");
    EXPECT_EQ(added, std::vector<std::string>{dir.file("kept.bmp")});
    EXPECT_EQ(busy.log, "wait;arrow;");
    EXPECT_FALSE(options.catchInProgress());

    // While the browser's file stays the wallpaper, the offer comes back on the next tick.
    options.onTransTimer();
    EXPECT_EQ(saveDialog.requests.size(), 2u);
}

TEST_F(DesktopOptionsTest, CatchRunsWhateverTrapIEWallpaperSays) {
    settings.TrapIEWallpaper = false;
    system.values["Wallpaper"] = "C:\\WINDOWS\\Internet Explorer Wallpaper.bmp";
    options.onTransTimer();
    EXPECT_EQ(saveDialog.requests.size(), 1u);
}

TEST_F(DesktopOptionsTest, CancelledOrFailedCatchAddsNothing) {
    system.values["Wallpaper"] = "C:\\nowhere\\Internet Explorer Wallpaper.bmp";
    options.onTransTimer();  // cancelled
    saveDialog.answer = "";
    options.onTransTimer();  // no name
    EXPECT_EQ(busy.log, "");
    saveDialog.answer = "/nonexistent-dir/kept.bmp";
    options.onTransTimer();  // the copy fails
    EXPECT_TRUE(added.empty());
    EXPECT_TRUE(ui.messages.empty()) << "a failed copy is not reported";
    EXPECT_FALSE(options.catchInProgress());
}

TEST_F(DesktopOptionsTest, TicksDuringAnOpenCatchOfferNoSecondDialog) {
    system.values["Wallpaper"] = "C:\\WINDOWS\\Internet Explorer Wallpaper.bmp";
    saveDialog.whileOpen = [&] {
        saveDialog.whileOpen = nullptr;
        options.onTransTimer();  // the dialog's own message loop lets the timer tick
        options.onTransTimer();
    };
    options.onTransTimer();
    EXPECT_EQ(saveDialog.requests.size(), 1u);
}

TEST_F(DesktopOptionsTest, ScreenSaverTimeoutComesFromTheRegistryInMinutes) {
    const struct {
        const char* seconds;
        int32_t minutes;
    } cases[] = {
        {"600", 10}, {"90", 2}, {"150", 2}, {"30", 0}, {"59", 1}, {"0", 0}, {"-120", 0}, {"", 0}, {"junk", 0},
    };
    for (const auto& c : cases) {
        system.values["ScreenSaveTimeout"] = c.seconds;
        EXPECT_EQ(options.getScreenSaverTimeout(), c.minutes) << c.seconds;
    }
    EXPECT_EQ(system.calls.front(), "14 0 0");
    system.getSucceeds = true;
    system.values["ScreenSaveTimeout"] = "600";
    EXPECT_EQ(options.getScreenSaverTimeout(), 0) << "a call that succeeds gives 0";
}

TEST_F(DesktopOptionsTest, DisableRemembersTheTimeoutAndEnableRestoresItWithoutAsking) {
    settings.ScreenSaver = 0;
    system.values["ScreenSaveTimeout"] = "600";
    options.disableScreenSaver();
    EXPECT_EQ(settings.ScreenSaver, 10);
    EXPECT_EQ(system.calls.back(), "15 0 3");
    EXPECT_EQ(system.values["ScreenSaveTimeout"], "0");

    options.enableScreenSaver();
    EXPECT_TRUE(inputBox.asked.empty());
    EXPECT_EQ(system.calls.back(), "15 600 3");
    EXPECT_EQ(settings.ScreenSaver, 10);
}

TEST_F(DesktopOptionsTest, DisableWhileTheTimeoutIsUnknownKeepsItUnknown) {
    system.values["ScreenSaveTimeout"] = "600";
    options.disableScreenSaver();
    EXPECT_EQ(settings.ScreenSaver, -1);
    EXPECT_EQ(system.calls.back(), "15 0 3");
}

TEST_F(DesktopOptionsTest, EnableAsksWhenUnknownAndReadsTheLeadingNumber) {
    const struct {
        const char* answer;
        int32_t stored;
        unsigned seconds;
        bool note;
    } cases[] = {
        {"15", 15, 900, false},  {"12.5 minutes", 12, 720, false},  // halves to even
        {"7abc", 7, 420, false}, {"0", 0, 0, false},                // the saver stays off, without the note
        {"", 0, 0, false},                                          // Cancel gives the empty text
        {"-5", -5, 0, true},
    };
    for (const auto& c : cases) {
        settings.ScreenSaver = -1;
        inputBox.asked.clear();
        inputBox.answers = {c.answer};
        ui.messages.clear();
        options.enableScreenSaver();
        ASSERT_EQ(inputBox.asked.size(), 1u) << c.answer;
        EXPECT_EQ(inputBox.asked[0],
                  "Screensaver Timeout|Please enter the number of minutes you want the screensaver to wait:|10");
        EXPECT_EQ(settings.ScreenSaver, c.stored) << c.answer;
        EXPECT_EQ(system.calls.back(), "15 " + std::to_string(c.seconds) + " 3") << c.answer;
        ASSERT_EQ(ui.messages.size(), c.note ? 1u : 0u) << c.answer;
        if (c.note) {
            EXPECT_EQ(ui.messages[0].text, "Screen saver left off (use a value over zero to enable)");
            EXPECT_EQ(ui.messages[0].title, "Note");
            EXPECT_EQ(ui.messages[0].style, static_cast<unsigned>(kMbIconInformation));
        }
    }
}

TEST_F(DesktopOptionsTest, ANegativeAnswerIsRememberedSoTheNextEnableAsksNoMore) {
    inputBox.answers = {"-5"};
    options.enableScreenSaver();
    EXPECT_EQ(settings.ScreenSaver, -5);
    options.enableScreenSaver();
    EXPECT_EQ(inputBox.asked.size(), 1u);
    EXPECT_EQ(ui.messages.size(), 2u) << "each Enable says why the saver stays off";
    EXPECT_EQ(system.calls.back(), "15 0 3");
}

}  // namespace
}  // namespace tl
