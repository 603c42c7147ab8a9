// The display modes menu on EnumDisplaySettingsA: Wine offers 320x200 to 1024x768 at 32, 16 and 8 bits.
#include <gtest/gtest.h>

#include "app/resource_ids.h"
#include "base/unique_handle_win.h"
#include "display/resolution_menu_win.h"
#include "display/screen_resolution_win.h"
#include "unit/support/fake_ui.h"

namespace tl::wintest {
namespace {

TEST(DisplayModes, TheSubmenuListsTheSystemsModesAndChoosingTheCurrentOneChangesNothing) {
    Win32DisplayPlatform platform;
    test::FakeUi ui;
    clsScrRes res(platform, ui);
    ASSERT_GT(res.AvailableDisplayModes(), 0);
    const std::vector<DisplayMode> modes = res.displayModes();
    for (int bits : {32, 16, 8}) {
        EXPECT_NE(std::find(modes.begin(), modes.end(), DisplayMode{1024, 768, static_cast<int16_t>(bits)}),
                  modes.end())
            << bits;
    }
    EXPECT_EQ(res.MaxColorResolutionString(), "True Color");
    unique_hwnd window(::CreateWindowExA(0, "STATIC", "modes", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                         nullptr, nullptr));
    const int width = ::GetSystemMetrics(SM_CXSCREEN);
    const int height = ::GetSystemMetrics(SM_CYSCREEN);
    EXPECT_EQ(res.CurrentHRes(window.get()), width);
    EXPECT_EQ(res.CurrentVRes(window.get()), height);
    EXPECT_EQ(res.CurrentColorResolution(window.get()), 32);

    ResolutionMenu menu(platform, ui);
    menu.build();
    unique_hmenu submenu(::CreatePopupMenu());
    // Filled on every right click of the tray icon: the items are not doubled.
    menu.fill(submenu.get(), window.get());
    menu.fill(submenu.get(), window.get());
    const int count = ::GetMenuItemCount(submenu.get());
    ASSERT_EQ(count, static_cast<int>(menu.items().size()));
    const std::vector<ResolutionMenuItem> want = resolutionMenuItems(modes);
    ASSERT_EQ(want.size(), menu.items().size());
    const std::string current = modeCaption(width, height, 32);
    int checked = 0;
    for (int k = 0; k < count; ++k) {
        const UINT state = ::GetMenuState(submenu.get(), static_cast<UINT>(k), MF_BYPOSITION);
        const UINT id = IDM_RESOLUTION_FIRST + static_cast<UINT>(k);
        const ResolutionMenuItem& item = menu.items()[static_cast<size_t>(k)];
        EXPECT_EQ(::GetMenuItemID(submenu.get(), k), id);
        EXPECT_EQ(item.caption + " " + item.tag,
                  want[static_cast<size_t>(k)].caption + " " + want[static_cast<size_t>(k)].tag);
        if (item.isSeparator()) {
            EXPECT_TRUE(state & MF_SEPARATOR) << k;
            EXPECT_TRUE(menu.onCommand(id)) << "the command is the menu's, and does nothing";
            continue;
        }
        char text[64] = {};
        ::GetMenuStringA(submenu.get(), static_cast<UINT>(k), text, sizeof text, MF_BYPOSITION);
        EXPECT_EQ(item.caption, text);
        const bool isCurrent = item.caption == current;
        EXPECT_EQ((state & MF_CHECKED) != 0, isCurrent) << text;
        EXPECT_EQ((state & MF_GRAYED) != 0, isCurrent) << text;
        if (isCurrent) {
            ++checked;
            EXPECT_TRUE(menu.onCommand(id));
        }
    }
    EXPECT_EQ(checked, 1) << "the current mode " << current << " is marked once";
    EXPECT_FALSE(menu.onCommand(IDM_RESOLUTION_FIRST - 1));
    EXPECT_TRUE(ui.messages.empty()) << ui.messages[0].text;
    EXPECT_EQ(::GetSystemMetrics(SM_CXSCREEN), width);
    EXPECT_EQ(::GetSystemMetrics(SM_CYSCREEN), height);
}

}  // namespace
}  // namespace tl::wintest
