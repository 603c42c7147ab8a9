#include "app/command_line.h"

#include "app/app_state.h"
#include "base/text.h"

namespace tl {

std::string argumentsFromCommandLine(std::string_view full) {
    size_t i = 0;
    if (!full.empty() && full[0] == '"') {
        const auto close = full.find('"', 1);
        i = close == std::string_view::npos ? full.size() : close + 1;
    } else {
        while (i < full.size() && full[i] != ' ' && full[i] != '\t') {
            ++i;
        }
    }
    while (i < full.size() && (full[i] == ' ' || full[i] == '\t')) {
        ++i;
    }
    return std::string(full.substr(i));
}

void parseCommandLine(AppState& app, std::string_view commandLine) {
    const std::string lower = lowerCase(commandLine);
    const bool hasAuto = lower.find("/auto") != std::string::npos;
    const bool hasSetup = lower.find("/setup") != std::string::npos;
    if (hasAuto) {
        app.startMode = "auto";
    } else if (hasSetup) {
        app.startMode = "setup";
    }

    if (lower.find(".txt") == std::string::npos && lower.find(".wall") == std::string::npos) {
        return;
    }
    std::string_view candidate = commandLine;
    if (hasAuto || hasSetup) {
        const auto blank = commandLine.find(' ');
        if (blank == std::string_view::npos) {
            return;  // a switch glued to the path: there is no path to take, keep the settings' list
        }
        candidate = trimBlanks(commandLine.substr(blank));
    }
    if (!candidate.empty() && candidate.front() == '"') {
        candidate.remove_prefix(1);
    }
    if (!candidate.empty() && candidate.back() == '"') {
        candidate.remove_suffix(1);
    }
    app.listPath = std::string(candidate);
}

}  // namespace tl
