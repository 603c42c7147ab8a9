#include "changer/main_form.h"

#include <algorithm>
#include <utility>

#include "app/app_state.h"
#include "base/file_system.h"
#include "base/random.h"
#include "base/text.h"
#include "changer/commands.h"
#include "changer/tray_rules.h"
#include "lists/list_box.h"

namespace tl {

frmMain::frmMain(AppState& app,
                 FileSystem& fs,
                 const AnsiCodePage& ansi,
                 RandomSource& random,
                 MainFormHost& host,
                 Desktop& desktop,
                 WallpaperPictures& pictures,
                 TrayIcon& tray)
    : app_(app), fs_(fs), ansi_(ansi), random_(random), host_(host), desktop_(desktop), pictures_(pictures), tray_(tray) {}

bool frmMain::onLoad() {
    host_.buildResolutionMenu();
    host_.fillOrType();
    screen_ = host_.screenSize();
    monitors_ = monitorsInTurn(host_.monitors());
    readListFile(app_.listPath);
    if (host_.list1().count() == 0) {
        // The program lives on in the manager.
        host_.showManager();
        host_.unloadForm();
        return false;
    }
    // Start mode "auto" leaves the panel as it is; with AutomaticShutdown it would shut down here, a step
    // that has always done nothing and is kept so.
    if (app_.startMode != "auto") {
        host_.applyMainMode(app_.settings.MainMode);
    }
    host_.preparePanel();
    host_.setMinuteTimer(true);
    refreshMenus();
    host_.applyIconTextOptions();
    buildListMenu();
    tray_.add(trayIconKind(), trayTip(previewTag_));
    host_.registerSwitchHotKey();
    switchWallpaper(true);
    return true;
}

void frmMain::unload() {
    if (unloaded_) {
        return;
    }
    unloaded_ = true;
    host_.setMinuteTimer(false);
    tray_.remove();
    writeList();
    host_.saveSettings();
    stopTracker();
}

void frmMain::resumeAfterCancelledShutdown() {
    if (!unloaded_) {
        return;
    }
    unloaded_ = false;
    startTracker();
    if (host_.livesInTray()) {
        tray_.add(trayIconKind(), trayTip(previewTag_));
        host_.setMinuteTimer(!app_.paused);
    }
}

void frmMain::onMinuteTimer() {
    if (++tenMinuteCount_ >= 10) {
        tenMinuteCount_ = 0;
        tenMinutes();
    }
    ++minuteCount_;
    const int delay = app_.settings.Delay;
    if (minuteCount_ >= delay) {
        minuteCount_ = 0;
        if (app_.settings.SmartSwitch && desktop_.isSomethingMaximised()) {
            // Held back while the user works in a maximised window: asked again at the next tick.
            if (delay >= 1) {
                minuteCount_ = delay - 1;
            }
        } else {
            switchWallpaper(false);
        }
    }
}

void frmMain::tenMinutes() {
    // Removing and adding the icon brings it back if the shell lost it.
    tray_.remove();
    tray_.add(trayIconKind(), trayTip(previewTag_));
    writeList();
    host_.saveSettings();
}

void frmMain::switchWallpaper(bool force) {
    ListBoxView& list = host_.list1();
    const int oldIndex = list.listIndex();
    if (force) {
        forceNextApply_ = true;
    }
    const int count = list.count();
    if (count == 0) {
        return;
    }
    minuteCount_ = 0;
    int newIndex = oldIndex;
    if (picturesPerSwitch(monitorLayout(), monitors_.size()) > 1 &&
        (app_.settings.Mode == 1 || app_.settings.Mode == 2)) {
        newIndex = pickOtherPictures(oldIndex, count);
    } else if (app_.settings.Mode == 1) {
        // Reseeded from the time of day before every draw; a repeat of the current line is allowed.
        random_.reseed(host_.secondsSinceMidnight());
        newIndex = static_cast<int>(count * random_.next());
        if (newIndex >= count) {
            newIndex = count - 1;
        }
    } else if (app_.settings.Mode == 2) {
        newIndex = oldIndex == count - 1 ? 0 : oldIndex + 1;
    }
    engineMove(newIndex);
}

int frmMain::pickOtherPictures(int oldIndex, int count) {
    const int pictures = picturesPerSwitch(monitorLayout(), monitors_.size());
    previousOthers_ = others_;
    others_.clear();
    std::vector<int> taken;
    int index = oldIndex;
    if (app_.settings.Mode == 1) {
        // Seeded once for all the draws: reseeded from the clock before each, draws made in the same
        // instant would all give the same picture.
        random_.reseed(host_.secondsSinceMidnight());
    }
    for (int k = 0; k < pictures; ++k) {
        if (app_.settings.Mode == 2) {
            index = index >= count - 1 ? 0 : index + 1;
        } else {
            // No picture on two monitors at once while the list has enough of them.
            for (int attempt = 0; attempt < 32; ++attempt) {
                index = std::min(static_cast<int>(count * random_.next()), count - 1);
                if (count < pictures || std::find(taken.begin(), taken.end(), index) == taken.end()) {
                    break;
                }
            }
        }
        taken.push_back(index);
        if (k + 1 < pictures) {
            others_.push_back(entries_[static_cast<size_t>(index)]);
        }
    }
    const auto same = [](const std::vector<WallpaperEntry>& a, const std::vector<WallpaperEntry>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
            return x.path == y.path && x.orientation == y.orientation;
        });
    };
    // A move of the history even when the current line's picture stays, and an apply when the other
    // monitors' pictures change.
    switchedOthers_ = true;
    othersChanged_ = !same(others_, previousOthers_);
    return index;
}

void frmMain::onPrevious() {
    const int index = previousIndex_;
    minuteCount_ = 0;
    if (index < 0 || index >= host_.list1().count()) {
        return;
    }
    // The other monitors go back a step with the current line.
    std::swap(others_, previousOthers_);
    forceNextApply_ = true;
    engineMove(index);
}

void frmMain::engineMove(int index) {
    ListBoxView& list = host_.list1();
    busy_ = true;
    const int oldIndex = list.listIndex();
    if (oldIndex >= 0) {
        list.setSelected(oldIndex, false);
    }
    list.setListIndex(index);
    onList1Click();
}

void frmMain::onPause() {
    const bool paused = !menus_.checked(mnuPaused);
    menus_.setChecked(mnuPaused, paused);
    menus_.setChecked(mnuTrayPause, paused);
    app_.paused = paused;
    host_.setMinuteTimer(!paused);
    host_.menusChanged();
    updateTrayIcon();
}

void frmMain::onRandom() {
    const bool random = !menus_.checked(mnuRandom);
    menus_.setChecked(mnuRandom, random);
    menus_.setChecked(mnuTrayRandom, random);
    app_.settings.Mode = random ? 1 : 2;
    host_.menusChanged();
    updateTrayIcon();
}

void frmMain::onDelay() {
    const int16_t before = app_.settings.Delay;
    host_.showDelayDialog();
    if (app_.settings.Delay != before) {
        refreshMenus();
    }
}

void frmMain::onListItem(int index) {
    if (index < 0 || index >= static_cast<int>(menus_.listItems.size())) {
        return;
    }
    readListFile(menus_.listItems[static_cast<size_t>(index)].path);
    buildListMenu();
    switchWallpaper(true);
}

void frmMain::onList1Click() {
    if (clickDepth_ > 0) {
        pendingClick_ = true;
        return;
    }
    do {
        pendingClick_ = false;
        ++clickDepth_;
        list1Click();
        --clickDepth_;
    } while (pendingClick_);
}

void frmMain::list1Click() {
    ListBoxView& list = host_.list1();
    const int index = list.listIndex();
    if (busy_) {
        // The engine's move: the entry is applied as it stands, its orientation shown without a click.
        busy_ = false;
        if (!validIndex(index)) {
            return;
        }
        ignoreOrientationClick_ = true;
        setOrType(entries_[static_cast<size_t>(index)].orientation);
        ignoreOrientationClick_ = false;
        bool force = false;
        changeWallpaper(index, force);
        host_.showFactsLabels();
        return;
    }
    if (!validIndex(index)) {
        return;
    }
    WallpaperEntry& entry = entries_[static_cast<size_t>(index)];
    if (previewTag_ == entry.path) {
        // The line on show clicked again: its orientation steps on, Center, Tile, Stretch, Scale, Fill.
        entry.orientation = nextOrientation(entry.orientation);
        setOrType(entry.orientation);
        onOrTypeClick();
    } else {
        setOrType(entry.orientation);
        onOrTypeClick();
        bool force = false;
        changeWallpaper(index, force);
    }
    host_.showFactsLabels();
}

void frmMain::onOrTypeClick() {
    if (!ignoreOrientationClick_) {
        const Orientation chosen = orientationAtBoxIndex(host_.orTypeIndex());
        if (chosen >= 0 && chosen != lastAppliedOrientation_) {
            ListBoxView& list = host_.list1();
            const int count = std::min(list.count(), imageCount(entries_));
            for (int i = 0; i < count; ++i) {
                if (list.isSelected(i)) {
                    entries_[static_cast<size_t>(i)].orientation = static_cast<Orientation>(chosen);
                }
            }
            writeList();
            const int index = list.listIndex();
            if (validIndex(index)) {
                bool force = false;
                changeWallpaper(index, force);
            }
        }
    }
    ignoreOrientationClick_ = false;
}

void frmMain::onSwitchOrientation(Orientation orientation) {
    setOrType(orientation);
    onOrTypeClick();
}

void frmMain::setOrType(Orientation orientation) {
    host_.setOrTypeIndex(orientationBoxIndex(orientation));
    for (const auto& [id, code] : {std::pair{mnuTraySOCentered, kCenter}, std::pair{mnuTraySOTiled, kTile},
                                   std::pair{mnuTraySOStretch, kStretch}, std::pair{mnuTraySOScaled, kScale},
                                   std::pair{mnuTraySOFilled, kFill}}) {
        menus_.setChecked(id, code == orientation);
    }
    host_.menusChanged();
}

void frmMain::onTrayMouse(long x) {
    switch (trayMessage(x)) {
        case TrayEvent::RightButtonDown:
            host_.popUpTrayMenu();
            break;
        case TrayEvent::LeftButtonDown:
            switchWallpaper(false);
            break;
        case TrayEvent::DoubleClick:
        case TrayEvent::None:
            break;
    }
}

void frmMain::onTrayQuit() {
    if (trackerLoaded_) {
        host_.allowTrackerUnload();
    }
    host_.unloadForm();
}

void frmMain::onTaskbarCreated() {
    if (!unloaded_ && host_.livesInTray()) {
        tray_.add(trayIconKind(), trayTip(previewTag_));
    }
}

void frmMain::onDisplayChange() {
    screen_ = host_.screenSize();
    const std::vector<ScreenRect> before = monitors_;
    monitors_ = monitorsInTurn(host_.monitors());
    if (monitors_ == before) {
        return;
    }
    // Monitors that went take their pictures with them; the current line's stays, on the last one.
    const size_t others = monitors_.empty() ? 0 : monitors_.size() - 1;
    if (others_.size() > others) {
        others_.resize(others);
    }
    refreshMonitorChecks();
    layOutAgain();
}

void frmMain::onMonitorLayout(MonitorLayout layout) {
    app_.settings.MonitorMode = static_cast<int16_t>(layout);
    host_.saveSettings();
    refreshMonitorChecks();
    if (layout == MonitorLayout::EachOwn && monitors_.size() > 1) {
        // Each monitor its own picture at once, not at the next switch.
        switchWallpaper(true);
        return;
    }
    others_.clear();
    previousOthers_.clear();
    layOutAgain();
}

void frmMain::layOutAgain() {
    const int index = host_.list1().listIndex();
    if (!validIndex(index) || entries_[static_cast<size_t>(index)].path != previewTag_) {
        return;  // nothing on show yet
    }
    if (!composedOnShow_ && !composes(entries_[static_cast<size_t>(index)].orientation)) {
        return;  // one monitor and a picture the desktop lays out itself, as always
    }
    // The same pictures again: "Previous" still goes back to what was before them.
    const int previous = previousIndex_;
    const int current = currentIndex_;
    bool force = true;
    changeWallpaper(index, force);
    previousIndex_ = previous;
    currentIndex_ = current;
}

void frmMain::refreshMonitorChecks() {
    const MonitorLayout layout = monitorLayout();
    menus_.setChecked(mnuDisplayMonitorsSame, layout == MonitorLayout::SameOnEvery);
    menus_.setChecked(mnuDisplayMonitorsEach, layout == MonitorLayout::EachOwn);
    menus_.setChecked(mnuDisplayMonitorsAcross, layout == MonitorLayout::Across);
    host_.menusChanged();
}

MonitorLayout frmMain::monitorLayout() const {
    return resolvedMonitorLayout(app_.settings.MonitorMode, monitors_.size());
}

bool frmMain::composes(Orientation orientation) const {
    return monitors_.size() > 1 || orientation == kFill;
}

bool frmMain::onMenuCommand(int id) {
    if (isListItemCommand(id)) {
        onListItem(id - mnuListItemFirst);
        return true;
    }
    switch (id) {
        case mnuTrayNextPaper:
            switchWallpaper(false);
            return true;
        case mnuPreviousPaper:
            onPrevious();
            return true;
        case mnuPaused:
        case mnuTrayPause:
            onPause();
            return true;
        case mnuRandom:
        case mnuTrayRandom:
            onRandom();
            return true;
        case mnuDelay:
        case mnuTrayDelay:
            onDelay();
            return true;
        case mnuTraySOCentered:
            onSwitchOrientation(kCenter);
            return true;
        case mnuTraySOTiled:
            onSwitchOrientation(kTile);
            return true;
        case mnuTraySOStretch:
            onSwitchOrientation(kStretch);
            return true;
        case mnuTraySOScaled:
            onSwitchOrientation(kScale);
            return true;
        case mnuTraySOFilled:
            onSwitchOrientation(kFill);
            return true;
        case mnuDisplayMonitorsSame:
            onMonitorLayout(MonitorLayout::SameOnEvery);
            return true;
        case mnuDisplayMonitorsEach:
            onMonitorLayout(MonitorLayout::EachOwn);
            return true;
        case mnuDisplayMonitorsAcross:
            onMonitorLayout(MonitorLayout::Across);
            return true;
        case mnuTrayRemoveFromList:
        case mnuRemoveFile:
            removeSelectedEntries();
            return true;
        case mnuTrayDelete:
        case mnuDelete:
            // As Image2 with no key held: to the recycle bin.
            onPanelButton(PanelButton::Image2, kNoKeys);
            return true;
        case mnuTrackedFolders:
            onTrackedFolders();
            return true;
        case mnuSetDefaultSaveDir:
            onSetDefaultSaveDir();
            return true;
        case mnuTrayQuit:
            onTrayQuit();
            return true;
        default:
            return false;
    }
}

ListBoxView& frmMain::removalList() {
    return host_.list1();
}

void frmMain::clearPreview() {
    pictures_.clearPreview();
    previewTag_.clear();
}

void frmMain::hidePreviewFrame() {
    pictures_.hidePreviewFrame();
}

void frmMain::selectLineAndClick(int index) {
    engineMove(index);
}

void frmMain::readListFile(std::string path) {
    // The tracker adds the folders it is given to those it holds: the old list's go with it first.
    stopTracker();
    ListFileContents contents = tl::readListFile(fs_, ansi_, path, ListReader::Changer, app_.settings.DefaultAddOrientation);
    entries_ = std::move(contents.entries);
    trackedFolders_ = std::move(contents.trackedFolders);
    longestPath_ = contents.longestPath;
    app_.listPath = std::move(path);
    refreshList1();
    hasTrackedFolders_ = trackedFolders_.size() > 1;
    startTracker();
}

void frmMain::startTracker() {
    if (hasTrackedFolders_ && app_.settings.UseTracker && !trackerLoaded_) {
        host_.loadTracker(trackedFolders_);
        trackerLoaded_ = true;
    }
}

void frmMain::stopTracker() {
    if (trackerLoaded_) {
        host_.unloadTracker();
        trackerLoaded_ = false;
    }
}

void frmMain::onTrackedFolders() {
    if (!trackerLoaded_) {
        // The window edits the list's folders whether or not they are watched: with UseTracker off it is
        // loaded for the editing only and lets the changes it hears of pass.
        host_.loadTracker(trackedFolders_);
        trackerLoaded_ = true;
        if (!app_.settings.UseTracker) {
            host_.setTrackerIgnoreEvents(true);
        }
    }
    host_.showTracker();
}

void frmMain::refreshList1() {
    ListBoxView& list = host_.list1();
    list.clear();
    for (int i = 0; i < imageCount(entries_); ++i) {
        list.add(entries_[static_cast<size_t>(i)].path);
    }
}

void frmMain::refreshMenus() {
    const Settings& s = app_.settings;
    const std::string delay = "Delay (" + std::to_string(s.Delay) + ")";
    menus_.setCaption(mnuDelay, delay);
    menus_.setCaption(mnuTrayDelay, delay);
    menus_.setChecked(mnuRandom, s.Mode == 1);
    menus_.setChecked(mnuTrayRandom, s.Mode == 1);
    menus_.setChecked(mnuPaused, app_.paused);
    menus_.setChecked(mnuTrayPause, app_.paused);
    // The desktop options' check marks are theirs to keep.
    refreshMonitorChecks();
}

void frmMain::buildListMenu() {
    std::string dir = app_.programDir;
    if (!endsWith(dir, "\\")) {
        dir += "\\";
    }
    const std::string current(trimBlanks(app_.listPath));
    menus_.listItems.clear();
    for (const DirEntry& f : fs_.findFiles(dir + "*.wall")) {
        if (!f.isNormalFile() || f.name == "." || f.name == "..") {
            continue;
        }
        ListMenuItem item;
        const std::string_view stem = std::string_view(f.name).substr(0, f.name.size() >= 5 ? f.name.size() - 5 : 0);
        item.caption = std::string(trimBlanks(stem));
        item.path = dir + f.name;
        item.current = item.path == current;
        menus_.listItems.push_back(std::move(item));
        if (menus_.listItems.size() > static_cast<size_t>(mnuListItemLast - mnuListItemFirst)) {
            break;
        }
    }
    host_.menusChanged();
}

void frmMain::updateTrayIcon() {
    tray_.modify(trayIconKind(), trayTip(previewTag_));
}

TrayIconKind frmMain::trayIconKind() const {
    return menus_.checked(mnuPaused) ? TrayIconKind::Paused : TrayIconKind::Normal;
}

bool frmMain::validIndex(int index) const {
    return index >= 0 && index < imageCount(entries_);
}

void frmMain::writeList() {
    writeListFile(fs_, entries_, app_.listPath, trackedFolders_);
}

}  // namespace tl
