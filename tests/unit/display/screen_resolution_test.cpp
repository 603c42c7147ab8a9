#include "display/screen_resolution.h"

#include <gtest/gtest.h>

#include "display/resolution_menu.h"
#include "support/fake_ui.h"

namespace tl {
namespace {

// Offers a fixed list of modes and records what is asked of it.
class FakeDisplay : public DisplayPlatform {
  public:
    explicit FakeDisplay(std::vector<DisplayMode> modes = {}) : modes_(std::move(modes)) {}

    std::optional<DisplayModeRecord> enumerateMode(uint32_t n) override {
        ++enumerations;
        if (n >= modes_.size()) {
            return std::nullopt;
        }
        const DisplayMode& m = modes_[n];
        DisplayModeRecord r{static_cast<uint32_t>(m.width),
                            static_cast<uint32_t>(m.height),
                            static_cast<uint32_t>(m.bitsPerPixel),
                            {static_cast<uint8_t>(n)}};
        return r;
    }
    long changeSettings(const DisplayModeRecord& mode, uint32_t flags) override {
        changes.push_back({mode.platformRecord.at(0), flags});
        return flags == kFullScreen ? answer : kChangeSuccessful;
    }
    std::optional<int32_t> deviceCaps(WindowHandle window, int index) override {
        lastWindow = window;
        if (failCaps) {
            return std::nullopt;
        }
        return index == kHorzRes ? 1024 : index == kVertRes ? 768 : index == kBitsPixel ? 16 : -1;
    }
    void broadcastDisplayChange(uintptr_t wParam, intptr_t lParam) override { broadcasts.push_back({wParam, lParam}); }
    bool exitWindows(uint32_t flags, uint32_t reason) override {
        exits.push_back({flags, reason});
        return true;
    }

    struct Change {
        uint8_t mode;
        uint32_t flags;
        bool operator==(const Change&) const = default;
    };
    long answer = kChangeSuccessful;
    bool failCaps = false;
    int enumerations = 0;
    WindowHandle lastWindow = nullptr;
    std::vector<Change> changes;
    std::vector<std::pair<uintptr_t, intptr_t>> broadcasts;
    std::vector<std::pair<uint32_t, uint32_t>> exits;

  private:
    std::vector<DisplayMode> modes_;
};

std::vector<std::string> captions(const std::vector<ResolutionMenuItem>& items) {
    std::vector<std::string> out;
    for (const auto& i : items) {
        out.push_back(i.caption + (i.tag.empty() ? "" : "/" + i.tag));
    }
    return out;
}

// What Wine's virtual desktop enumerates: nine sizes at 32 bits, then at 16, then at 8.
std::vector<DisplayMode> wineModes() {
    std::vector<DisplayMode> out;
    for (int16_t bits : {int16_t{32}, int16_t{16}, int16_t{8}}) {
        for (const auto& [w, h] : std::vector<std::pair<int16_t, int16_t>>{{320, 200},
                                                                           {320, 240},
                                                                           {400, 300},
                                                                           {512, 384},
                                                                           {640, 400},
                                                                           {640, 480},
                                                                           {768, 576},
                                                                           {800, 600},
                                                                           {1024, 768}}) {
            out.push_back({w, h, bits});
        }
    }
    return out;
}

TEST(ResolutionMenu, ItemsFollowTheModeSequences) {
    struct Case {
        const char* what;
        std::vector<DisplayMode> modes;
        std::vector<std::string> want;
    };
    const Case cases[] = {
        {"two depths, then a narrower one that is not deeper",
         {{640, 480, 8}, {800, 600, 8}, {640, 480, 16}, {800, 600, 16}, {640, 480, 8}},
         {"-/!", "640x480 (8)/0", "800x600 (8)/1", "-/!", "640x480 (16)/2", "800x600 (16)/3"}},
        {"a first mode of 4 bits ends the menu",
         {{640, 480, 4}, {640, 480, 8}, {800, 600, 16}},
         {"-/!", "640x480 (4)/0"}},
        {"a later mode of 4 bits is skipped as narrower and not deeper",
         {{800, 600, 8}, {640, 480, 4}, {1024, 768, 8}},
         {"-/!", "800x600 (8)/0", "1024x768 (8)/2"}},
        {"repeats right after their twin are left out",
         {{1024, 768, 32}, {1024, 768, 32}, {1024, 768, 32}, {1280, 1024, 32}},
         {"-/!", "1024x768 (32)/0", "1280x1024 (32)/3"}},
        {"a skipped mode leaves the one before it as the last",
         {{800, 600, 16}, {640, 480, 16}, {800, 600, 16}},
         {"-/!", "800x600 (16)/0"}},
        {"a twin further down comes back when it is not narrower",
         {{800, 600, 16}, {800, 600, 32}, {800, 600, 16}},
         {"-/!", "800x600 (16)/0", "-/!", "800x600 (32)/1", "800x600 (16)/2"}},
        {"deeper and narrower starts a new group",
         {{1024, 768, 8}, {640, 480, 32}},
         {"-/!", "1024x768 (8)/0", "-/!", "640x480 (32)/1"}},
        {"shallower and wider is kept without a separator",
         {{640, 480, 32}, {1024, 768, 16}},
         {"-/!", "640x480 (32)/0", "1024x768 (16)/1"}},
        {"Wine's modes",
         wineModes(),
         {"-/!", "320x200 (32)/0", "320x240 (32)/1", "400x300 (32)/2", "512x384 (32)/3", "640x400 (32)/4",
          "640x480 (32)/5", "768x576 (32)/6", "800x600 (32)/7", "1024x768 (32)/8", "1024x768 (16)/17",
          "1024x768 (8)/26"}},
        {"no modes", {}, {}},
        {"a first mode of zero width still counts", {{0, 0, 8}, {0, 480, 16}}, {"-/!", "0x0 (8)/0"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(captions(resolutionMenuItems(c.modes)), c.want) << c.what;
    }
}

TEST(ResolutionMenu, TheCurrentModeIsCheckedAndDisabled) {
    auto items = resolutionMenuItems({{1024, 768, 32}, {1024, 768, 16}, {800, 600, 16}, {1280, 1024, 16}});
    markCurrentMode(items, modeCaption(1024, 768, 16));
    for (const auto& item : items) {
        const bool current = item.caption == "1024x768 (16)";
        EXPECT_EQ(item.checked, current) << item.caption;
        EXPECT_EQ(item.enabled, !current) << item.caption;
    }
    markCurrentMode(items, modeCaption(1280, 1024, 16));
    EXPECT_TRUE(items.back().checked);
    EXPECT_TRUE(std::none_of(items.begin(), items.end() - 1, [](const auto& i) { return i.checked || !i.enabled; }));
}

TEST(ResolutionMenu, TagsNameModesSeparatorsNameNothing) {
    EXPECT_EQ(modeIndexOfTag("12"), 12);
    EXPECT_EQ(modeIndexOfTag("0"), 0);
    EXPECT_EQ(modeIndexOfTag("!"), -1);
    EXPECT_EQ(modeIndexOfTag(""), -1);
}

TEST(ScreenResolution, TableMaximaAndNames) {
    FakeDisplay display({{800, 600, 8}, {1280, 1024, 16}, {1024, 1200, 32}, {640, 480, 4}});
    test::FakeUi ui;
    clsScrRes res(display, ui);
    EXPECT_EQ(res.AvailableDisplayModes(), 4);
    EXPECT_EQ(res.MaxHRes(), 1280);
    EXPECT_EQ(res.MaxVRes(), 1200);
    EXPECT_EQ(res.MaxColorResolution(), 32);
    EXPECT_EQ(res.MaxColorResolutionString(), "True Color");
    EXPECT_EQ(res.GetDisplayMode(1), (DisplayMode{1280, 1024, 16}));
    EXPECT_EQ(res.GetDisplayMode(4), DisplayMode{});
    EXPECT_EQ(res.GetDisplayMode(-1), DisplayMode{});

    FakeDisplay none;
    clsScrRes empty(none, ui);
    EXPECT_EQ(empty.AvailableDisplayModes(), 0);
    EXPECT_EQ(empty.MaxHRes(), 0);
    EXPECT_EQ(empty.MaxColorResolution(), 0);
    EXPECT_EQ(empty.MaxColorResolutionString(), "");
    EXPECT_TRUE(resolutionMenuItems(empty.displayModes()).empty());
}

TEST(ScreenResolution, MaximaCompareAsSigned16BitNumbers) {
    // A width past 32767 reads negative and so never wins.
    FakeDisplay display({{-32000, 100, 8}, {640, -5, 16}});
    test::FakeUi ui;
    clsScrRes res(display, ui);
    EXPECT_EQ(res.MaxHRes(), 640);
    EXPECT_EQ(res.MaxVRes(), 100);
}

TEST(ScreenResolution, DepthNames) {
    const std::pair<int, const char*> cases[] = {{4, "16 Color"},
                                                 {8, "256 Color"},
                                                 {16, "High Color"},
                                                 {24, "True Color"},
                                                 {32, "True Color"},
                                                 {1, ""},
                                                 {15, ""},
                                                 {0, ""},
                                                 {64, ""}};
    for (const auto& [bits, want] : cases) {
        EXPECT_EQ(colorDepthName(bits), want) << bits;
    }
}

TEST(ScreenResolution, CurrentValuesComeFromTheWindowAndFailToZero) {
    FakeDisplay display;
    test::FakeUi ui;
    clsScrRes res(display, ui);
    int window = 0;
    EXPECT_EQ(res.CurrentHRes(&window), 1024);
    EXPECT_EQ(display.lastWindow, &window);
    EXPECT_EQ(res.CurrentVRes(&window), 768);
    EXPECT_EQ(res.CurrentColorResolution(&window), 16);
    EXPECT_EQ(res.CurrentColorResolutionString(&window), "High Color");
    display.failCaps = true;
    EXPECT_EQ(res.CurrentHRes(&window), 0);
    EXPECT_EQ(res.CurrentColorResolution(&window), 0);
    EXPECT_EQ(res.CurrentColorResolutionString(&window), "");
}

TEST(ScreenResolution, SetDisplayAppliesForGoodWhenTheSystemCan) {
    FakeDisplay display({{800, 600, 16}, {1024, 768, 32}});
    test::FakeUi ui;
    clsScrRes res(display, ui);
    res.SetDisplay(1);
    EXPECT_EQ(display.changes, (std::vector<FakeDisplay::Change>{{1, 4}, {1, 1}}));
    EXPECT_EQ(display.broadcasts, (std::vector<std::pair<uintptr_t, intptr_t>>{{42, 0}}));
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(display.exits.empty());
}

TEST(ScreenResolution, SetDisplayAsksToRestartWhenTheSystemNeedsIt) {
    for (int answer : {kIdYes, kIdNo}) {
        FakeDisplay display({{800, 600, 16}});
        display.answer = DisplayPlatform::kChangeRestart;
        test::FakeUi ui;
        ui.answers = {answer};
        clsScrRes res(display, ui);
        res.SetDisplay(0);
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0].text,
                  "You must restart your computer to apply these changes.\r\n\r\nDo you want to restart now?");
        EXPECT_EQ(ui.messages[0].title, "Screen Resolution");
        EXPECT_EQ(ui.messages[0].style, 0x1024u);
        EXPECT_EQ(display.changes.size(), 1u) << "nothing is made permanent";
        EXPECT_TRUE(display.broadcasts.empty());
        if (answer == kIdYes) {
            EXPECT_EQ(display.exits, (std::vector<std::pair<uint32_t, uint32_t>>{{2, 0}}));
        } else {
            EXPECT_TRUE(display.exits.empty());
        }
    }
}

TEST(ScreenResolution, SetDisplaySaysWhenTheSystemRefusesTheMode) {
    for (long refusal : {-2L, -1L, 2L, -5L}) {
        FakeDisplay display({{800, 600, 16}});
        display.answer = refusal;
        test::FakeUi ui;
        clsScrRes res(display, ui);
        res.SetDisplay(0);
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0].text, "That resolution and bit depth is not supported");
        EXPECT_EQ(ui.messages[0].title, "Error");
        EXPECT_EQ(ui.messages[0].style, 0x1030u);
        EXPECT_EQ(display.changes.size(), 1u);
        EXPECT_TRUE(display.broadcasts.empty());
        EXPECT_TRUE(display.exits.empty());
    }
}

TEST(ScreenResolution, SetDisplayOutsideTheTableDoesNothing) {
    FakeDisplay display({{800, 600, 16}});
    test::FakeUi ui;
    clsScrRes res(display, ui);
    res.SetDisplay(1);
    res.SetDisplay(-1);
    EXPECT_TRUE(display.changes.empty());
    EXPECT_TRUE(ui.messages.empty());
}

TEST(ScreenResolution, EachObjectEnumeratesAfresh) {
    FakeDisplay display({{800, 600, 16}, {1024, 768, 16}});
    test::FakeUi ui;
    clsScrRes first(display, ui);
    EXPECT_EQ(display.enumerations, 3) << "two modes and the answer that ends the list";
    clsScrRes second(display, ui);
    EXPECT_EQ(display.enumerations, 6);
}

}  // namespace
}  // namespace tl
