#include "app/startup.h"

#include "app/app_state.h"
#include "app/command_line.h"
#include "app/settings.h"
#include "base/text.h"

namespace tl {

HandOver chooseHandOver(const AppState& app) {
    if (app.startMode != "setup" && !trimBlanks(app.listPath).empty()) {
        return HandOver::MainForm;
    }
    return HandOver::Manager;
}

HandOver startUp(AppState& app, std::string_view commandLine, ProfileFile& profile, FileSystem& fs, Ui& ui,
                 char decimalSeparator) {
    loadSettings(app, profile, fs, ui, decimalSeparator);
    parseCommandLine(app, commandLine);
    return chooseHandOver(app);
}

}  // namespace tl
