#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "hotkey/reg_hot_key.h"

namespace tl::test {

// A system of global atoms and hot keys in memory. A combination can be held once, by anyone, as the
// system allows; every call is logged in order.
class FakeHotKeyPlatform : public HotKeyPlatform {
  public:
    static constexpr uint32_t kErrorHotKeyAlreadyRegistered = 1409;

    struct HotKey {
        HotKeyWindow window;
        int32_t id;
        uint32_t modifiers;
        uint32_t key;
    };
    struct Route {
        HotKeyWindow window;
        cRegHotKey* target;
    };

    uint16_t globalAddAtom(const std::string& name) override {
        log.push_back("add atom " + name);
        if (failAddAtom) {
            error = 8;
            return 0;
        }
        const uint16_t atom = nextAtom++;
        atoms[atom] = name;
        return atom;
    }
    void globalDeleteAtom(uint16_t atom) override {
        log.push_back("delete atom " + std::to_string(atom));
        atoms.erase(atom);
        error = 0;  // a later call must not find the error of the call that failed
    }
    bool registerHotKey(HotKeyWindow window, int32_t id, uint32_t modifiers, uint32_t key) override {
        log.push_back("register " + std::to_string(id));
        for (const HotKey& k : hotKeys) {
            if (k.modifiers == modifiers && k.key == key) {
                error = kErrorHotKeyAlreadyRegistered;
                return false;
            }
        }
        hotKeys.push_back({window, id, modifiers, key});
        return true;
    }
    void unregisterHotKey(HotKeyWindow window, int32_t id) override {
        log.push_back("unregister " + std::to_string(id));
        std::erase_if(hotKeys, [&](const HotKey& k) { return k.window == window && k.id == id; });
    }
    uint32_t lastError() override { return error; }
    std::string systemErrorText(uint32_t code) override {
        const auto it = errorTexts.find(code);
        return it == errorTexts.end() ? std::string() : it->second;
    }
    uint32_t tickCount() override { return tick; }
    std::string executableName() override { return "tessaline"; }
    void startRouting(HotKeyWindow window, cRegHotKey& target) override {
        log.push_back("start routing " + std::to_string(window));
        routes.push_back({window, &target});
    }
    void stopRouting(HotKeyWindow window, cRegHotKey& target) override {
        log.push_back("stop routing " + std::to_string(window));
        std::erase_if(routes, [&](const Route& r) { return r.window == window && r.target == &target; });
    }
    bool isWindowVisible(HotKeyWindow) override { return true; }
    void showWindow(HotKeyWindow, int) override {}
    bool isIconic(HotKeyWindow) override { return false; }
    void sendMessage(HotKeyWindow, uint32_t, std::uintptr_t, std::intptr_t) override {}
    void setForegroundWindow(HotKeyWindow) override {}

    // The system pressing a registered combination: WM_HOTKEY to whatever is routed for its window.
    void press(uint32_t modifiers, uint32_t key) {
        for (const HotKey& k : hotKeys) {
            if (k.modifiers == modifiers && k.key == key) {
                deliver(k.window, cRegHotKey::kWmHotKey, static_cast<std::uintptr_t>(k.id),
                        static_cast<std::intptr_t>(modifiers | (key << 16)));
                return;
            }
        }
    }
    void deliver(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
        const std::vector<Route> current = routes;  // a handler may start or stop routes
        for (const Route& r : current) {
            if (r.window == window) {
                r.target->windowProc(window, msg, wParam, lParam);
            }
        }
    }

    std::vector<std::string> log;
    std::map<uint16_t, std::string> atoms;
    std::vector<HotKey> hotKeys;
    std::vector<Route> routes;
    std::map<uint32_t, std::string> errorTexts{{kErrorHotKeyAlreadyRegistered, "Hot key is already registered.\r\n"}};
    uint16_t nextAtom = 0xC001;
    uint32_t error = 0;
    bool failAddAtom = false;
    uint32_t tick = 12345;
};

}  // namespace tl::test
