#include "changer/desktop_options.h"

#include <algorithm>
#include <limits>

#include "app/settings.h"
#include "base/convert.h"
#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"
#include "changer/input_box.h"

namespace tl {

namespace {

// A count of minutes or seconds read from text, kept inside 32 bits.
int32_t roundedInt32(double value) {
    if (auto n = toInt32(value)) {
        return *n;
    }
    return value < 0 ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int32_t>::max();
}

}  // namespace

bool isBrowserWallpaper(std::string_view wallpaperValue) {
    const std::string_view v = trimBlanks(wallpaperValue);
    const size_t n = std::string_view(kBrowserWallpaperName).size();
    if (v.size() < n) {
        return false;
    }
    // One character more than the name: a value such as "...\MyInternet Explorer Wallpaper.bmp" counts too.
    const size_t tail = std::min(v.size(), n + 1);
    return containsNoCase(v.substr(v.size() - tail), kBrowserWallpaperName);
}

DesktopOptions::DesktopOptions(Settings& settings, Platform platform, std::function<void(const std::string&)> addFile)
    : settings_(settings), platform_(platform), addFile_(std::move(addFile)) {}

void DesktopOptions::findDesktopListView() {
    DesktopShell& shell = platform_.shell;
    const ShellWindow progman = shell.findWindow("Progman", "Program Manager");
    if (!progman) {
        return;
    }
    const ShellWindow view = shell.findChildWindow(progman, "SHELLDLL_DefView");
    if (!view) {
        return;
    }
    if (const ShellWindow icons = shell.findChildWindow(view, "SysListView32")) {
        desktopListView_ = icons;
    }
}

bool DesktopOptions::setIconTextBackground(std::uint32_t colour) {
    return platform_.shell.sendMessage(desktopListView_, kLvmSetTextBkColor, 0, static_cast<std::intptr_t>(colour)) > 0;
}

void DesktopOptions::makeIconTextTransparent(bool redraw) {
    setIconTextBackground(kClrNone);
    platform_.shell.updateWindow(desktopListView_);
    if (redraw) {
        platform_.shell.invalidateWindow(desktopListView_);
    }
}

void DesktopOptions::afterWallpaperApplied() {
    if (settings_.TransText) {
        makeIconTextTransparent(true);
    }
}

void DesktopOptions::showDesktopIcons(bool show) {
    if (settings_.UseActiveDesktop) {
        return;
    }
    DesktopShell& shell = platform_.shell;
    if (const ShellWindow icons = shell.firstChild(shell.findWindow("Progman", "Program Manager"))) {
        shell.showWindow(icons, show);
    }
}

bool DesktopOptions::isSomethingMaximised() {
    return platform_.shell.isSomethingMaximised();
}

void DesktopOptions::onTransTimer() {
    if (settings_.TransText) {
        makeIconTextTransparent(false);
    }
    // The catch runs whatever TrapIEWallpaper says: that setting only drives its menu check mark.
    if (catchInProgress_) {
        return;
    }
    const std::string value = platform_.system.desktopValue("Wallpaper");
    if (isBrowserWallpaper(value)) {
        saveCaughtWallpaper(std::string(trimBlanks(value)));
    }
}

void DesktopOptions::saveCaughtWallpaper(const std::string& path) {
    // The save dialog pumps messages, so transTimer keeps ticking under it: the mark stops a second dialog.
    catchInProgress_ = true;
    const FileDialogRequest request{
        .title = "Choose the destination for this image",
        .filter = "Image|*.bmp",
        .defaultName = "wallpaper.bmp",
        .initialDirectory = settings_.WallpaperDirectory,
        .defaultExtension = ".bmp",
    };
    const std::optional<std::string> target = platform_.saveDialog.ask(request);
    if (target && !target->empty()) {
        platform_.busyPointer.show(true);
        // A failed copy is not reported; the list only gets a file that is there.
        if (platform_.fs.copyFile(path, *target) && addFile_) {
            addFile_(*target);
        }
        platform_.busyPointer.show(false);
    }
    catchInProgress_ = false;
}

int32_t DesktopOptions::getScreenSaverTimeout() {
    // Asked without a result buffer, the call fails on every system, so the registry value is what counts.
    if (platform_.system.systemParameter(kSpiGetScreenSaveTimeout, 0, 0)) {
        return 0;
    }
    const double seconds = leadingNumber(platform_.system.desktopValue("ScreenSaveTimeout"));
    return seconds > 0 ? roundedInt32(seconds / 60) : 0;
}

bool DesktopOptions::setScreenSaverTimeout(int32_t minutes) {
    // A negative count would wrap to a huge unsigned timeout; the saver stays off instead, as the note says.
    const long long seconds =
        std::clamp<long long>(static_cast<long long>(minutes) * 60, 0, std::numeric_limits<int32_t>::max());
    return platform_.system.systemParameter(kSpiSetScreenSaveTimeout, static_cast<unsigned>(seconds),
                                            kSpifUpdateAndBroadcast);
}

void DesktopOptions::disableScreenSaver() {
    const int32_t timeout = getScreenSaverTimeout();
    if (settings_.ScreenSaver >= 0 && timeout >= 0) {
        settings_.ScreenSaver = timeout;
    }
    setScreenSaverTimeout(0);
}

void DesktopOptions::enableScreenSaver() {
    int32_t minutes = settings_.ScreenSaver;
    if (minutes == -1) {
        const std::string answer = platform_.inputBox.ask(
            "Please enter the number of minutes you want the screensaver to wait:", "Screensaver Timeout", "10");
        minutes = roundedInt32(leadingNumber(answer));
    }
    // A negative count is kept, so that the next Enable does not ask again; each time it says why.
    if (minutes < 0) {
        platform_.ui.messageBox("Screen saver left off (use a value over zero to enable)", "Note",
                                kMbOk | kMbIconInformation);
    }
    settings_.ScreenSaver = minutes;
    setScreenSaverTimeout(minutes);
}

bool DesktopOptions::toggleOption(OptionItem item) {
    auto flip = [](bool& setting) { return setting = !setting; };
    switch (item) {
        case OptionItem::mnuSmartSwitch:
            return flip(settings_.SmartSwitch);
        case OptionItem::mnuAutoShowDesktop:
            return flip(settings_.AutomaticShowOnDesktop);
        case OptionItem::mnuAutoShutdown:
            return flip(settings_.AutomaticShutdown);
        case OptionItem::mnuOptUseActiveDesktop:
            return flip(settings_.UseActiveDesktop);
        case OptionItem::mnuTrapIEWallpaper:
            return flip(settings_.TrapIEWallpaper);
        case OptionItem::mnuTransIcon:
            // Turning it off leaves the text background as it is: there is no colour to go back to.
            if (flip(settings_.TransText)) {
                makeIconTextTransparent(false);
            }
            return settings_.TransText;
        case OptionItem::mnuOptionsHideIcons:
        case OptionItem::mnuTrayDisplayHideIcons:
            iconsHidden_ = !iconsHidden_;
            showDesktopIcons(!iconsHidden_);
            return iconsHidden_;
    }
    return false;
}

std::vector<OptionCheck> DesktopOptions::checkMarks() const {
    return {
        {OptionItem::mnuSmartSwitch, settings_.SmartSwitch},
        {OptionItem::mnuAutoShowDesktop, settings_.AutomaticShowOnDesktop},
        {OptionItem::mnuAutoShutdown, settings_.AutomaticShutdown},
        {OptionItem::mnuOptUseActiveDesktop, settings_.UseActiveDesktop},
        {OptionItem::mnuTrapIEWallpaper, settings_.TrapIEWallpaper},
        {OptionItem::mnuTransIcon, settings_.TransText},
        {OptionItem::mnuOptionsHideIcons, iconsHidden_},
        {OptionItem::mnuTrayDisplayHideIcons, iconsHidden_},
    };
}

void automaticShutdown() {}

}  // namespace tl
