// Times the list manager adding 20,000 selected files to a list that already holds 20,000, with the
// duplicate check on: the whole add, and the duplicate lookups alone beside what a linear search of the
// list (the list box's own exact search) would cost.
// Usage: manager_bench [listed] [added] [rounds]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "base/file_system_posix.h"
#include "base/random.h"
#include "base/text_file.h"
#include "base/ui.h"
#include "bench/manager_bench_data.h"
#include "manager/duplicate_index.h"
#include "manager/list_manager.h"
#include "tests/unit/manager/fake_manager_view.h"
#include "tests/unit/support/fake_list_box.h"

namespace {

using namespace tl::bench;

struct Round {
    double loadMs;
    double addMs;
    double sortMs;
};

Round runOnce(const std::string& listFile, int added) {
    tl::PosixFileSystem fs;
    tl::Windows1252 ansi;
    tl::test::FakeListBox list1;
    tl::test::FakeManagerView view;
    SilentUi ui;
    NoRemover remover;
    tl::DefaultRandom random;
    tl::AppState app;
    app.settings.CheckForDuplicates = true;
    app.settings.AutoSortFolder = true;
    app.listPath = listFile;
    tl::ListManager manager({view, list1, fs, ansi, ui, app, random, remover, [] {}});

    Round r{};
    auto start = Clock::now();
    manager.load(1024, 768);
    r.loadMs = msSince(start);

    view.dir1 = "E:\\Camera\\Import";
    view.selectedFiles.reserve(static_cast<size_t>(added));
    for (int i = 0; i < added; ++i) {
        view.selectedFiles.push_back(addedName(i));
    }
    start = Clock::now();
    manager.addFiles();
    r.addMs = msSince(start);

    start = Clock::now();
    manager.sortList();
    r.sortMs = msSince(start);
    if (list1.count() != static_cast<int>(imageCount(manager.entries()))) {
        std::fprintf(stderr, "entries and lines differ\n");
        std::exit(1);
    }
    return r;
}

}  // namespace

int main(int argc, char** argv) {
    const int listed = argc > 1 ? std::atoi(argv[1]) : 20000;
    const int added = argc > 2 ? std::atoi(argv[2]) : 20000;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 5;

    const std::string dir = (std::filesystem::temp_directory_path() / "tl-manager-bench").string();
    std::filesystem::create_directories(dir);
    const std::string listFile = dir + "/listed.wall";
    {
        std::string text;
        for (int i = 0; i < listed; ++i) {
            text += listedPath(i) + "\t2\r\n";
        }
        tl::PosixFileSystem().writeNewFile(listFile, text);
    }

    std::printf("%d files added to a %d-entry list, duplicate check on, %d rounds\n", added, listed, rounds);
    std::vector<double> load;
    std::vector<double> add;
    std::vector<double> sort;
    for (int i = 0; i < rounds; ++i) {
        const Round r = runOnce(listFile, added);
        load.push_back(r.loadMs);
        add.push_back(r.addMs);
        sort.push_back(r.sortMs);
    }
    report("read the list into the manager", load);
    report("add the selected files", add);
    report("sort the 40,000 entries", sort);

    // The lookups alone: the index, against a linear whole-text search of every line without regard to
    // case, which is what asking the list box for each file costs. The linear one is sampled.
    tl::test::FakeListBox box;
    tl::DuplicateIndex index;
    for (int i = 0; i < listed; ++i) {
        box.add(listedPath(i));
        index.add(listedPath(i));
    }
    auto start = Clock::now();
    int hits = 0;
    for (int i = 0; i < added; ++i) {
        hits += index.contains("E:\\Camera\\Import\\" + addedName(i)) ? 1 : 0;
        index.add("E:\\Camera\\Import\\" + addedName(i));
    }
    const double indexMs = msSince(start);
    const int sample = std::min(added, 200);
    start = Clock::now();
    for (int i = 0; i < sample; ++i) {
        hits += box.findExact("E:\\Camera\\Import\\" + addedName(i)) >= 0 ? 1 : 0;
    }
    const double linearPerFile = msSince(start) / sample;
    std::printf("%-44s %8.1f ms for %d lookups (%d hits)\n", "duplicate index", indexMs, added, hits);
    std::printf("%-44s %8.3f ms per lookup, about %.1f s for %d as the list grows\n", "linear search of the list",
                linearPerFile, linearPerFile * added / 1000.0 * 1.5, added);
    std::filesystem::remove_all(dir);
    return 0;
}
