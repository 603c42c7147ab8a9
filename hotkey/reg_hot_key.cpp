#include "hotkey/reg_hot_key.h"

#include "base/object_error.h"

namespace tl {

cRegHotKey::~cRegHotKey() {
    Clear();
}

void cRegHotKey::Attach(HotKeyWindow window) {
    Clear();
    if (window != 0) {
        window_ = window;
        platform_.startRouting(window_, *this);
    }
}

void cRegHotKey::Clear() {
    // Each removal shortens the array by one, so the index always names the current last record.
    for (int i = count(); i >= 1; --i) {
        UnregisterKey(record(i).name);
    }
    if (window_ != 0) {
        platform_.stopRouting(window_, *this);
        window_ = 0;
    }
}

void cRegHotKey::RegisterKey(const std::string& name, uint32_t key, uint32_t modifiers) {
    if (name.size() > kMaxNameLength) {
        raise(kErrNameTooLong, "Key Name too long (max 32 characters).");
    }
    for (const Record& r : records_) {
        if (r.name == name) {
            raise(kErrDuplicate, "The Key Name '" + name + "' is already registered.");
        }
    }
    // The tick count makes the atom's text unique to this registration even when another copy of the
    // program registers the same name.
    std::string atomName = name + "_" + platform_.executableName() + "_" + std::to_string(platform_.tickCount());
    if (atomName.size() > kMaxAtomNameLength) {
        atomName.resize(kMaxAtomNameLength);
    }
    const uint16_t atom = platform_.globalAddAtom(atomName);
    if (atom == 0) {
        const std::string text = ApiErrorText(platform_.lastError());
        raise(kErrAddAtom, "Failed to add GlobalAtom" + (text.empty() ? "" : " [" + text + "]"));
    }
    if (!platform_.registerHotKey(window_, atom, modifiers, key)) {
        const uint32_t error = platform_.lastError();
        platform_.globalDeleteAtom(atom);
        const std::string text = ApiErrorText(error);
        raise(kErrRegister, "Failed to Register Hot Key" + (text.empty() ? "" : " [" + text + "]"));
    }
    records_.push_back(Record{name, std::move(atomName), atom, key, modifiers});
}

void cRegHotKey::UnregisterKey(const std::string& name) {
    const int index = IndexOfKey(name);
    const int32_t atom = record(index).atom;
    platform_.unregisterHotKey(window_, atom);
    platform_.globalDeleteAtom(static_cast<uint16_t>(atom & 0xFFFF));
    if (count() < 2) {
        records_.clear();
        return;
    }
    // The copy always reads the record after the removed one and writes the removed one's slot, whatever
    // the loop counter says. Removing any record but the last of three or more therefore leaves the next
    // record twice and drops the last one. Kept exactly so: Clear works from the end and never meets it.
    const size_t target = static_cast<size_t>(index - 1);
    for (int i = index; i <= count() - 1; ++i) {
        records_[target] = records_[target + 1];
    }
    records_.pop_back();
}

void cRegHotKey::RestoreAndActivate(HotKeyWindow window) {
    constexpr int kSwShow = 5;
    constexpr uint32_t kWmSysCommand = 0x112;
    // SC_RESTORE in the sign-extended form a 16-bit constant takes when widened; the system only looks
    // at the low bits of the command.
    constexpr std::uintptr_t kScRestoreSignExtended = 0xFFFFF120u;
    if (!platform_.isWindowVisible(window)) {
        platform_.showWindow(window, kSwShow);
    }
    if (platform_.isIconic(window)) {
        platform_.sendMessage(window, kWmSysCommand, kScRestoreSignExtended, 0);
    }
    platform_.setForegroundWindow(window);
}

int cRegHotKey::IndexOfKey(const std::string& name) const {
    for (int i = 1; i <= count(); ++i) {
        if (record(i).name == name) {
            return i;
        }
    }
    raise(kErrNoSuchKey, "No hot key registered under the name '" + name + "'");
}

std::string cRegHotKey::ApiErrorText(uint32_t code) const {
    return platform_.systemErrorText(code);
}

std::intptr_t cRegHotKey::windowProc(HotKeyWindow, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
    if (msg != kWmHotKey) {
        return 0;
    }
    // The identifier is an int; the two system ones are negative.
    const auto id = static_cast<int32_t>(static_cast<uint32_t>(wParam & 0xFFFFFFFFu));
    if (id == kIdHotSnapDesktop) {
        raiseHotKeyPress("Desktop Snapshot", 0, kVkSnapshot);
    } else if (id == kIdHotSnapWindow) {
        // Reported with modifier 4 whatever the system says.
        raiseHotKeyPress("Window Snapshot", 4, kVkSnapshot);
    } else {
        const Record* found = nullptr;
        for (const Record& r : records_) {
            if (r.atom == id) {
                found = &r;
                break;
            }
        }
        if (found) {
            const Record pressed = *found;
            raiseHotKeyPress(pressed.name, pressed.modifiers, pressed.key);
        } else {
            const auto bits = static_cast<uint32_t>(static_cast<std::uintptr_t>(lParam) & 0xFFFFFFFFu);
            raiseHotKeyPress("Unknown HotKey", bits & 0xFFFFu, bits >> 16);
        }
    }
    return 0;
}

void cRegHotKey::raise(int32_t code, const std::string& description) const {
    throw ObjectError(code, platform_.executableName() + ".cRegHotKey", description);
}

void cRegHotKey::raiseHotKeyPress(const std::string& name, uint32_t modifiers, uint32_t key) {
    // A copy: the handler may clear or even destroy this object.
    const HotKeyPressHandler handler = HotKeyPress;
    if (handler) {
        handler(name, modifiers, key);
    }
}

}  // namespace tl
