#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hotkey/reg_hot_key.h"

namespace tl {

// A font as a control's Font property holds it.
struct ControlFont {
    std::string name = "MS Sans Serif";
    double size = 8;  // points
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;

    bool operator==(const ControlFont&) const = default;
};

// The fields of a LOGFONT the control fills in; the others stay 0.
struct LogicalFont {
    std::string faceName;  // at most 31 characters, as LOGFONT's field holds them with its NUL
    int32_t height = 0;
    int32_t weight = 0;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
};

// A GDI font handle's value (0 for none).
using FontHandle = std::uintptr_t;

// What the hot key control asks of the platform: messages to its child hot key window (a child that
// was never made reads 0) and to other windows, and the GDI font calls.
class HotKeyControlHost {
  public:
    virtual ~HotKeyControlHost() = default;

    virtual bool hasChild() const = 0;
    virtual std::intptr_t sendToChild(uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) = 0;
    virtual std::intptr_t sendTo(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) = 0;
    // GetDeviceCaps(LOGPIXELSY) of the control's device context.
    virtual int logPixelsY() = 0;
    // CreateFontIndirectA: 0 on failure.
    virtual FontHandle createFont(const LogicalFont& font) = 0;
    virtual void deleteFont(FontHandle font) = 0;
    virtual std::string executableName() = 0;
};

// The properties a host form keeps for a hot key control; a missing one takes its default.
struct HotKeySavedProperties {
    std::optional<ControlFont> Font;
    std::optional<int32_t> HotKey;
    std::optional<uint8_t> HotKeyModifier;
};

// MulDiv: a * b / c rounded half away from zero in 64 bits; -1 when c is 0 or the result does not fit.
int32_t mulDiv(int32_t a, int32_t b, int32_t c);

// The key-entry control around the system's hot key field. The key and modifiers live in the field
// only: every read asks it (HKM_GETHOTKEY). The word it reports has the virtual-key code in its low
// byte and the field's modifier flags (1 Shift, 2 Control, 4 Alt, 8 extended) in its high byte.
// Failures of SetApplicationHotKey are raised as ObjectError (source "<exe>.cHotKey").
class cHotKey {
  public:
    static constexpr uint32_t kHkmSetHotKey = 0x401;
    static constexpr uint32_t kHkmGetHotKey = 0x402;
    static constexpr uint32_t kHkmSetRules = 0x403;
    static constexpr uint32_t kWmSetHotKey = 0x32;
    static constexpr uint32_t kWmSetFont = 0x30;

    static constexpr int32_t kErrInvalidWindow = 1088;  // also "Hot key previously assigned"
    static constexpr int32_t kErrInvalidHotKey = 1090;
    static constexpr int32_t kErrSetFailed = 1091;

    static constexpr int32_t kDefaultHotKey = 0;
    static constexpr uint8_t kDefaultHotKeyModifier = 4;

    explicit cHotKey(HotKeyControlHost& host) : host_(host) {}
    cHotKey(const cHotKey&) = delete;
    cHotKey& operator=(const cHotKey&) = delete;
    ~cHotKey();

    // Makes the current combination hWnd's activation hot key (WM_SETHOTKEY).
    void SetApplicationHotKey(HotKeyWindow hWnd);
    // Adds (state true) or removes the given invalid-combination flags and alternate modifier bits from
    // the rules kept, then hands the rules to the field (HKM_SETRULES).
    void InvalidHotKeyOperation(uint8_t eInvalidModifier, uint8_t eAlternateModifier, bool bState);

    int32_t HotKey();
    void setHotKey(int32_t lKey);
    uint8_t HotKeyModifier();
    void setHotKeyModifier(uint8_t eModifier);
    int32_t HotKeyAndModifier();

    // The font held; none until the first is set.
    const std::optional<ControlFont>& Font() const { return font_; }
    // A font other than the one held becomes the control's, and the field's through a new GDI font.
    void setFont(const ControlFont& font);

    // A control new on its form takes the form's font.
    void InitProperties(const ControlFont& ambientFont);
    // The host form's stored properties: read applies them (defaults for the missing ones) through the
    // property writes; write gives the current ones.
    void ReadProperties(const HotKeySavedProperties& saved);
    HotKeySavedProperties WriteProperties();

    // The properties marked changed since the last takeChangedProperties, in the order marked.
    std::vector<std::string> takeChangedProperties();
    uint8_t invalidFlags() const { return invalidFlags_; }
    uint8_t alternateModifier() const { return alternateModifier_; }
    FontHandle fontHandle() const { return fontHandle_; }
    // The GDI font's description made from a font at the given vertical DPI.
    static LogicalFont logicalFontFor(const ControlFont& font, int logPixelsY);

  private:
    void propertyChanged(const char* name);

    HotKeyControlHost& host_;
    uint8_t invalidFlags_ = 0;
    uint8_t alternateModifier_ = 0;
    std::optional<ControlFont> font_;
    FontHandle fontHandle_ = 0;
    std::vector<std::string> changed_;
};

}  // namespace tl
