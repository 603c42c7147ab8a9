#include "tracker/directory_changes.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

using Folders = std::vector<std::string>;

TEST(FoldersToWatch, EachFolderOnceAndNoneInsideAnother) {
    const struct {
        TrackedFolders tracked;
        Folders expected;
    } cases[] = {{{""}, {}},
                 {{"", "C:\\Pics", "D:\\Photos"}, {"C:\\Pics", "D:\\Photos"}},
                 {{"", "C:\\Pics", "c:\\PICS"}, {"C:\\Pics"}},
                 {{"", "C:\\Pics", "C:\\Pics\\"}, {"C:\\Pics"}},
                 {{"", "C:\\Pics\\Sub", "C:\\Pics"}, {"C:\\Pics"}},
                 {{"", "C:\\Pics", "C:\\Pics\\Sub"}, {"C:\\Pics"}},
                 {{"", "C:\\Pics", "C:\\Pictures"}, {"C:\\Pics", "C:\\Pictures"}},
                 {{"C:\\", "", "C:\\Pics"}, {"C:\\"}},
                 {{"C:\\Pics", "  ", "", "D:\\x"}, {"C:\\Pics", "D:\\x"}}};
    for (const auto& c : cases) {
        EXPECT_EQ(foldersToWatch(c.tracked), c.expected) << testing::PrintToString(c.tracked);
    }
}

std::string describe(const std::vector<ShellChange>& changes) {
    std::string out;
    for (const auto& c : changes) {
        out += std::to_string(c.event) + ":" + c.name1 + "=" + c.path1;
        if (!c.path2.empty()) {
            out += ">" + c.name2 + "=" + c.path2;
        }
        out += ";";
    }
    return out;
}

TEST(DirectoryChangeReader, TurnsWatchReportsIntoShellChanges) {
    using A = DirectoryAction;
    struct Report {
        A action;
        const char* path;
        bool isDirectory;
    };
    const struct {
        const char* what;
        std::vector<Report> reports;
        std::string expected;
    } cases[] = {
        {"added file", {{A::Added, "C:\\P\\a.jpg", false}}, "2:a.jpg=C:\\P\\a.jpg;"},
        {"added folder", {{A::Added, "C:\\P\\Sub", true}}, "8:Sub=C:\\P\\Sub;"},
        {"removed", {{A::Removed, "C:\\P\\a.jpg", false}}, "4:a.jpg=C:\\P\\a.jpg;"},
        {"modified", {{A::Modified, "C:\\P\\a.jpg", false}}, ""},
        {"rename",
         {{A::RenamedOldName, "C:\\P\\a.jpg", false}, {A::RenamedNewName, "C:\\P\\b.jpg", false}},
         "1:a.jpg=C:\\P\\a.jpg>b.jpg=C:\\P\\b.jpg;"},
        {"folder rename",
         {{A::RenamedOldName, "C:\\P\\A", false}, {A::RenamedNewName, "C:\\P\\B", true}},
         "131072:A=C:\\P\\A>B=C:\\P\\B;"},
        {"new name alone", {{A::RenamedNewName, "C:\\P\\b.jpg", false}}, "2:b.jpg=C:\\P\\b.jpg;"},
        {"old name alone, then something else",
         {{A::RenamedOldName, "C:\\P\\a.jpg", false}, {A::Added, "C:\\P\\c.jpg", false}},
         "4:a.jpg=C:\\P\\a.jpg;2:c.jpg=C:\\P\\c.jpg;"},
    };
    for (const auto& c : cases) {
        DirectoryChangeReader reader;
        std::vector<ShellChange> all;
        for (const auto& r : c.reports) {
            auto got = reader.read(r.action, r.path, r.isDirectory);
            all.insert(all.end(), got.begin(), got.end());
        }
        EXPECT_EQ(describe(all), c.expected) << c.what;
    }
}

TEST(DirectoryChangeReader, AnOldNameWaitsForItsNewNameAcrossReads) {
    DirectoryChangeReader reader;
    EXPECT_TRUE(reader.read(DirectoryAction::RenamedOldName, "C:\\P\\a.jpg", false).empty());
    EXPECT_EQ(describe(reader.read(DirectoryAction::RenamedNewName, "C:\\P\\Sub\\a.jpg", false)),
              "1:a.jpg=C:\\P\\a.jpg>a.jpg=C:\\P\\Sub\\a.jpg;");
}

}  // namespace
}  // namespace tl
