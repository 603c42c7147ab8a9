#pragma once

#include <string>
#include <string_view>

namespace tl {

struct AppState;

// The raw text after the program name in a full command line (GetCommandLineW, as UTF-8), quotes included.
std::string argumentsFromCommandLine(std::string_view fullCommandLine);

// Sets app.startMode and app.listPath from the arguments: "/auto" or "/setup" anywhere (any case), and a
// ".txt" or ".wall" list path, which after a switch starts at the first blank.
void parseCommandLine(AppState& app, std::string_view commandLine);

}  // namespace tl
