// frmMain's panel: minimising to and restoring from the tray, and what its buttons do.
#include <string>

#include "app/app_state.h"
#include "base/text.h"
#include "changer/commands.h"
#include "changer/main_form.h"
#include "changer/tray_rules.h"

namespace tl {

void frmMain::onFormResize(bool visible, FormWindowState state) {
    app_.settings.MainMode = static_cast<int16_t>(state);
    if (state == FormWindowState::Minimized) {
        // Back to the tray: the menus up to date, the icon, and the clock unless paused.
        refreshMenus();
        setOrType(orientationAtBoxIndex(host_.orTypeIndex()));
        tray_.add(trayIconKind(), trayTip(previewTag_));
        if (app_.paused) {
            updateTrayIcon();
        } else {
            host_.setMinuteTimer(true);
        }
    } else if (visible) {
        // On the panel: no automatic changes and no tray icon. A maximised panel is still the panel.
        host_.setMinuteTimer(false);
        host_.layoutPanel();
        tray_.remove();
    }
}

void frmMain::onPanelButton(PanelButton button, int shiftKeys) {
    if (panelBusy_) {
        host_.beep();
        return;
    }
    switch (button) {
        case PanelButton::Image5:
            host_.openWebPage();
            break;
        case PanelButton::Image1:
            writeList();
            // The manager may load the tracker for the list it edits; ours goes first.
            if (trackerLoaded_) {
                host_.allowTrackerUnload();
                stopTracker();
            }
            host_.showManager();
            host_.unloadForm();
            break;
        case PanelButton::Image4:
            host_.popUpOptionsMenu();
            break;
        case PanelButton::Image3:
            removeSelectedEntries();
            break;
        case PanelButton::Image2: {
            const DeleteFlags flags = deleteFlagsFor(shiftKeys);
            panelBusy_ = true;
            deleteSelectedFiles(flags.recycle, flags.useShell);
            panelBusy_ = false;
            break;
        }
        case PanelButton::Preview:
            if (!previewTag_.empty()) {
                host_.showPreviewWindow(previewTag_);
            }
            break;
    }
}

void frmMain::onSetDefaultSaveDir() {
    std::string& directory = app_.settings.WallpaperDirectory;
    if (directory.empty()) {
        directory = app_.programDir;
        if (!endsWith(directory, "\\")) {
            directory += "\\";
        }
    }
    // The dialog starts at the root of the current directory's drive ("C:\").
    const std::string start = host_.currentDirectory().substr(0, 3);
    const auto chosen = host_.browseForFolder("Select a folder:", "Select a folder to save the wallpaper to", start);
    if (chosen && !chosen->empty()) {
        directory = *chosen;
    }
}

}  // namespace tl
