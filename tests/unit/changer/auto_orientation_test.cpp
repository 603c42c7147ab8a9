#include "changer/auto_orientation.h"

#include <gtest/gtest.h>

#include "app/settings.h"

namespace tl {
namespace {

struct AutoCase {
    int width;
    int height;
    double tolerance;
    Orientation want;
};

TEST(ChooseAutoOrientation, StretchesMatchingProportionsTilesSmallPicturesCentresTheRest) {
    // A 1024 x 768 screen (ratio 1.333...) with the default half ratio 1.5.
    const AutoCase cases[] = {
        {800, 600, 0.25, kStretch},    // the screen's own proportions
        {1300, 1000, 0.25, kStretch},  // 1.3, inside the tolerance
        {1084, 1000, 0.25, kStretch},  // 1.084, just above 1.0833
        {1083, 1000, 0.25, kCenter},   // 1.083, just below, and too large to tile
        {158, 100, 0.25, kStretch},    // 1.58, still inside however small it is
        {400, 600, 0.25, kTile},       // 0.667: 1.5 x 400 = 600 < 1024
        {1000, 2000, 0.25, kCenter},   // tall and large
        {4000, 1000, 0.25, kCenter},   // wide and large: 1.5 x 1000 = 1500 >= 768, 6000 >= 1024
        {1366, 1024, 0.0, kCenter},    // tolerance 0: 1.334 is not the screen's ratio
        {2048, 1536, 0.0, kStretch},   // tolerance 0: exactly the screen's ratio
    };
    for (const auto& c : cases) {
        Settings s;
        s.RatioTolerance = c.tolerance;
        s.HalfRatio = 1.5;
        EXPECT_EQ(chooseAutoOrientation(c.width, c.height, 1024, 768, s), c.want)
            << c.width << " x " << c.height << " with tolerance " << c.tolerance;
    }
}

}  // namespace
}  // namespace tl
