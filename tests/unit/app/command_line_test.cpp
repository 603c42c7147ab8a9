#include "app/command_line.h"

#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/startup.h"

namespace tl {
namespace {

struct CommandLineCase {
    const char* line;
    const char* startMode;
    const char* listPath;
    HandOver handOver;
};

class CommandLineRules : public testing::TestWithParam<CommandLineCase> {};

TEST_P(CommandLineRules, SetsStartModeListPathAndHandOver) {
    const auto& c = GetParam();
    AppState app;
    app.listPath = "C:\\TL\\MyWallpapers.wall";  // as the settings left it
    parseCommandLine(app, c.line);
    EXPECT_EQ(app.startMode, c.startMode) << "line: " << c.line;
    EXPECT_EQ(app.listPath, c.listPath) << "line: " << c.line;
    EXPECT_EQ(app.settings.LastList, c.listPath) << "listPath and LastList are one";
    EXPECT_EQ(chooseHandOver(app), c.handOver) << "line: " << c.line;
}

INSTANTIATE_TEST_SUITE_P(
    Table,
    CommandLineRules,
    testing::Values(
        CommandLineCase{"", "", "C:\\TL\\MyWallpapers.wall", HandOver::MainForm},
        CommandLineCase{"/setup C:\\Lists\\Summer.wall", "setup", "C:\\Lists\\Summer.wall", HandOver::Manager},
        CommandLineCase{"\"C:\\My Lists\\a b.wall\"", "", "C:\\My Lists\\a b.wall", HandOver::MainForm},
        CommandLineCase{"/auto \"C:\\My Lists\\a.wall\"", "auto", "C:\\My Lists\\a.wall", HandOver::MainForm},
        // Everything after the first blank is the path, whatever it is.
        CommandLineCase{"C:\\My Lists\\a.wall /auto", "auto", "Lists\\a.wall /auto", HandOver::MainForm},
        CommandLineCase{"/AUTO D:\\X.WALL", "auto", "D:\\X.WALL", HandOver::MainForm},
        // "/auto" wins over "/setup" wherever they stand.
        CommandLineCase{"/setup /auto x.wall", "auto", "/auto x.wall", HandOver::MainForm},
        // ".wall" anywhere counts, not only at the end.
        CommandLineCase{"C:\\lists.wall\\b", "", "C:\\lists.wall\\b", HandOver::MainForm},
        CommandLineCase{"old.TXT", "", "old.TXT", HandOver::MainForm},
        // Only one quote at each end is removed.
        CommandLineCase{"\"\"a.wall\"\"", "", "\"a.wall\"", HandOver::MainForm},
        CommandLineCase{"\"a.wall", "", "a.wall", HandOver::MainForm},
        // A path with no list extension leaves the settings' list alone.
        CommandLineCase{"C:\\pictures\\x.jpg", "", "C:\\TL\\MyWallpapers.wall", HandOver::MainForm},
        // A switch glued to the path has no blank to start from: the settings' list stays.
        CommandLineCase{"/autoC:\\a.wall", "auto", "C:\\TL\\MyWallpapers.wall", HandOver::MainForm},
        // Blanks around the path after a switch are trimmed.
        CommandLineCase{"/auto    C:\\a.wall   ", "auto", "C:\\a.wall", HandOver::MainForm},
        // A quoted path that is only blanks inside is no list.
        CommandLineCase{"/setup \" .wall\"", "setup", " .wall", HandOver::Manager}));

TEST(CommandLine, EmptyListPathGoesToTheManager) {
    AppState app;
    app.listPath = "   ";
    parseCommandLine(app, "");
    EXPECT_EQ(chooseHandOver(app), HandOver::Manager);
}

TEST(CommandLine, ArgumentsFollowTheProgramName) {
    EXPECT_EQ(argumentsFromCommandLine("\"C:\\Program Files\\TL\\tessaline.exe\" /setup  x.wall"), "/setup  x.wall");
    EXPECT_EQ(argumentsFromCommandLine("tessaline.exe   \"C:\\a b.wall\""), "\"C:\\a b.wall\"");
    EXPECT_EQ(argumentsFromCommandLine("tessaline.exe"), "");
    EXPECT_EQ(argumentsFromCommandLine("\"tessaline.exe\""), "");
    EXPECT_EQ(argumentsFromCommandLine("\"C:\\TL\\tessaline.exe\"/auto"), "/auto");
}

}  // namespace
}  // namespace tl
