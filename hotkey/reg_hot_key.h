#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tl {

class cRegHotKey;

// A window handle as the portable code carries it (an HWND's value; 0 for none).
using HotKeyWindow = std::uintptr_t;

// What the registrar asks of the platform: global atoms, hot key registration, error texts, the clock,
// the program's name, the routing of one window's WM_HOTKEY to a registrar, and the window calls that
// bring a window forward. The Win32 side implements it; tests use a fake that records the calls.
class HotKeyPlatform {
  public:
    virtual ~HotKeyPlatform() = default;

    // GlobalAddAtomA: the atom, or 0 on failure.
    virtual uint16_t globalAddAtom(const std::string& name) = 0;
    virtual void globalDeleteAtom(uint16_t atom) = 0;
    virtual bool registerHotKey(HotKeyWindow window, int32_t id, uint32_t modifiers, uint32_t key) = 0;
    virtual void unregisterHotKey(HotKeyWindow window, int32_t id) = 0;
    // GetLastError, read right after the call that failed.
    virtual uint32_t lastError() = 0;
    // The system's text for an error code as FormatMessageA leaves it (line end included); empty when
    // the system has none.
    virtual std::string systemErrorText(uint32_t code) = 0;
    virtual uint32_t tickCount() = 0;
    // The running executable's name without its extension.
    virtual std::string executableName() = 0;

    // Starts and stops handing the window's WM_HOTKEY to target.windowProc before the window's own
    // procedure, which still runs afterwards.
    virtual void startRouting(HotKeyWindow window, cRegHotKey& target) = 0;
    virtual void stopRouting(HotKeyWindow window, cRegHotKey& target) = 0;

    virtual bool isWindowVisible(HotKeyWindow window) = 0;
    virtual void showWindow(HotKeyWindow window, int command) = 0;
    virtual bool isIconic(HotKeyWindow window) = 0;
    virtual void sendMessage(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) = 0;
    virtual void setForegroundWindow(HotKeyWindow window) = 0;
};

// Registers system-wide hot keys for one window and turns each press into a HotKeyPress event carrying
// the name the key was registered under. Failures are raised as ObjectError (source
// "<exe>.cRegHotKey"). Clearing or destroying it unregisters every key and deletes every atom.
class cRegHotKey {
  public:
    static constexpr uint32_t kWmHotKey = 0x312;
    static constexpr int32_t kIdHotSnapDesktop = -2;
    static constexpr int32_t kIdHotSnapWindow = -1;
    static constexpr uint32_t kVkSnapshot = 44;
    static constexpr size_t kMaxNameLength = 32;
    static constexpr size_t kMaxAtomNameLength = 254;
    // The answer the message router reads: the registrar sees a message before the window's own procedure.
    static constexpr int kPreProcess = 2;

    // Error codes (the number raised is 0x80040000 + code). 1051 serves two errors, deliberately.
    static constexpr int32_t kErrNoSuchKey = 1049;
    static constexpr int32_t kErrAddAtom = 1050;
    static constexpr int32_t kErrRegister = 1051;
    static constexpr int32_t kErrNameTooLong = 1051;
    static constexpr int32_t kErrDuplicate = 1052;

    struct Record {
        std::string name;
        std::string atomName;
        int32_t atom = 0;
        uint32_t key = 0;
        uint32_t modifiers = 0;  // as RegisterHotKey takes them: 1 Alt, 2 Control, 4 Shift, 8 Windows
    };

    using HotKeyPressHandler = std::function<void(const std::string& name, uint32_t modifiers, uint32_t key)>;

    explicit cRegHotKey(HotKeyPlatform& platform) : platform_(platform) {}
    cRegHotKey(const cRegHotKey&) = delete;
    cRegHotKey& operator=(const cRegHotKey&) = delete;
    ~cRegHotKey();

    // Raised for each WM_HOTKEY that reaches the attached window.
    HotKeyPressHandler HotKeyPress;

    // Clears, then (for a window other than 0) attaches to the window and starts routing its WM_HOTKEY here.
    void Attach(HotKeyWindow window);
    // Unregisters every key, last to first, and stops the routing.
    void Clear();
    void RegisterKey(const std::string& name, uint32_t key, uint32_t modifiers);
    void UnregisterKey(const std::string& name);
    // Shows the window if hidden, restores it if minimised, and brings it to the foreground.
    void RestoreAndActivate(HotKeyWindow window);

    // The 1-based index of the record registered under name; raises 1049 when there is none.
    int IndexOfKey(const std::string& name) const;
    std::string ApiErrorText(uint32_t code) const;

    // What the router calls for a routed message; always answers 0.
    std::intptr_t windowProc(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam);
    int MsgResponse() const { return kPreProcess; }

    HotKeyWindow attachedWindow() const { return window_; }
    int count() const { return static_cast<int>(records_.size()); }
    // Records 1..count.
    const Record& record(int index) const { return records_.at(static_cast<size_t>(index - 1)); }

  private:
    [[noreturn]] void raise(int32_t code, const std::string& description) const;
    void raiseHotKeyPress(const std::string& name, uint32_t modifiers, uint32_t key);

    HotKeyPlatform& platform_;
    HotKeyWindow window_ = 0;
    std::vector<Record> records_;
};

}  // namespace tl
