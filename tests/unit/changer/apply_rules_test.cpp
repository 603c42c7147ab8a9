#include "changer/apply_rules.h"

#include <gtest/gtest.h>

#include <set>
#include <span>
#include <string>
#include <vector>

#include "changer/commands.h"
#include "changer/tray_rules.h"

namespace tl {
namespace {

struct AutoCase {
    int32_t width, height;
    double tolerance, halfRatio;
    Orientation expected;
    const char* why;
};

TEST(ChooseAutoOrientation, StretchesMatchingProportionsTilesSmallPicturesCentresTheRest) {
    const AutoCase cases[] = {
        {1024, 768, 0.25, 1.5, kStretch, "the screen's own proportions"},
        {100, 75, 0.25, 1.5, kStretch, "matching proportions win however small the picture"},
        {1300, 1000, 0.25, 1.5, kStretch, "ratio 1.3 lies within 1.0833..1.5833"},
        {1083, 1000, 0.25, 1.5, kCenter, "ratio 1.083 is just under the lower bound, and big"},
        {1584, 1000, 0.25, 1.5, kCenter, "ratio 1.584 is just over the upper bound, and big"},
        {541, 500, 0.25, 1.5, kTile, "ratio 1.082, and 1.5 x 500 = 750 < 768"},
        {400, 600, 0.25, 1.5, kTile, "1.5 x 400 = 600 < 1024"},
        {1000, 2000, 0.25, 1.5, kCenter, "tall and big in both directions"},
        {3000, 1000, 0.25, 1.5, kCenter, "wide and big in both directions"},
        {800, 600, 0.0, 1.5, kStretch, "tolerance 0: equal ratios still stretch"},
        {1023, 768, 0.0, 1.5, kCenter, "tolerance 0: any other ratio does not (and 1.5 x 1023 >= 1024)"},
        {1000, 700, 0.0, 1.0, kTile, "halfRatio 1: tiled when under the screen in either direction"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(chooseAutoOrientation(c.width, c.height, 1024, 768, c.tolerance, c.halfRatio), c.expected)
            << c.width << "x" << c.height << ": " << c.why;
    }
}

TEST(ScaleFactor, FitsThePictureIntoTheScreenKeepingItsProportions) {
    const ScreenSize screen{1024, 768};
    struct Case {
        int32_t width, height;
        double factor;
        int32_t newWidth, newHeight;
    };
    const Case cases[] = {
        {800, 600, 1.28, 1024, 768},    // both factors 1.28
        {2000, 500, 0.512, 1024, 256},  // min(1.536, 0.512)
        {500, 2000, 0.384, 192, 768},   // min(0.384, 2.048)
        {6000, 4000, 0.170666666666666667, 1024, 683},
    };
    for (const auto& c : cases) {
        const double f = scaleFactor(c.width, c.height, screen);
        EXPECT_DOUBLE_EQ(f, c.factor) << c.width << "x" << c.height;
        EXPECT_EQ(scaledSide(c.width, f), c.newWidth) << c.width << "x" << c.height;
        EXPECT_EQ(scaledSide(c.height, f), c.newHeight) << c.width << "x" << c.height;
    }
    EXPECT_DOUBLE_EQ(scaleFactor(0, 0, screen), 768.0) << "unknown sides are taken as 1";
}

TEST(ScaledSide, RoundsHalvesToEven) {
    EXPECT_EQ(scaledSide(5, 0.5), 2);  // 2.5
    EXPECT_EQ(scaledSide(7, 0.5), 4);  // 3.5
    EXPECT_EQ(scaledSide(3, 0.5), 2);  // 1.5
}

TEST(TrayTip, NamesTheEntryAndIsCutToWhatTheTrayHolds) {
    EXPECT_EQ(trayTip(""), "Tessaline - ");
    EXPECT_EQ(trayTip("C:\\Pictures\\sea.jpg"), "Tessaline - C:\\Pictures\\sea.jpg");
    const std::string longPath = "C:\\" + std::string(100, 'x') + ".jpg";
    const std::string tip = trayTip(longPath);
    EXPECT_EQ(tip.size(), 63u);
    EXPECT_EQ(tip, ("Tessaline - " + longPath).substr(0, 63));
}

TEST(TrayMessage, TurnsTheTrayMouseMessageIntoAnEvent) {
    EXPECT_EQ(trayMessage(513), TrayEvent::LeftButtonDown);
    EXPECT_EQ(trayMessage(515), TrayEvent::DoubleClick);
    EXPECT_EQ(trayMessage(516), TrayEvent::RightButtonDown);
    for (long other : {0L, 512L, 514L, 517L, 518L, 519L, 123L}) {
        EXPECT_EQ(trayMessage(other), TrayEvent::None) << other;
    }
}

std::vector<std::string> captions(std::span<const MenuItemDef> items, int depth) {
    std::vector<std::string> out;
    for (const auto& i : items) {
        if (i.depth == depth) {
            out.push_back(i.caption);
        }
    }
    return out;
}

TEST(Menus, TrayMenuHoldsEveryItemInOrder) {
    EXPECT_EQ(
        captions(trayMenuItems(), 0),
        (std::vector<std::string>{"Next", "Previous", "Switch Orientation", "Remove from list", "Delete file", "-",
                                  "Delay", "Pause", "Random switching", "Pick different list", "-",
                                  "Display Properties", "Start Screensaver", "Show panel...", "About...", "Quit"}));
    std::vector<std::string> sub;
    bool inDisplay = false;
    for (const auto& i : trayMenuItems()) {
        if (i.depth == 0) {
            inDisplay = i.id == mnuTrayDeskop;
        } else if (inDisplay) {
            sub.push_back(i.caption);
        }
    }
    EXPECT_EQ(sub, (std::vector<std::string>{"Show...", "Hide desktop icons", "-", "Disable Screensaver",
                                             "Enable Screensaver", "-", "Change Resolution"}));
    EXPECT_STREQ(findMenuItem(mnuTraySOTiled)->caption, "Tiled");
    EXPECT_STREQ(findMenuItem(mnuTraySOScaled)->caption, "Scaled");
}

TEST(Menus, OptionsAndFileMenusHoldEveryItemInOrder) {
    EXPECT_EQ(captions(optionsMenuItems(), 0),
              (std::vector<std::string>{"Delay (x)...", "Default wallpaper save directory", "Icon text colour...",
                                        "Tracked folders...", "Change paper hotkey...", "-", "Pause",
                                        "Random Switching", "Auto-shutdown", "Auto show on desktop",
                                        "Use Active Desktop", "SmartSwitch", "Transparent icon text",
                                        "Trap IE Wallpaper", "Hide desktop icons", "-", "About..."}));
    EXPECT_EQ(captions(fileMenuItems(), 0),
              (std::vector<std::string>{"Delete", "Rename", "-", "Show preview", "Remove"}));
}

TEST(Menus, IdsAreUniqueAndInTheChangersRange) {
    std::set<int> ids;
    for (auto table : {fileMenuItems(), optionsMenuItems(), trayMenuItems()}) {
        for (const auto& i : table) {
            EXPECT_TRUE(ids.insert(i.id).second) << i.name;
            EXPECT_GE(i.id, 1000) << i.name;
            EXPECT_LT(i.id, mnuListItemFirst) << i.name;
        }
    }
}

}  // namespace
}  // namespace tl
