#include "changer/apply_rules.h"

#include <gtest/gtest.h>

#include <set>
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
        // Within the screen's ratio 1.3333 +- 0.25, whatever the size.
        {1024, 768, 0.25, 1.5, kStretch, "the screen's own proportions"},
        {100, 75, 0.25, 1.5, kStretch, "matching proportions win however small the picture"},
        // Outside it: tiled when 1.5 times a side is still under the screen's, else centred.
        {1083, 1000, 0.25, 1.5, kCenter, "ratio 1.083 is just under the lower bound, and big"},
        {1584, 1000, 0.25, 1.5, kCenter, "ratio 1.584 is just over the upper bound, and big"},
        {541, 500, 0.25, 1.5, kTile, "ratio 1.082, and 1.5 x 500 = 750 < 768"},
        {400, 600, 0.25, 1.5, kTile, "1.5 x 400 = 600 < 1024"},
        {1000, 2000, 0.25, 1.5, kCenter, "tall and big in both directions"},
        // Other settings.
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
    const struct {
        int32_t width, height;
        double factor;
        int32_t newWidth, newHeight;
    } cases[] = {
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
    EXPECT_EQ(scaledSide(5, 0.5), 2) << "halves go to the even neighbour";
    EXPECT_EQ(scaledSide(7, 0.5), 4);
}

TEST(TrayTip, NamesTheEntryAndIsCutToWhatTheTrayHolds) {
    EXPECT_EQ(trayTip(""), "Tessaline - ");
    EXPECT_EQ(trayTip("C:\\Pictures\\sea.jpg"), "Tessaline - C:\\Pictures\\sea.jpg");
    const std::string longPath = "C:\\" + std::string(100, 'x') + ".jpg";
    EXPECT_EQ(trayTip(longPath), ("Tessaline - " + longPath).substr(0, 63));
    // 63 UTF-16 units: 12 for "Tessaline - ", 7 for "Москва ", 22 emoji of two each; the 23rd does not fit.
    std::string emoji;
    for (int i = 0; i < 30; ++i) {
        emoji += "\U0001F305";
    }
    EXPECT_EQ(trayTip("Москва " + emoji), "Tessaline - Москва " + emoji.substr(0, 4 * 22));
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
