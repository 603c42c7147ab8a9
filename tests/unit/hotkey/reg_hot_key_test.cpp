#include "hotkey/reg_hot_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include <memory>
#include <string>
#include <vector>

#include "base/object_error.h"
#include "hotkey/fake_hot_key_platform.h"

namespace tl {
namespace {

using ::testing::ElementsAre;

constexpr HotKeyWindow kWindow = 0x1234;

struct Press {
    std::string name;
    uint32_t modifiers;
    uint32_t key;
    bool operator==(const Press&) const = default;
};

std::vector<std::string> names(const cRegHotKey& keys) {
    std::vector<std::string> result;
    for (int i = 1; i <= keys.count(); ++i) {
        result.push_back(keys.record(i).name);
    }
    return result;
}

using Fields = std::tuple<uint32_t, std::string, std::string>;
Fields fields(const ObjectError& e) {
    return {e.number(), e.source(), e.description()};
}

class RegHotKeyTest : public ::testing::Test {
  protected:
    RegHotKeyTest() {
        hk.HotKeyPress = [this](const std::string& name, uint32_t modifiers, uint32_t key) {
            presses.push_back({name, modifiers, key});
        };
    }

    // The error the call raises; fails the test when it raises none.
    template <typename F>
    ObjectError errorOf(F&& call) {
        try {
            call();
        } catch (const ObjectError& e) {
            return e;
        }
        ADD_FAILURE() << "no error was raised";
        return ObjectError(0, "", "");
    }

    test::FakeHotKeyPlatform platform;
    cRegHotKey hk{platform};
    std::vector<Press> presses;
};

TEST_F(RegHotKeyTest, RefusedNamesAreReportedBeforeAnyAtomIsMade) {
    hk.Attach(kWindow);
    hk.RegisterKey(std::string(32, 'k'), 0x53, 3);
    hk.RegisterKey("switch", 0x54, 3);
    hk.RegisterKey("Switch", 0x55, 2);
    EXPECT_THAT(names(hk), ElementsAre(std::string(32, 'k'), "switch", "Switch")) << "names differ in case";

    platform.log.clear();
    EXPECT_EQ(fields(errorOf([&] { hk.RegisterKey(std::string(33, 'k'), 0x56, 3); })),
              Fields(0x8004041Bu, "tessaline.cRegHotKey", "Key Name too long (max 32 characters)."));
    EXPECT_EQ(fields(errorOf([&] { hk.RegisterKey("switch", 0x56, 2); })),
              Fields(0x8004041Cu, "tessaline.cRegHotKey", "The Key Name 'switch' is already registered."));
    EXPECT_TRUE(platform.log.empty()) << "no atom may be made for a refused name";

    EXPECT_EQ(fields(errorOf([&] { hk.UnregisterKey("SWITCH"); })),
              Fields(0x80040419u, "tessaline.cRegHotKey", "No hot key registered under the name 'SWITCH'"));
    EXPECT_THROW(hk.IndexOfKey("other"), ObjectError);
    EXPECT_EQ(hk.count(), 3);
}

TEST_F(RegHotKeyTest, AFailedRegistrationDeletesItsAtomAndReportsTheSystemsText) {
    cRegHotKey other(platform);
    other.RegisterKey("theirs", 0x53, 3);
    hk.RegisterKey("first", 0x41, 2);
    const auto atomsBefore = platform.atoms;
    // The error is read before the atom is deleted (which would reset it).
    EXPECT_EQ(
        fields(errorOf([&] { hk.RegisterKey("switch", 0x53, 3); })),
        Fields(0x8004041Bu, "tessaline.cRegHotKey", "Failed to Register Hot Key [Hot key is already registered.\r\n]"));
    EXPECT_EQ(platform.atoms, atomsBefore) << "the atom made for the failed key must be deleted";
    EXPECT_THAT(names(hk), ElementsAre("first"));

    platform.failAddAtom = true;
    platform.errorTexts[8] = "Not enough memory.\r\n";
    EXPECT_EQ(fields(errorOf([&] { hk.RegisterKey("switch", 0x54, 3); })),
              Fields(0x8004041Au, "tessaline.cRegHotKey", "Failed to add GlobalAtom [Not enough memory.\r\n]"));
    platform.errorTexts.clear();
    EXPECT_EQ(errorOf([&] { hk.RegisterKey("switch", 0x54, 3); }).description(), "Failed to add GlobalAtom");
    EXPECT_EQ(platform.hotKeys.size(), 2u);
}

TEST_F(RegHotKeyTest, RemovingARecordCopiesFromTheFixedNextIndex) {
    const struct {
        std::vector<std::string> registered;
        std::string removed;
        std::vector<std::string> left;
    } cases[] = {
        {{"only"}, "only", {}},
        {{"first", "second", "third"}, "first", {"second", "second"}},
        {{"first", "second", "third"}, "third", {"first", "second"}},
        {{"a", "b", "c", "d"}, "b", {"a", "c", "c"}},
    };
    for (const auto& c : cases) {
        test::FakeHotKeyPlatform system;
        cRegHotKey keys(system);
        uint32_t key = 0x41;
        for (const std::string& name : c.registered) {
            keys.RegisterKey(name, key++, 2);
        }
        const int32_t removedAtom = keys.record(keys.IndexOfKey(c.removed)).atom;
        keys.UnregisterKey(c.removed);
        EXPECT_EQ(names(keys), c.left) << "removing " << c.removed;
        EXPECT_EQ(system.atoms.count(static_cast<uint16_t>(removedAtom)), 0u);
        if (c.registered.size() == 3 && c.removed == "first") {
            ASSERT_EQ(system.hotKeys.size(), 2u);
            EXPECT_EQ(system.hotKeys[1].key, 0x43u) << "the dropped record's key stays with the system";
        }
    }
}

TEST_F(RegHotKeyTest, ClearUnregistersFromLastToFirstThenStopsRoutingAsAttachZeroAndDestructionDo) {
    hk.Attach(kWindow);
    hk.RegisterKey("a", 0x41, 2);
    hk.RegisterKey("b", 0x42, 2);
    hk.RegisterKey("c", 0x43, 2);
    const int32_t a = hk.record(1).atom, b = hk.record(2).atom, c = hk.record(3).atom;
    platform.log.clear();
    hk.Clear();
    EXPECT_THAT(platform.log, ElementsAre("unregister " + std::to_string(c), "delete atom " + std::to_string(c),
                                          "unregister " + std::to_string(b), "delete atom " + std::to_string(b),
                                          "unregister " + std::to_string(a), "delete atom " + std::to_string(a),
                                          "stop routing " + std::to_string(kWindow)));
    EXPECT_EQ(hk.count(), 0);
    EXPECT_EQ(hk.attachedWindow(), 0u);
    EXPECT_TRUE(platform.atoms.empty() && platform.hotKeys.empty());

    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    hk.Attach(0);
    EXPECT_TRUE(platform.routes.empty());
    EXPECT_EQ(hk.count(), 0);
    {
        cRegHotKey temporary(platform);
        temporary.Attach(kWindow);
        temporary.RegisterKey("a", 0x41, 2);
    }
    EXPECT_TRUE(platform.atoms.empty() && platform.hotKeys.empty() && platform.routes.empty());
}

TEST_F(RegHotKeyTest, WmHotKeyRaisesTheEventForItsIdentifier) {
    const struct {
        const char* what;
        uint32_t msg;
        std::uintptr_t wParam;  // 0 stands for the second record's atom
        std::intptr_t lParam;
        std::vector<Press> expected;
    } cases[] = {
        {"desktop snapshot", 0x312, static_cast<std::uintptr_t>(-2), 0, {{"Desktop Snapshot", 0, 44}}},
        {"desktop snapshot, 32-bit", 0x312, 0xFFFFFFFEu, 0, {{"Desktop Snapshot", 0, 44}}},
        {"window snapshot", 0x312, static_cast<std::uintptr_t>(-1), 0x2C0001, {{"Window Snapshot", 4, 44}}},
        {"registered key", 0x312, 0, 0, {{"other", 6, 0x54}}},
        {"unknown identifier", 0x312, 0x77, 0x00750006, {{"Unknown HotKey", 6, 0x75}}},
        {"other message", 0x111, 0x77, 0x00750006, {}},
    };
    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    hk.RegisterKey("other", 0x54, 6);
    for (const auto& c : cases) {
        presses.clear();
        const std::uintptr_t wParam = c.wParam != 0 ? c.wParam : static_cast<std::uintptr_t>(hk.record(2).atom);
        EXPECT_EQ(hk.windowProc(kWindow, c.msg, wParam, c.lParam), 0);
        EXPECT_EQ(presses, c.expected) << c.what;
    }
    presses.clear();
    platform.press(3, 0x53);
    EXPECT_THAT(presses, ElementsAre(Press{"switch", 3, 0x53})) << "a press of the combination reaches the event";
}

TEST_F(RegHotKeyTest, AHandlerMayDestroyTheRegistrar) {
    auto owned = std::make_unique<cRegHotKey>(platform);
    owned->Attach(kWindow);
    owned->RegisterKey("switch", 0x53, 3);
    int calls = 0;
    owned->HotKeyPress = [&](const std::string&, uint32_t, uint32_t) {
        ++calls;
        owned.reset();
    };
    platform.press(3, 0x53);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(platform.hotKeys.empty());
}

}  // namespace
}  // namespace tl
