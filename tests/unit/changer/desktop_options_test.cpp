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

// The system's screen saver and desktop values, and the dialogs, recording what is asked of them. The
// shell's windows (icon text, hidden icons) are left to the tests under Wine, which give it a stand-in shell.
class FakeDesktop : public DesktopShell, public DesktopSystem, public InputBox, public SaveDialog, public BusyPointer {
  public:
    ShellWindow findWindow(const char*, const char*) override { return 0; }
    ShellWindow findChildWindow(ShellWindow, const char*) override { return 0; }
    ShellWindow firstChild(ShellWindow) override { return 0; }
    std::intptr_t sendMessage(ShellWindow, unsigned, std::uintptr_t, std::intptr_t) override { return 0; }
    void showWindow(ShellWindow, bool) override {}
    void updateWindow(ShellWindow) override {}
    void invalidateWindow(ShellWindow) override {}
    bool isSomethingMaximised() override { return false; }

    // SPI_SETSCREENSAVETIMEOUT writes the registry value, as the system keeps it; other calls fail.
    bool systemParameter(unsigned action, unsigned param, unsigned flags) override {
        calls.push_back(std::to_string(action) + " " + std::to_string(param) + " " + std::to_string(flags));
        if (action == kSpiSetScreenSaveTimeout) {
            values["ScreenSaveTimeout"] = std::to_string(param);
            return true;
        }
        return getSucceeds;
    }
    std::string desktopValue(const char* name) override { return values[name]; }

    std::string ask(std::string_view prompt, std::string_view title, std::string_view defaultText) override {
        asked.push_back(std::string(title) + "|" + std::string(prompt) + "|" + std::string(defaultText));
        return inputAnswer;
    }
    std::optional<std::string> ask(const FileDialogRequest& request) override {
        requests.push_back(request);
        if (whileOpen) {
            whileOpen();
        }
        return saveAnswer;
    }
    void show(bool busy) override { busyLog += busy ? "wait;" : "arrow;"; }

    bool getSucceeds = false;
    std::map<std::string, std::string> values;
    std::vector<std::string> calls;
    std::string inputAnswer;
    std::vector<std::string> asked;
    std::optional<std::string> saveAnswer;
    std::vector<FileDialogRequest> requests;
    std::function<void()> whileOpen;
    std::string busyLog;
};

class DesktopOptionsTest : public ::testing::Test {
  protected:
    DesktopOptionsTest()
        : options(settings, {fake, fake, fake, ui, fake, fs, fake}, [this](const std::string& path) {
              added.push_back(path);
          }) {
        settings.ScreenSaver = -1;
        settings.WallpaperDirectory = "C:\\Walls\\";
    }

    Settings settings;
    FakeDesktop fake;
    test::FakeUi ui;
    PosixFileSystem fs;
    std::vector<std::string> added;
    DesktopOptions options;
};

TEST(BrowserWallpaperName, MatchesTheBrowsersFileAtTheEndOfTheValue) {
    const std::pair<const char*, bool> cases[] = {
        {"C:\\WINDOWS\\Internet Explorer Wallpaper.bmp", true},
        // One character before the name still lies in the last n + 1.
        {"C:\\x\\MyInternet Explorer Wallpaper.bmp", true},
        {"  C:\\WINDOWS\\Internet Explorer Wallpaper.bmp  ", true},
        {"Internet Explorer Wallpaper.bmp", true},
        // Shorter than the name.
        {"nternet Explorer Wallpaper.bmp", false},
        // The name, but not at the end.
        {"C:\\Internet Explorer Wallpaper.bmp.old", false},
        {"C:\\Internet Explorer Wallpaper.bmp2", true},
        {"C:\\WINDOWS\\tl_current.bmp", false},
    };
    for (const auto& [value, expected] : cases) {
        EXPECT_EQ(isBrowserWallpaper(value), expected) << value;
    }
}

TEST_F(DesktopOptionsTest, TheBrowsersWallpaperIsOfferedForSavingCopiedAndAddedWhateverTrapIEWallpaperSays) {
    test::TempDir dir;
    dir.write("Internet Explorer Wallpaper.bmp", "BMpicture");
    settings.TrapIEWallpaper = false;
    fake.values["Wallpaper"] = " " + dir.file("Internet Explorer Wallpaper.bmp") + " ";
    fake.saveAnswer = dir.file("kept.bmp");
    int ticksWhileOpen = 0;
    fake.whileOpen = [&] {
        EXPECT_TRUE(options.catchInProgress());
        if (ticksWhileOpen++ == 0) {
            options.onTransTimer();  // the dialog's own message loop lets the timer tick: no second dialog
        }
    };
    options.onTransTimer();
    ASSERT_EQ(fake.requests.size(), 1u);
    EXPECT_EQ(fake.requests[0].initialDirectory, "C:\\Walls\\");
    EXPECT_EQ(dir.read("kept.bmp"), "BMpicture");
    EXPECT_EQ(added, std::vector<std::string>{dir.file("kept.bmp")});
    EXPECT_EQ(fake.busyLog, "wait;arrow;");
    EXPECT_FALSE(options.catchInProgress());

    // While the browser's file stays the wallpaper, the offer comes back on the next tick.
    options.onTransTimer();
    EXPECT_EQ(fake.requests.size(), 2u);
}

TEST_F(DesktopOptionsTest, ACancelledOrFailedCatchAddsNothing) {
    fake.values["Wallpaper"] = "C:\\nowhere\\Internet Explorer Wallpaper.bmp";
    options.onTransTimer();  // cancelled
    fake.saveAnswer = "";
    options.onTransTimer();  // no name
    EXPECT_EQ(fake.busyLog, "");
    fake.saveAnswer = "/nonexistent-dir/kept.bmp";
    options.onTransTimer();  // the copy fails
    EXPECT_TRUE(added.empty());
    EXPECT_TRUE(ui.messages.empty()) << "a failed copy is not reported";
    EXPECT_FALSE(options.catchInProgress());
}

TEST_F(DesktopOptionsTest, ScreenSaverTimeoutComesFromTheRegistryInMinutes) {
    const std::pair<const char*, int32_t> cases[] = {{"600", 10}, {"90", 2},   {"150", 2}, {"30", 0},
                                                     {"59", 1},   {"-120", 0}, {"junk", 0}};
    for (const auto& [seconds, minutes] : cases) {
        fake.values["ScreenSaveTimeout"] = seconds;
        EXPECT_EQ(options.getScreenSaverTimeout(), minutes) << seconds;
    }
    EXPECT_EQ(fake.calls.front(), "14 0 0");
    fake.getSucceeds = true;
    fake.values["ScreenSaveTimeout"] = "600";
    EXPECT_EQ(options.getScreenSaverTimeout(), 0) << "a call that succeeds gives 0";
}

TEST_F(DesktopOptionsTest, DisableRemembersAKnownTimeoutAndEnableRestoresItWithoutAsking) {
    fake.values["ScreenSaveTimeout"] = "600";
    options.disableScreenSaver();
    EXPECT_EQ(settings.ScreenSaver, -1) << "an unknown timeout stays unknown";
    EXPECT_EQ(fake.calls.back(), "15 0 3");

    settings.ScreenSaver = 0;
    fake.values["ScreenSaveTimeout"] = "600";
    options.disableScreenSaver();
    EXPECT_EQ(settings.ScreenSaver, 10);
    EXPECT_EQ(fake.values["ScreenSaveTimeout"], "0");
    options.enableScreenSaver();
    EXPECT_TRUE(fake.asked.empty());
    EXPECT_EQ(fake.calls.back(), "15 600 3");
    EXPECT_EQ(settings.ScreenSaver, 10);
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
        fake.asked.clear();
        fake.inputAnswer = c.answer;
        ui.messages.clear();
        options.enableScreenSaver();
        ASSERT_EQ(fake.asked.size(), 1u) << c.answer;
        EXPECT_EQ(settings.ScreenSaver, c.stored) << c.answer;
        EXPECT_EQ(fake.calls.back(), "15 " + std::to_string(c.seconds) + " 3") << c.answer;
        EXPECT_EQ(ui.messages.size(), c.note ? 1u : 0u) << c.answer;
    }
    // The negative answer is remembered: the next Enable asks no more, and says again why.
    options.enableScreenSaver();
    EXPECT_EQ(fake.asked.size(), 1u);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, "Screen saver left off (use a value over zero to enable)");
    EXPECT_EQ(fake.calls.back(), "15 0 3");
}

}  // namespace
}  // namespace tl
