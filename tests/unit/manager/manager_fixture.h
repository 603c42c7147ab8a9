#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "base/random.h"
#include "base/text_file.h"
#include "manager/fake_manager_view.h"
#include "manager/list_manager.h"
#include "support/fake_list_box.h"
#include "support/fake_ui.h"
#include "support/picture_bytes.h"
#include "support/rooted_file_system.h"
#include "support/temp_dir.h"

namespace tl::test {

// Deletes what it is told to, except the paths it is told to keep.
class FakeRemover : public FileRemover {
  public:
    bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) override {
        calls.push_back(path + (recycle ? " recycle" : "") + (useShell ? " shell" : ""));
        return keep.count(path) == 0;
    }
    std::vector<std::string> calls;
    std::set<std::string> keep;
};

// A list manager over a real folder tree (drive C: and the others under a temporary folder), a fake list
// box, a fake window and a fake user.
class ManagerTest : public ::testing::Test {
  protected:
    ManagerTest() {
        app.settings.CheckForDuplicates = true;
        app.settings.AutoSortFolder = false;
        app.settings.RatioTolerance = 0.25;
        app.settings.HalfRatio = 1.5;
        std::filesystem::create_directories(tmp.path() + "/C");
    }

    // A file at a Windows path ("C:\Photos\a.jpg"), its folders made as needed.
    void file(const std::string& path, const std::string& contents = "x") {
        const std::filesystem::path native = PosixFileSystem::nativePath(fs.map(path));
        std::filesystem::create_directories(native.parent_path());
        std::ofstream(native, std::ios::binary) << contents;
    }
    void files(std::initializer_list<std::string> paths) {
        for (const auto& p : paths) {
            file(p);
        }
    }
    void folder(const std::string& path) {
        std::filesystem::create_directories(PosixFileSystem::nativePath(fs.map(path)));
    }

    // Each entry i is line i, and the entries end in their one spare element.
    void expectAligned() {
        const auto& e = manager.entries();
        ASSERT_FALSE(e.empty());
        ASSERT_EQ(imageCount(e), list1.count()) << "entries and List1 differ in length";
        for (int i = 0; i < list1.count(); ++i) {
            EXPECT_EQ(e[static_cast<size_t>(i)].path, list1.text(i)) << "entry " << i;
        }
        EXPECT_TRUE(e.back().path.empty()) << "the spare element must stay empty";
    }

    TempDir tmp;
    RootedFileSystem fs{tmp.path()};
    Windows1252 ansi;
    FakeListBox list1;
    FakeUi ui;
    AppState app;
    DefaultRandom random;
    FakeRemover remover;
    FakeManagerView view;
    int settingsSaves = 0;
    ListManager manager{{view, list1, fs, ansi, ui, app, random, remover, [this] { ++settingsSaves; }}};
};

}  // namespace tl::test
