#include "hotkey/hot_key_control.h"

#include <utility>

#include "base/convert.h"
#include "base/object_error.h"

namespace tl {

int32_t mulDiv(int32_t a, int32_t b, int32_t c) {
    if (c == 0) {
        return -1;
    }
    int64_t multiplicand = a;
    int64_t divisor = c;
    if (divisor < 0) {
        multiplicand = -multiplicand;
        divisor = -divisor;
    }
    const int64_t product = multiplicand * b;
    const int64_t result = (product >= 0 ? product + divisor / 2 : product - divisor / 2) / divisor;
    if (result > 2147483647 || result < -2147483647) {
        return -1;
    }
    return static_cast<int32_t>(result);
}

cHotKey::~cHotKey() {
    if (fontHandle_ != 0) {
        host_.deleteFont(fontHandle_);
    }
}

void cHotKey::SetApplicationHotKey(HotKeyWindow hWnd) {
    const std::intptr_t r =
        host_.sendTo(hWnd, kWmSetHotKey, static_cast<std::uintptr_t>(static_cast<uint32_t>(HotKeyAndModifier())), 0);
    if (r == 1) {
        return;
    }
    int32_t code = kErrSetFailed;
    const char* description = "Failed to set Hot key";
    if (r == -1) {
        code = kErrInvalidHotKey;
        description = "Invalid Hot key";
    } else if (r == 0) {
        code = kErrInvalidWindow;
        description = "Invalid window for Hot key";
    } else if (r == 2) {
        // The system has set the key all the same; the caller is told another window holds it too.
        code = kErrInvalidWindow;
        description = "Hot key previously assigned";
    }
    throw ObjectError(code, host_.executableName() + ".cHotKey", description);
}

void cHotKey::InvalidHotKeyOperation(uint8_t eInvalidModifier, uint8_t eAlternateModifier, bool bState) {
    if (bState) {
        invalidFlags_ = static_cast<uint8_t>(invalidFlags_ | eInvalidModifier);
        alternateModifier_ = static_cast<uint8_t>(alternateModifier_ | eAlternateModifier);
    } else {
        invalidFlags_ = static_cast<uint8_t>(invalidFlags_ & ~eInvalidModifier);
        alternateModifier_ = static_cast<uint8_t>(alternateModifier_ & ~eAlternateModifier);
    }
    host_.sendToChild(kHkmSetRules, invalidFlags_, alternateModifier_);
}

int32_t cHotKey::HotKeyAndModifier() {
    return static_cast<int32_t>(host_.sendToChild(kHkmGetHotKey, 0, 0));
}

int32_t cHotKey::HotKey() {
    return HotKeyAndModifier() & 0xFF;
}

void cHotKey::setHotKey(int32_t lKey) {
    const int32_t w = HotKeyAndModifier();
    if (lKey != (w & 0xFF)) {
        host_.sendToChild(kHkmSetHotKey, static_cast<std::uintptr_t>((w & 0xFF00) | (lKey & 0xFF)), 0);
        propertyChanged("HotKey");
    }
}

uint8_t cHotKey::HotKeyModifier() {
    return static_cast<uint8_t>((HotKeyAndModifier() >> 8) & 0xFF);
}

void cHotKey::setHotKeyModifier(uint8_t eModifier) {
    const int32_t w = HotKeyAndModifier();
    // An odd mask and divisor, kept as they are. The mask leaves out bits 8 to 11, where every real
    // modifier lives, so the value shown is usually sent again (harmless), and modifier 0 is taken as
    // already shown whatever the field holds.
    const int32_t current = (w & 0xFF00F) / 255;
    if (current != eModifier) {
        host_.sendToChild(kHkmSetHotKey, static_cast<std::uintptr_t>((eModifier * 256) | (w & 0xFF)), 0);
        propertyChanged("HotKeyModifier");
    }
}

LogicalFont cHotKey::logicalFontFor(const ControlFont& font, int logPixelsY) {
    LogicalFont lf;
    // LOGFONT's face field holds 31 characters and a NUL.
    lf.faceName = font.name.substr(0, 31);
    lf.height = -mulDiv(static_cast<int32_t>(roundHalfEven(font.size)), logPixelsY, 72);
    lf.italic = font.italic;
    lf.underline = font.underline;
    lf.strikeOut = font.strikethrough;
    lf.weight = font.bold ? 700 : 400;
    return lf;
}

void cHotKey::setFont(const ControlFont& font) {
    if (font_ && *font_ == font) {
        return;
    }
    font_ = font;
    const FontHandle made = host_.createFont(logicalFontFor(font, host_.logPixelsY()));
    if (host_.hasChild()) {
        host_.sendToChild(kWmSetFont, made, 1);
    }
    if (fontHandle_ != 0) {
        host_.deleteFont(fontHandle_);
    }
    fontHandle_ = made;
    propertyChanged("Font");
}

void cHotKey::InitProperties(const ControlFont& ambientFont) {
    setFont(ambientFont);
}

void cHotKey::ReadProperties(const HotKeySavedProperties& saved) {
    setFont(saved.Font.value_or(ControlFont{}));
    setHotKey(saved.HotKey.value_or(kDefaultHotKey));
    setHotKeyModifier(saved.HotKeyModifier.value_or(kDefaultHotKeyModifier));
}

HotKeySavedProperties cHotKey::WriteProperties() {
    // As a property bag stores them: a value equal to its default is left out.
    HotKeySavedProperties saved;
    saved.Font = font_;
    if (const int32_t key = HotKey(); key != kDefaultHotKey) {
        saved.HotKey = key;
    }
    if (const uint8_t modifier = HotKeyModifier(); modifier != kDefaultHotKeyModifier) {
        saved.HotKeyModifier = modifier;
    }
    return saved;
}

std::vector<std::string> cHotKey::takeChangedProperties() {
    return std::exchange(changed_, {});
}

void cHotKey::propertyChanged(const char* name) {
    changed_.emplace_back(name);
}

}  // namespace tl
