#include "hotkey/hot_key_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

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
    std::intptr_t sendTo(HotKeyWindow, uint32_t, std::uintptr_t, std::intptr_t) override { return 1; }
    int logPixelsY() override { return 96; }
    FontHandle createFont(const LogicalFont&) override {
        gdi.push_back("create " + std::to_string(++fonts));
        return fonts;
    }
    void deleteFont(FontHandle font) override { gdi.push_back("delete " + std::to_string(font)); }
    std::string executableName() override { return "tessaline"; }

    bool child = true;
    int32_t shown = 0;
    std::vector<Sent> sent;
    FontHandle fonts = 0;
    std::vector<std::string> gdi;
};

constexpr uint32_t kSet = cHotKey::kHkmSetHotKey;

TEST(HotKeyControl, CtrlF5ReadsAsModifierTwoAndKey74AndAFieldNeverMadeReadsZero) {
    FakeHost host;
    cHotKey hk(host);
    host.shown = 0x0274;
    EXPECT_EQ(std::tuple(hk.HotKeyAndModifier(), hk.HotKeyModifier(), hk.HotKey()), std::tuple(0x0274, 2, 0x74));

    FakeHost none;
    none.child = false;
    cHotKey unmade(none);
    unmade.setHotKey(0x53);
    EXPECT_EQ(unmade.HotKey(), 0);
    EXPECT_THAT(none.sent, IsEmpty());
}

TEST(HotKeyControl, WritingAHalfSendsOnlyWhatTheOddMaskSeesDiffer) {
    const struct {
        const char* what;
        int32_t shown;
        bool modifier;  // writes HotKeyModifier, else HotKey
        int32_t value;
        std::vector<FakeHost::Sent> sent;
    } cases[] = {
        {"modifier 4 over Ctrl+F5", 0x0274, true, 4, {{kSet, 0x0474, 0}}},
        // The mask leaves out bits 8 to 11, where the real modifiers are: the value shown is sent again,
        // and a word whose modifiers lie only there reads as modifier 0.
        {"modifier already shown", 0x0274, true, 2, {{kSet, 0x0274, 0}}},
        {"modifier 0 over Ctrl+F5", 0x0274, true, 0, {}},
        {"modifier of an empty field", 0, true, 4, {{kSet, 0x0400, 0}}},
        {"modifier bits the mask sees", 0xF000, true, 0xF0, {}},
        {"key over Ctrl+F5", 0x0274, false, 0x75, {{kSet, 0x0275, 0}}},
        {"key already shown", 0x0274, false, 0x74, {}},
        {"key beyond a byte keeps its low byte", 0x0274, false, 0x141, {{kSet, 0x0241, 0}}},
    };
    for (const auto& c : cases) {
        FakeHost host;
        host.shown = c.shown;
        cHotKey hk(host);
        if (c.modifier) {
            hk.setHotKeyModifier(static_cast<uint8_t>(c.value));
        } else {
            hk.setHotKey(c.value);
        }
        EXPECT_EQ(host.sent, c.sent) << c.what;
        const std::vector<std::string> changed = {c.modifier ? "HotKeyModifier" : "HotKey"};
        EXPECT_EQ(hk.takeChangedProperties(), c.sent.empty() ? std::vector<std::string>{} : changed) << c.what;
    }
}

TEST(HotKeyControl, TheLogicalFontFollowsTheFontScaledHalfAwayFromZero) {
    const auto fields = [](const LogicalFont& f) {
        return std::tuple(f.faceName, f.height, f.weight, f.italic, f.underline, f.strikeOut);
    };
    const std::tuple<ControlFont, int, LogicalFont> cases[] = {
        {{"Arial", 9, true, false, true, true}, 120, {"Arial", -15, 700, false, true, true}},
        // The size is rounded half to even before scaling; the face name is cut to LOGFONT's 31 characters.
        {{"Tahoma", 8.5, false, true, false, false}, 96, {"Tahoma", -11, 400, true, false, false}},
        {{std::string(40, 'F'), 9.5, false, false, false, false},
         96,
         {std::string(31, 'F'), -13, 400, false, false, false}},
    };
    for (const auto& [font, dpi, expected] : cases) {
        EXPECT_EQ(fields(cHotKey::logicalFontFor(font, dpi)), fields(expected)) << font.size << " points at " << dpi;
    }
    // MulDiv's rounding and its failures.
    const std::array<int32_t, 4> muls[] = {{3, 1, 2, 2}, {-3, 1, 2, -2}, {7, 7, 0, -1}, {2147483647, 2, 1, -1}};
    for (const auto& [a, b, c, expected] : muls) {
        EXPECT_EQ(mulDiv(a, b, c), expected) << a << " * " << b << " / " << c;
    }
}

TEST(HotKeyControl, ANewFontGoesToTheFieldBeforeTheOldOneIsDeletedAndTheControlFreesItsLast) {
    FakeHost host;
    {
        cHotKey hk(host);
        hk.setFont({"Tahoma", 8, false, false, false, false});
        hk.setFont({"Tahoma", 10, false, false, false, false});
        EXPECT_THAT(host.sent,
                    ElementsAre(FakeHost::Sent{cHotKey::kWmSetFont, 1, 1}, FakeHost::Sent{cHotKey::kWmSetFont, 2, 1}));
        EXPECT_THAT(host.gdi, ElementsAre("create 1", "create 2", "delete 1"));
        EXPECT_THAT(hk.takeChangedProperties(), ElementsAre("Font", "Font"));
        hk.setFont({"Tahoma", 10, false, false, false, false});
        EXPECT_EQ(host.gdi.size(), 3u) << "the font already held makes nothing";
    }
    EXPECT_EQ(host.gdi.back(), "delete 2") << "the control frees its font";
}

}  // namespace
}  // namespace tl
