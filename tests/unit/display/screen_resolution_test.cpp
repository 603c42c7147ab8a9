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
        if (n >= modes_.size()) {
            return std::nullopt;
        }
        const DisplayMode& m = modes_[n];
        return DisplayModeRecord{uint32_t(m.width), uint32_t(m.height), uint32_t(m.bitsPerPixel), {uint8_t(n)}};
    }
    long changeSettings(const DisplayModeRecord& mode, uint32_t flags) override {
        changes.push_back({mode.platformRecord.at(0), flags});
        return flags == kFullScreen ? answer : kChangeSuccessful;
    }
    std::optional<int32_t> deviceCaps(WindowHandle, int) override { return std::nullopt; }
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
    const std::pair<int16_t, int16_t> sizes[] = {{320, 200}, {320, 240}, {400, 300}, {512, 384}, {640, 400},
                                                 {640, 480}, {768, 576}, {800, 600}, {1024, 768}};
    std::vector<DisplayMode> out;
    for (int16_t bits : {int16_t{32}, int16_t{16}, int16_t{8}}) {
        for (const auto& [w, h] : sizes) {
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

TEST(ScreenResolution, SetDisplayTriesTheModeThenAppliesItForGoodOrSaysWhy) {
    using Messages = std::vector<test::FakeUi::Message>;
    const Messages restart = {
        {"You must restart your computer to apply these changes.\r\n\r\nDo you want to restart now?",
         "Screen Resolution", 0x1024}};
    const Messages refused = {{"That resolution and bit depth is not supported", "Error", 0x1030}};
    using Calls = std::vector<std::pair<uintptr_t, intptr_t>>;
    const struct {
        const char* what;
        long answer;  // to the full-screen test
        int userSays;
        std::vector<FakeDisplay::Change> changes;
        Calls broadcasts;
        Messages messages;
        std::vector<std::pair<uint32_t, uint32_t>> exits;
    } cases[] = {
        {"the system can", DisplayPlatform::kChangeSuccessful, kIdOk, {{1, 4}, {1, 1}}, {{42, 0}}, {}, {}},
        {"restart, yes", DisplayPlatform::kChangeRestart, kIdYes, {{1, 4}}, {}, restart, {{2, 0}}},
        {"restart, no", DisplayPlatform::kChangeRestart, kIdNo, {{1, 4}}, {}, restart, {}},
        {"refused", -2, kIdOk, {{1, 4}}, {}, refused, {}},
        {"refused otherwise", 2, kIdOk, {{1, 4}}, {}, refused, {}},
    };
    for (const auto& c : cases) {
        FakeDisplay display({{800, 600, 16}, {1024, 768, 32}});
        display.answer = c.answer;
        test::FakeUi ui;
        ui.answers = {c.userSays};
        clsScrRes res(display, ui);
        res.SetDisplay(2);
        res.SetDisplay(-1);
        EXPECT_TRUE(display.changes.empty()) << "outside the table nothing is done";
        res.SetDisplay(1);
        EXPECT_EQ(display.changes, c.changes) << c.what;
        EXPECT_EQ(display.broadcasts, c.broadcasts) << c.what;
        EXPECT_EQ(ui.messages, c.messages) << c.what;
        EXPECT_EQ(display.exits, c.exits) << c.what;
    }
}

}  // namespace
}  // namespace tl
