#include "hotkey/hot_key_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/settings.h"
#include "base/object_error.h"
#include "hotkey/hotkey_form.h"

namespace tl {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A hot key field that shows one word, and a GDI that hands out numbered fonts.
class FakeHost : public HotKeyControlHost {
  public:
    struct Sent {
        uint32_t msg;
        std::uintptr_t wParam;
        std::intptr_t lParam;
        bool operator==(const Sent&) const = default;
    };

    bool hasChild() const override { return child; }
    std::intptr_t sendToChild(uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) override {
        if (!child) {
            return 0;
        }
        if (msg != cHotKey::kHkmGetHotKey) {
            sent.push_back({msg, wParam, lParam});
        }
        if (msg == cHotKey::kHkmSetHotKey) {
            shown = static_cast<int32_t>(wParam & 0xFFFF);
        }
        return msg == cHotKey::kHkmGetHotKey ? shown : 0;
    }
    std::intptr_t sendTo(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t) override {
        toWindow.push_back({msg, wParam, static_cast<std::intptr_t>(window)});
        return setHotKeyAnswer;
    }
    int logPixelsY() override { return dpi; }
    FontHandle createFont(const LogicalFont& font) override {
        made.push_back(font);
        gdi.push_back("create " + std::to_string(made.size()));
        return made.size();
    }
    void deleteFont(FontHandle font) override { gdi.push_back("delete " + std::to_string(font)); }
    std::string executableName() override { return "tessaline"; }

    bool child = true;
    int32_t shown = 0;
    std::vector<Sent> sent;
    std::vector<Sent> toWindow;
    std::intptr_t setHotKeyAnswer = 1;
    int dpi = 96;
    std::vector<LogicalFont> made;
    std::vector<std::string> gdi;
};

TEST(HotKeyControl, CtrlF5ReadsAsModifierTwoAndKey74) {
    FakeHost host;
    cHotKey hk(host);
    host.shown = 0x0274;
    EXPECT_EQ(hk.HotKeyAndModifier(), 0x0274);
    EXPECT_EQ(hk.HotKeyModifier(), 2);
    EXPECT_EQ(hk.HotKey(), 0x74);
}

struct WriteCase {
    const char* what;
    int32_t shown;
    bool modifier;  // writes HotKeyModifier, else HotKey
    int32_t value;
    std::vector<FakeHost::Sent> sent;
    std::vector<std::string> changed;
};

class HotKeyControlWrite : public ::testing::TestWithParam<WriteCase> {};

TEST_P(HotKeyControlWrite, SendsOnlyWhatDiffers) {
    const WriteCase& c = GetParam();
    FakeHost host;
    host.shown = c.shown;
    cHotKey hk(host);
    if (c.modifier) {
        hk.setHotKeyModifier(static_cast<uint8_t>(c.value));
    } else {
        hk.setHotKey(c.value);
    }
    EXPECT_EQ(host.sent, c.sent) << c.what;
    EXPECT_EQ(hk.takeChangedProperties(), c.changed) << c.what;
}

constexpr uint32_t kSet = cHotKey::kHkmSetHotKey;

INSTANTIATE_TEST_SUITE_P(
    Cases,
    HotKeyControlWrite,
    ::testing::Values(
        WriteCase{"modifier 4 over Ctrl+F5", 0x0274, true, 4, {{kSet, 0x0474, 0}}, {"HotKeyModifier"}},
        // The mask leaves out bits 8 to 11, where the real modifiers are: the value shown is sent again,
        // and a word whose modifiers lie only there reads as modifier 0.
        WriteCase{"modifier already shown", 0x0274, true, 2, {{kSet, 0x0274, 0}}, {"HotKeyModifier"}},
        WriteCase{"modifier 0 over Ctrl+F5", 0x0274, true, 0, {}, {}},
        WriteCase{"modifier of an empty field", 0, true, 4, {{kSet, 0x0400, 0}}, {"HotKeyModifier"}},
        WriteCase{"modifier bits the mask sees", 0xF000, true, 0xF0, {}, {}},
        WriteCase{"key over Ctrl+F5", 0x0274, false, 0x75, {{kSet, 0x0275, 0}}, {"HotKey"}},
        WriteCase{"key already shown", 0x0274, false, 0x74, {}, {}},
        WriteCase{"key beyond a byte keeps its low byte", 0x0274, false, 0x141, {{kSet, 0x0241, 0}}, {"HotKey"}}));

TEST(HotKeyControl, FieldNeverMadeReadsZeroAndWritesNothingVisible) {
    FakeHost host;
    host.child = false;
    cHotKey hk(host);
    hk.setHotKey(0x53);
    EXPECT_EQ(hk.HotKey(), 0);
    EXPECT_THAT(host.sent, IsEmpty());
}

TEST(HotKeyControl, RulesAccumulateAndClearBits) {
    FakeHost host;
    cHotKey hk(host);
    hk.InvalidHotKeyOperation(0x03, 0x02, true);
    hk.InvalidHotKeyOperation(0x01, 0x00, false);
    hk.InvalidHotKeyOperation(0x80, 0x04, true);
    EXPECT_THAT(host.sent, ElementsAre(FakeHost::Sent{cHotKey::kHkmSetRules, 0x03, 0x02},
                                       FakeHost::Sent{cHotKey::kHkmSetRules, 0x02, 0x02},
                                       FakeHost::Sent{cHotKey::kHkmSetRules, 0x82, 0x06}));
    EXPECT_EQ(hk.invalidFlags(), 0x82);
    EXPECT_EQ(hk.alternateModifier(), 0x06);
}

struct ApplicationCase {
    std::intptr_t answer;
    uint32_t number;
    const char* description;  // null: no error
};

class HotKeyControlApplication : public ::testing::TestWithParam<ApplicationCase> {};

TEST_P(HotKeyControlApplication, AnswerOfTheWindowDecidesTheError) {
    const ApplicationCase& c = GetParam();
    FakeHost host;
    host.shown = 0x0653;
    host.setHotKeyAnswer = c.answer;
    cHotKey hk(host);
    if (!c.description) {
        EXPECT_NO_THROW(hk.SetApplicationHotKey(0x99));
    } else {
        try {
            hk.SetApplicationHotKey(0x99);
            ADD_FAILURE() << "no error for answer " << c.answer;
        } catch (const ObjectError& e) {
            EXPECT_EQ(e.number(), c.number);
            EXPECT_EQ(e.description(), c.description);
            EXPECT_EQ(e.source(), "tessaline.cHotKey");
        }
    }
    EXPECT_THAT(host.toWindow, ElementsAre(FakeHost::Sent{cHotKey::kWmSetHotKey, 0x0653, 0x99}));
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         HotKeyControlApplication,
                         ::testing::Values(ApplicationCase{1, 0, nullptr},
                                           ApplicationCase{-1, 0x80040442u, "Invalid Hot key"},
                                           ApplicationCase{0, 0x80040440u, "Invalid window for Hot key"},
                                           ApplicationCase{2, 0x80040440u, "Hot key previously assigned"},
                                           ApplicationCase{3, 0x80040443u, "Failed to set Hot key"}));

TEST(HotKeyControl, SavedPropertiesWithoutModifierComeUpWithAlt) {
    FakeHost host;
    cHotKey hk(host);
    hk.ReadProperties({});
    EXPECT_EQ(hk.HotKeyModifier(), 4);
    EXPECT_EQ(hk.HotKey(), 0);
    ASSERT_TRUE(hk.Font().has_value());
    EXPECT_EQ(hk.Font()->name, "MS Sans Serif");
    EXPECT_EQ(hk.Font()->size, 8);
    const HotKeySavedProperties written = hk.WriteProperties();
    EXPECT_FALSE(written.HotKey.has_value()) << "defaults are not written";
    EXPECT_FALSE(written.HotKeyModifier.has_value());
}

TEST(HotKeyControl, SavedPropertiesRoundTrip) {
    FakeHost host;
    cHotKey hk(host);
    const ControlFont tahoma{"Tahoma", 8, false, false, false, false};
    hk.ReadProperties({tahoma, 0x41, 2});
    EXPECT_EQ(hk.HotKeyAndModifier(), 0x0241);
    const HotKeySavedProperties written = hk.WriteProperties();
    EXPECT_EQ(written.Font, tahoma);
    EXPECT_EQ(written.HotKey, 0x41);
    EXPECT_EQ(written.HotKeyModifier, 2);
}

struct FontCase {
    ControlFont font;
    int dpi;
    LogicalFont expected;
};

class HotKeyControlFont : public ::testing::TestWithParam<FontCase> {};

TEST_P(HotKeyControlFont, LogicalFontFollowsTheFont) {
    const FontCase& c = GetParam();
    const LogicalFont lf = cHotKey::logicalFontFor(c.font, c.dpi);
    EXPECT_EQ(lf.faceName, c.expected.faceName);
    EXPECT_EQ(lf.height, c.expected.height);
    EXPECT_EQ(lf.weight, c.expected.weight);
    EXPECT_EQ(lf.italic, c.expected.italic);
    EXPECT_EQ(lf.underline, c.expected.underline);
    EXPECT_EQ(lf.strikeOut, c.expected.strikeOut);
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    HotKeyControlFont,
    ::testing::Values(
        FontCase{{"Tahoma", 8, false, false, false, false}, 96, {"Tahoma", -11, 400, false, false, false}},
        FontCase{{"Tahoma", 10, true, true, false, false}, 96, {"Tahoma", -13, 700, true, false, false}},
        FontCase{{"Arial", 9, false, false, true, true}, 120, {"Arial", -15, 400, false, true, true}},
        // The size is rounded half to even before scaling.
        FontCase{{"Tahoma", 8.5, false, false, false, false}, 96, {"Tahoma", -11, 400, false, false, false}},
        FontCase{{"Tahoma", 9.5, false, false, false, false}, 96, {"Tahoma", -13, 400, false, false, false}},
        FontCase{{std::string(40, 'F'), 8, false, false, false, false},
                 96,
                 {std::string(31, 'F'), -11, 400, false, false, false}}));

TEST(HotKeyControl, NewFontGoesToTheFieldBeforeTheOldOneIsDeleted) {
    FakeHost host;
    cHotKey hk(host);
    hk.setFont({"Tahoma", 8, false, false, false, false});
    hk.setFont({"Tahoma", 10, false, false, false, false});
    EXPECT_THAT(host.sent,
                ElementsAre(FakeHost::Sent{cHotKey::kWmSetFont, 1, 1}, FakeHost::Sent{cHotKey::kWmSetFont, 2, 1}));
    EXPECT_THAT(host.gdi, ElementsAre("create 1", "create 2", "delete 1"));
    EXPECT_THAT(hk.takeChangedProperties(), ElementsAre("Font", "Font"));

    hk.setFont({"Tahoma", 10, false, false, false, false});
    EXPECT_EQ(host.gdi.size(), 3u) << "the font already held makes nothing";
    EXPECT_THAT(hk.takeChangedProperties(), IsEmpty());
}

TEST(HotKeyControl, FontBeforeTheFieldExistsIsOnlyKept) {
    FakeHost host;
    host.child = false;
    {
        cHotKey hk(host);
        hk.InitProperties({"Tahoma", 8, false, false, false, false});
        EXPECT_THAT(host.sent, IsEmpty());
        EXPECT_EQ(hk.fontHandle(), 1u);
    }
    EXPECT_THAT(host.gdi, ElementsAre("create 1", "delete 1")) << "the control frees its font";
}

struct MulDivCase {
    int32_t a, b, c, expected;
};

class HotKeyMulDiv : public ::testing::TestWithParam<MulDivCase> {};

TEST_P(HotKeyMulDiv, RoundsHalfAwayFromZero) {
    const MulDivCase& m = GetParam();
    EXPECT_EQ(mulDiv(m.a, m.b, m.c), m.expected) << m.a << " * " << m.b << " / " << m.c;
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         HotKeyMulDiv,
                         ::testing::Values(MulDivCase{8, 96, 72, 11},
                                           MulDivCase{3, 1, 2, 2},
                                           MulDivCase{-3, 1, 2, -2},
                                           MulDivCase{3, 1, -2, -2},
                                           MulDivCase{7, 7, 0, -1},
                                           MulDivCase{2147483647, 2, 1, -1}));

TEST(HotkeyForm, LoadShowsTheSettingsInTheField) {
    FakeHost host;
    cHotKey hk(host);
    Settings settings;
    settings.HotKey = 83;
    settings.HotKeyMod = 3;
    loadHotkeyForm(hk, settings);
    EXPECT_EQ(hk.HotKeyAndModifier(), 0x0353);
}

TEST(HotkeyForm, StoreKeepsTheFieldsModifierBitsUntranslated) {
    FakeHost host;
    cHotKey hk(host);
    Settings settings;
    host.shown = 0x0676;  // Ctrl+Alt+F7 as the field reports it
    storeHotkeyForm(hk, settings);
    EXPECT_EQ(settings.HotKey, 0x76);
    EXPECT_EQ(settings.HotKeyMod, 6) << "RegisterHotKey's flags for the same keys would be 3";
}

}  // namespace
}  // namespace tl
