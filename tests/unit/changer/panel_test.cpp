// frmMain's panel: tray or panel, its buttons, the tracker's wiring, the save directory, the layout.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"
#include "changer/panel_layout.h"

namespace tl::test {
namespace {

class Panel : public ::testing::Test, public ChangerFixture {
  protected:
    void SetUp() override { load({"C:\\p\\a.jpg\t1", "C:\\p\\b.jpg\t0", "#C:\\p"}); }
};

TEST_F(Panel, TheProgramLivesEitherInTheTrayOrOnThePanel) {
    form.onFormResize(true, FormWindowState::Normal);
    EXPECT_EQ(fake.log, (std::vector<std::string>{"layout panel", "tray remove"}));
    EXPECT_FALSE(fake.timerEnabled);
    EXPECT_EQ(app.settings.MainMode, 0);

    fake.log.clear();
    form.onFormResize(true, FormWindowState::Minimized);
    EXPECT_EQ(fake.log, std::vector<std::string>{"tray add Tessaline - C:\\p\\a.jpg"});
    EXPECT_TRUE(fake.timerEnabled);
    EXPECT_EQ(app.settings.MainMode, 1);
    EXPECT_TRUE(form.menus().checked(mnuTraySOTiled)) << "the tray's orientation mark follows orType";

    form.onFormResize(true, FormWindowState::Maximized);
    EXPECT_FALSE(fake.timerEnabled) << "a maximised panel is the panel";
    form.onMenuCommand(mnuPaused);
    fake.log.clear();
    form.onFormResize(false, FormWindowState::Minimized);
    EXPECT_FALSE(fake.timerEnabled) << "paused: the clock stays off";
    EXPECT_EQ(fake.icon, TrayIconKind::Paused);

    fake.log.clear();
    form.onFormResize(false, FormWindowState::Normal);
    EXPECT_TRUE(fake.log.empty()) << "a hidden panel leaves the tray as it is";
}

TEST_F(Panel, TheTrackerFollowsTheListAndUseTracker) {
    EXPECT_TRUE(form.trackerLoaded());
    writeList({"C:\\q\\x.jpg\t0", "#C:\\q"}, "Other.wall");
    form.readListFile(dir.path() + "\\Other.wall");
    EXPECT_EQ(fake.log, (std::vector<std::string>{"unload tracker", "load tracker 1"}))
        << "the old list's folders go before the new ones come";

    ChangerFixture off;
    off.app.settings.UseTracker = false;
    off.load({"C:\\q\\x.jpg\t0", "#C:\\q"}, true);
    EXPECT_EQ(off.fake.count("load tracker"), 0) << "UseTracker off: the folders are not watched";
    off.fake.log.clear();
    off.form.onMenuCommand(mnuTrackedFolders);
    off.form.onMenuCommand(mnuTrackedFolders);
    EXPECT_EQ(off.fake.log,
              (std::vector<std::string>{"load tracker 1", "tracker ignores", "show tracker", "show tracker"}));
    off.fake.log.clear();
    off.form.onMenuCommand(mnuTrayQuit);
    EXPECT_EQ(off.fake.count("unload tracker"), 1);
}

TEST_F(Panel, TheDefaultSaveDirectoryIsChosenFromTheCurrentDrivesRoot) {
    app.settings.WallpaperDirectory = "";
    form.onMenuCommand(mnuSetDefaultSaveDir);
    EXPECT_EQ(fake.log,
              std::vector<std::string>{"browse Select a folder: | Select a folder to save the wallpaper to | D:\\"});
    EXPECT_EQ(app.settings.WallpaperDirectory, dir.path() + "\\") << "cancelled: the program directory stands";
    fake.folderAnswer = "E:\\Walls";
    form.onMenuCommand(mnuSetDefaultSaveDir);
    EXPECT_EQ(app.settings.WallpaperDirectory, "E:\\Walls");
}

bool overlap(const LayoutRect& a, const LayoutRect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

bool inside(const LayoutRect& inner, const LayoutRect& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

TEST(PanelLayout, EveryControlIsWholeAndApartAtEachScaleAndSize) {
    for (int dpi : {96, 120, 144, 192}) {
        const PanelSize least = minimumPanelSize(dpi);
        const PanelSize first = defaultPanelSize(dpi);
        for (PanelSize size : {first, least, PanelSize{least.width / 2, least.height / 2}, PanelSize{2000, 1500}}) {
            const PanelLayout l = layoutPanel(size.width, size.height, dpi);
            const PanelSize used{std::max(size.width, least.width), std::max(size.height, least.height)};
            const std::string where =
                std::to_string(dpi) + " dpi, " + std::to_string(size.width) + " x " + std::to_string(size.height);
            EXPECT_EQ(l.list1.width, used.width - (14 * dpi + 48) / 96) << where;
            EXPECT_EQ(l.list1.height, used.height - (134 * dpi + 48) / 96) << where;
            std::vector<LayoutRect> parts = {l.list1, l.orType, l.prevFrame, l.preview};
            parts.insert(parts.end(), l.buttons.begin(), l.buttons.end());
            const LayoutRect client{0, 0, used.width, used.height};
            for (size_t i = 0; i < parts.size(); ++i) {
                EXPECT_TRUE(inside(parts[i], client)) << where << ", part " << i;
                EXPECT_GT(parts[i].width, 0) << where << ", part " << i;
                for (size_t j = i + 1; j < parts.size(); ++j) {
                    EXPECT_FALSE(overlap(parts[i], parts[j])) << where << ", parts " << i << " and " << j;
                }
            }
            for (size_t k = 0; k < 3; ++k) {
                EXPECT_TRUE(inside(l.captions[k], l.prevFrame)) << where;
                EXPECT_TRUE(inside(l.values[k], l.prevFrame)) << where;
                EXPECT_FALSE(overlap(l.captions[k], l.values[k])) << where;
            }
            EXPECT_GE(l.buttons[0].width, panelIconSize(dpi)) << where;
        }
    }
}

}  // namespace
}  // namespace tl::test
