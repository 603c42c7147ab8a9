#include "hotkey/switch_hot_key.h"

#include <gtest/gtest.h>

#include <tuple>

#include "app/settings.h"
#include "hotkey/fake_hot_key_platform.h"

namespace tl {
namespace {

constexpr HotKeyWindow kMainWindow = 0x4242;

TEST(SwitchHotKey, RegistersTheSettingsKeyAndSwitchesOnItsPressOnly) {
    test::FakeHotKeyPlatform platform;
    SwitchHotKey hotKey(platform);
    Settings settings;
    settings.HotKey = 83;
    settings.HotKeyMod = 3;
    int switches = 0;
    hotKey.registerFromSettings(kMainWindow, settings, [&] { ++switches; });
    ASSERT_EQ(platform.hotKeys.size(), 1u);
    EXPECT_EQ(std::tuple(platform.hotKeys[0].window, platform.hotKeys[0].modifiers, platform.hotKeys[0].key),
              std::tuple(kMainWindow, 3u, 83u))
        << "the setting goes to RegisterHotKey as it is";
    platform.press(3, 83);
    EXPECT_EQ(switches, 1);
    platform.deliver(kMainWindow, cRegHotKey::kWmHotKey, static_cast<std::uintptr_t>(-2), 0);
    platform.deliver(kMainWindow, cRegHotKey::kWmHotKey, 0x55, 0x00530003);
    EXPECT_EQ(switches, 1) << "other names do not switch";

    hotKey.registerKey(kMainWindow, 84, 2, [] {});
    ASSERT_EQ(platform.hotKeys.size(), 1u) << "registering again replaces the earlier key";
    EXPECT_EQ(platform.hotKeys[0].key, 84u);
    EXPECT_EQ(platform.atoms.size(), 1u);
    EXPECT_EQ(platform.routes.size(), 1u);
    hotKey.remove();
    EXPECT_TRUE(platform.hotKeys.empty() && platform.atoms.empty() && platform.routes.empty());
    EXPECT_NO_THROW(hotKey.remove()) << "removing twice does nothing";
}

TEST(SwitchHotKey, ACombinationHeldElsewhereLeavesTheProgramWithoutAKeyAndNoError) {
    test::FakeHotKeyPlatform platform;
    cRegHotKey someoneElse(platform);
    someoneElse.RegisterKey("theirs", 83, 3);
    SwitchHotKey hotKey(platform);
    EXPECT_NO_THROW(hotKey.registerKey(kMainWindow, 83, 3, [] {}));
    EXPECT_FALSE(hotKey.isRegistered());
    EXPECT_NO_THROW(hotKey.remove());
    EXPECT_EQ(platform.atoms.size(), 1u) << "only the other registrar's atom is left";
}

TEST(SwitchHotKey, TheSwitchHandlerMayRegisterAgain) {
    test::FakeHotKeyPlatform platform;
    SwitchHotKey hotKey(platform);
    int switches = 0;
    std::function<void()> onSwitch = [&] {
        ++switches;
        hotKey.registerKey(kMainWindow, 83, 3, onSwitch);
    };
    hotKey.registerKey(kMainWindow, 83, 3, onSwitch);
    platform.press(3, 83);
    platform.press(3, 83);
    EXPECT_EQ(switches, 2);
    EXPECT_TRUE(hotKey.isRegistered());
}

}  // namespace
}  // namespace tl
