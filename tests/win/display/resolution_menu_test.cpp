#include <gtest/gtest.h>

#include "../../unit/support/fake_ui.h"
#include "app/resource_ids.h"
#include "base/ui.h"
#include "base/unique_handle_win.h"
#include "display/resolution_menu_win.h"
#include "display/screen_resolution_win.h"

namespace tl::wintest {
namespace {

std::string menuText(HMENU menu, int position) {
    char buf[64] = {};
    ::GetMenuStringA(menu, static_cast<UINT>(position), buf, sizeof buf, MF_BYPOSITION);
    return buf;
}

TEST(DisplayModes, TheClassEnumeratesTheModesWineOffers) {
    Win32DisplayPlatform platform;
    test::FakeUi ui;
    clsScrRes res(platform, ui);
    ASSERT_GT(res.AvailableDisplayModes(), 0);
    std::vector<DisplayMode> modes = res.displayModes();
    for (int bits : {32, 16, 8}) {
        EXPECT_NE(std::find(modes.begin(), modes.end(), DisplayMode{1024, 768, static_cast<int16_t>(bits)}),
                  modes.end())
            << "1024x768 at " << bits << " bits";
    }
    EXPECT_GE(res.MaxHRes(), 1024);
    EXPECT_GE(res.MaxVRes(), 768);
    EXPECT_EQ(res.MaxColorResolution(), 32);
    EXPECT_EQ(res.MaxColorResolutionString(), "True Color");

    unique_hwnd window(::CreateWindowExA(0, "STATIC", "modes", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                         nullptr, nullptr));
    EXPECT_EQ(res.CurrentHRes(window.get()), ::GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(res.CurrentVRes(window.get()), ::GetSystemMetrics(SM_CYSCREEN));
    EXPECT_EQ(res.CurrentColorResolution(window.get()), 32);
    EXPECT_EQ(res.CurrentColorResolutionString(window.get()), "True Color");
    EXPECT_TRUE(ui.messages.empty());
}

TEST(DisplayModes, TheSubmenuListsTheModesAndMarksTheCurrentOne) {
    Win32DisplayPlatform platform;
    test::FakeUi ui;
    ResolutionMenu menu(platform, ui);
    menu.build();
    ASSERT_FALSE(menu.items().empty());

    unique_hwnd window(::CreateWindowExA(0, "STATIC", "modes", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                         nullptr, nullptr));
    unique_hmenu submenu(::CreatePopupMenu());
    // Filled twice, as the tray menu is on every right click: the items are not doubled.
    menu.fill(submenu.get(), window.get());
    menu.fill(submenu.get(), window.get());
    const int count = ::GetMenuItemCount(submenu.get());
    ASSERT_EQ(count, static_cast<int>(menu.items().size()));

    const std::string current = modeCaption(::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN), 32);
    int checked = 0;
    for (int k = 0; k < count; ++k) {
        const UINT state = ::GetMenuState(submenu.get(), static_cast<UINT>(k), MF_BYPOSITION);
        EXPECT_EQ(::GetMenuItemID(submenu.get(), k), static_cast<UINT>(IDM_RESOLUTION_FIRST + k));
        if (menu.items()[static_cast<size_t>(k)].isSeparator()) {
            EXPECT_TRUE(state & MF_SEPARATOR) << "item " << k;
            continue;
        }
        const std::string text = menuText(submenu.get(), k);
        EXPECT_EQ(text, menu.items()[static_cast<size_t>(k)].caption);
        const bool isCurrent = text == current;
        EXPECT_EQ((state & MF_CHECKED) != 0, isCurrent) << text;
        EXPECT_EQ((state & MF_GRAYED) != 0, isCurrent) << text;
        checked += isCurrent ? 1 : 0;
    }
    EXPECT_EQ(checked, 1) << "the current mode " << current << " is marked once";
    // Wine lists 320x200 to 1024x768 at 32 bits, then the same at 16 and at 8: only the widest of the
    // shallower modes get in, after the deepest group.
    const std::vector<ResolutionMenuItem> want = resolutionMenuItems(clsScrRes(platform, ui).displayModes());
    ASSERT_EQ(want.size(), menu.items().size());
    for (size_t k = 0; k < want.size(); ++k) {
        EXPECT_EQ(menu.items()[k].caption, want[k].caption);
        EXPECT_EQ(menu.items()[k].tag, want[k].tag);
    }
    EXPECT_EQ(menuText(submenu.get(), count - 1), "1024x768 (8)");
    EXPECT_EQ(menuText(submenu.get(), count - 2), "1024x768 (16)");
}

TEST(DisplayModes, ChoosingASeparatorOrTheCurrentModeLeavesTheDisplayAsItWas) {
    Win32DisplayPlatform platform;
    test::FakeUi ui;
    ResolutionMenu menu(platform, ui);
    menu.build();
    ASSERT_TRUE(menu.items()[0].isSeparator());
    EXPECT_TRUE(menu.onCommand(IDM_RESOLUTION_FIRST));
    EXPECT_FALSE(menu.onCommand(IDM_RESOLUTION_FIRST - 1));
    EXPECT_FALSE(menu.onCommand(IDM_RESOLUTION_LAST + 1));
    EXPECT_TRUE(menu.onCommand(IDM_RESOLUTION_LAST)) << "an id of the range without an item does nothing";

    const int width = ::GetSystemMetrics(SM_CXSCREEN);
    const int height = ::GetSystemMetrics(SM_CYSCREEN);
    const std::string current = modeCaption(width, height, 32);
    for (size_t k = 0; k < menu.items().size(); ++k) {
        if (menu.items()[k].caption == current) {
            EXPECT_TRUE(menu.onCommand(static_cast<UINT>(IDM_RESOLUTION_FIRST + k)));
        }
    }
    EXPECT_TRUE(ui.messages.empty()) << (ui.messages.empty() ? "" : ui.messages[0].text);
    EXPECT_EQ(::GetSystemMetrics(SM_CXSCREEN), width);
    EXPECT_EQ(::GetSystemMetrics(SM_CYSCREEN), height);
}

}  // namespace
}  // namespace tl::wintest
