#include "hotkey/reg_hot_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/object_error.h"
#include "hotkey/fake_hot_key_platform.h"

namespace tl {
namespace {

using test::FakeHotKeyPlatform;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr HotKeyWindow kWindow = 0x1234;

struct Press {
    std::string name;
    uint32_t modifiers;
    uint32_t key;
    bool operator==(const Press&) const = default;
};

class RegHotKeyTest : public ::testing::Test {
  protected:
    RegHotKeyTest() {
        hk.HotKeyPress = [this](const std::string& name, uint32_t modifiers, uint32_t key) {
            presses.push_back({name, modifiers, key});
        };
    }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (int i = 1; i <= hk.count(); ++i) {
            result.push_back(hk.record(i).name);
        }
        return result;
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

    FakeHotKeyPlatform platform;
    cRegHotKey hk{platform};
    std::vector<Press> presses;
};

TEST_F(RegHotKeyTest, NameOfThirtyTwoCharactersRegistersAndThirtyThreeIsRefusedBeforeAnyAtom) {
    hk.Attach(kWindow);
    hk.RegisterKey(std::string(32, 'k'), 0x53, 3);
    EXPECT_EQ(hk.count(), 1);

    platform.log.clear();
    const ObjectError e = errorOf([&] { hk.RegisterKey(std::string(33, 'k'), 0x54, 3); });
    EXPECT_EQ(e.number(), 0x8004041Bu);
    EXPECT_EQ(e.source(), "tessaline.cRegHotKey");
    EXPECT_EQ(e.description(), "Key Name too long (max 32 characters).");
    EXPECT_TRUE(platform.log.empty()) << "no atom may be made for a name that is too long";
    EXPECT_EQ(hk.count(), 1);
}

TEST_F(RegHotKeyTest, SameNameTwiceIsRefusedButNamesDifferInCase) {
    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    const ObjectError e = errorOf([&] { hk.RegisterKey("switch", 0x54, 2); });
    EXPECT_EQ(e.number(), 0x8004041Cu);
    EXPECT_EQ(e.description(), "The Key Name 'switch' is already registered.");
    hk.RegisterKey("Switch", 0x54, 2);
    EXPECT_THAT(names(), ElementsAre("switch", "Switch"));
    EXPECT_EQ(platform.atoms.size(), 2u);
}

TEST_F(RegHotKeyTest, UnknownNameIsReportedInQuotes) {
    hk.RegisterKey("switch", 0x53, 3);
    const ObjectError e = errorOf([&] { hk.UnregisterKey("SWITCH"); });
    EXPECT_EQ(e.number(), 0x80040419u);
    EXPECT_EQ(e.source(), "tessaline.cRegHotKey");
    EXPECT_EQ(e.description(), "No hot key registered under the name 'SWITCH'");
    EXPECT_EQ(hk.count(), 1);
    EXPECT_THROW(hk.IndexOfKey("other"), ObjectError);
    EXPECT_EQ(hk.IndexOfKey("switch"), 1);
}

TEST_F(RegHotKeyTest, CombinationHeldElsewhereDeletesItsAtomAndKeepsTheRecords) {
    cRegHotKey other(platform);
    other.Attach(0x999);
    other.RegisterKey("theirs", 0x53, 3);
    hk.Attach(kWindow);
    hk.RegisterKey("first", 0x41, 2);
    const auto atomsBefore = platform.atoms;

    const ObjectError e = errorOf([&] { hk.RegisterKey("switch", 0x53, 3); });
    EXPECT_EQ(e.number(), 0x8004041Bu);
    // The error is read before the atom is deleted (which would reset it).
    EXPECT_EQ(e.description(), "Failed to Register Hot Key [Hot key is already registered.\r\n]");
    EXPECT_EQ(platform.atoms, atomsBefore) << "the atom made for the failed key must be deleted";
    EXPECT_THAT(names(), ElementsAre("first"));

    platform.errorTexts.clear();
    EXPECT_EQ(errorOf([&] { hk.RegisterKey("switch", 0x53, 3); }).description(), "Failed to Register Hot Key");
}

TEST_F(RegHotKeyTest, AtomThatCannotBeMadeIsReportedWithTheSystemText) {
    platform.failAddAtom = true;
    platform.errorTexts[8] = "Not enough memory.\r\n";
    ObjectError e = errorOf([&] { hk.RegisterKey("switch", 0x53, 3); });
    EXPECT_EQ(e.number(), 0x8004041Au);
    EXPECT_EQ(e.description(), "Failed to add GlobalAtom [Not enough memory.\r\n]");
    platform.errorTexts.clear();
    e = errorOf([&] { hk.RegisterKey("switch", 0x53, 3); });
    EXPECT_EQ(e.description(), "Failed to add GlobalAtom");
    EXPECT_EQ(hk.count(), 0);
    EXPECT_TRUE(platform.hotKeys.empty());
}

TEST_F(RegHotKeyTest, AtomNameJoinsNameProgramAndTickAndIsCutTo254) {
    hk.RegisterKey("switch", 0x53, 3);
    EXPECT_EQ(hk.record(1).atomName, "switch_tessaline_12345");
    EXPECT_EQ(platform.atoms.at(static_cast<uint16_t>(hk.record(1).atom)), "switch_tessaline_12345");

    platform.exeName = std::string(250, 'e');
    platform.tick = 4000000000u;
    hk.RegisterKey("long", 0x54, 3);
    const std::string full = "long_" + platform.exeName + "_4000000000";
    EXPECT_EQ(hk.record(2).atomName, full.substr(0, 254));
}

struct RemovalCase {
    std::vector<std::string> registered;
    std::string removed;
    std::vector<std::string> left;
};

class RegHotKeyRemoval : public RegHotKeyTest, public ::testing::WithParamInterface<RemovalCase> {};

TEST_P(RegHotKeyRemoval, CopiesFromTheFixedNextIndex) {
    const RemovalCase& c = GetParam();
    uint32_t key = 0x41;
    for (const std::string& name : c.registered) {
        hk.RegisterKey(name, key++, 2);
    }
    const int32_t removedAtom = hk.record(hk.IndexOfKey(c.removed)).atom;
    hk.UnregisterKey(c.removed);
    EXPECT_THAT(names(), ElementsAreArray(c.left));
    EXPECT_EQ(platform.atoms.count(static_cast<uint16_t>(removedAtom)), 0u);
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         RegHotKeyRemoval,
                         ::testing::Values(RemovalCase{{"only"}, "only", {}},
                                           RemovalCase{{"first", "second"}, "first", {"second"}},
                                           RemovalCase{{"first", "second", "third"}, "first", {"second", "second"}},
                                           RemovalCase{{"first", "second", "third"}, "second", {"first", "third"}},
                                           RemovalCase{{"first", "second", "third"}, "third", {"first", "second"}},
                                           RemovalCase{{"a", "b", "c", "d"}, "b", {"a", "c", "c"}},
                                           RemovalCase{{"a", "b", "c", "d"}, "a", {"b", "b", "c"}}));

TEST_F(RegHotKeyTest, RemovingTheFirstOfThreeLeavesTheThirdKeyHeld) {
    hk.RegisterKey("first", 0x41, 2);
    hk.RegisterKey("second", 0x42, 2);
    hk.RegisterKey("third", 0x43, 2);
    hk.UnregisterKey("first");
    ASSERT_EQ(platform.hotKeys.size(), 2u);
    EXPECT_EQ(platform.hotKeys[1].key, 0x43u) << "the dropped record's key stays with the system";
}

TEST_F(RegHotKeyTest, ClearUnregistersFromLastToFirstThenStopsRouting) {
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
    EXPECT_TRUE(platform.atoms.empty());
    EXPECT_TRUE(platform.hotKeys.empty());
}

TEST_F(RegHotKeyTest, AttachZeroOnlyClears) {
    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    platform.log.clear();
    hk.Attach(0);
    EXPECT_EQ(platform.log.back(), "stop routing " + std::to_string(kWindow));
    EXPECT_TRUE(platform.routes.empty());
    EXPECT_EQ(hk.attachedWindow(), 0u);
    EXPECT_EQ(hk.count(), 0);
}

TEST_F(RegHotKeyTest, AttachToAnotherWindowMovesTheRouting) {
    hk.Attach(kWindow);
    hk.Attach(0x5678);
    ASSERT_EQ(platform.routes.size(), 1u);
    EXPECT_EQ(platform.routes[0].window, 0x5678u);
    EXPECT_EQ(hk.attachedWindow(), 0x5678u);
}

TEST_F(RegHotKeyTest, DestructionUnregistersEveryKeyAndStopsRouting) {
    {
        cRegHotKey temporary(platform);
        temporary.Attach(kWindow);
        temporary.RegisterKey("a", 0x41, 2);
        temporary.RegisterKey("b", 0x42, 2);
    }
    EXPECT_TRUE(platform.atoms.empty());
    EXPECT_TRUE(platform.hotKeys.empty());
    EXPECT_TRUE(platform.routes.empty());
}

struct DispatchCase {
    const char* what;
    uint32_t msg;
    std::uintptr_t wParam;
    std::intptr_t lParam;
    std::vector<Press> expected;
};

class RegHotKeyDispatch : public RegHotKeyTest, public ::testing::WithParamInterface<DispatchCase> {};

TEST_P(RegHotKeyDispatch, RaisesTheEventForTheIdentifier) {
    const DispatchCase& c = GetParam();
    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    hk.RegisterKey("other", 0x54, 6);
    std::uintptr_t wParam = c.wParam;
    if (wParam == 0) {
        wParam = static_cast<std::uintptr_t>(hk.record(2).atom);  // stands for "the second record's atom"
    }
    EXPECT_EQ(hk.windowProc(kWindow, c.msg, wParam, c.lParam), 0);
    EXPECT_EQ(presses, c.expected) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    RegHotKeyDispatch,
    ::testing::Values(
        DispatchCase{"desktop snapshot", 0x312, static_cast<std::uintptr_t>(-2), 0, {{"Desktop Snapshot", 0, 44}}},
        DispatchCase{"desktop snapshot, 32-bit", 0x312, 0xFFFFFFFEu, 0, {{"Desktop Snapshot", 0, 44}}},
        DispatchCase{"window snapshot", 0x312, static_cast<std::uintptr_t>(-1), 0x2C0001, {{"Window Snapshot", 4, 44}}},
        DispatchCase{"registered key", 0x312, 0, 0, {{"other", 6, 0x54}}},
        DispatchCase{"unknown identifier", 0x312, 0x77, 0x00750006, {{"Unknown HotKey", 6, 0x75}}},
        DispatchCase{"other message", 0x111, 0x77, 0x00750006, {}}));

TEST_F(RegHotKeyTest, PressOfARegisteredCombinationReachesTheEvent) {
    hk.Attach(kWindow);
    hk.RegisterKey("switch", 0x53, 3);
    platform.press(3, 0x53);
    EXPECT_THAT(presses, ElementsAre(Press{"switch", 3, 0x53}));
    hk.Clear();
    platform.press(3, 0x53);
    EXPECT_EQ(presses.size(), 1u) << "a cleared registrar hears nothing";
}

TEST_F(RegHotKeyTest, HandlerMayDestroyTheRegistrar) {
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

struct RestoreCase {
    bool visible;
    bool iconic;
    std::vector<std::string> calls;
};

class RegHotKeyRestore : public RegHotKeyTest, public ::testing::WithParamInterface<RestoreCase> {};

TEST_P(RegHotKeyRestore, ShowsRestoresAndActivates) {
    platform.visible = GetParam().visible;
    platform.iconic = GetParam().iconic;
    hk.RestoreAndActivate(77);
    EXPECT_THAT(platform.log, ElementsAreArray(GetParam().calls));
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    RegHotKeyRestore,
    ::testing::Values(RestoreCase{true, false, {"foreground 77"}},
                      RestoreCase{false, false, {"show 77 5", "foreground 77"}},
                      RestoreCase{true, true, {"send 77 274 4294963488 0", "foreground 77"}},
                      RestoreCase{false, true, {"show 77 5", "send 77 274 4294963488 0", "foreground 77"}}));

}  // namespace
}  // namespace tl
