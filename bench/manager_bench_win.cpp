// Times the list manager on a real LISTBOX: 20,000 selected files added to a list of 20,000 with the
// duplicate check on, and, beside it, what asking the list box itself (LB_FINDSTRINGEXACT) for each file
// would cost. Usage: manager_bench_win [listed] [added] [rounds]
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "base/file_system_win.h"
#include "base/random.h"
#include "base/text_file_win.h"
#include "base/ui.h"
#include "base/unique_handle_win.h"
#include "base/utf8_win.h"
#include "bench/manager_bench_data.h"
#include "lists/list_box_win.h"
#include "manager/list_manager.h"
#include "tests/unit/manager/fake_manager_view.h"

using namespace tl::bench;

int main(int argc, char** argv) {
    using namespace tl;
    const int listed = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20000;
    const int added = argc > 2 ? std::max(1, std::atoi(argv[2])) : 20000;
    const int rounds = argc > 3 ? std::max(1, std::atoi(argv[3])) : 3;

    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH + 1, temp);
    const std::string listFile = narrow(temp) + "tl-manager-bench.wall";
    Win32FileSystem fs;
    Win32AnsiCodePage ansi;
    {
        std::string text;
        for (int i = 0; i < listed; ++i) {
            text += listedPath(i) + "\t2\r\n";
        }
        fs.writeNewFile(listFile, text);
    }

    std::printf("%d files added to a %d-entry list in a LISTBOX, duplicate check on, %d rounds\n", added, listed,
                rounds);
    std::vector<double> load, add, sort;
    HWND lastBox = nullptr;
    unique_hwnd host(::CreateWindowExW(0, L"STATIC", L"bench", WS_OVERLAPPEDWINDOW, 0, 0, 600, 400, nullptr, nullptr,
                                       nullptr, nullptr));
    for (int round = 0; round < rounds; ++round) {
        // Hidden while it fills, as List1 is during a folder or file add.
        unique_hwnd box(::CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD | LBS_EXTENDEDSEL | LBS_NOTIFY | WS_VSCROLL, 0,
                                          0, 500, 300, host.get(), nullptr, nullptr, nullptr));
        Win32ListBox list1(box.get());
        test::FakeManagerView view;
        SilentUi ui;
        NoRemover remover;
        DefaultRandom random;
        AppState app;
        app.settings.CheckForDuplicates = true;
        app.listPath = listFile;
        ListManager manager({view, list1, fs, ansi, ui, app, random, remover, [] {}});

        auto start = Clock::now();
        manager.load(1024, 768);
        load.push_back(msSince(start));

        view.dir1 = "E:\\Camera\\Import";
        for (int i = 0; i < added; ++i) {
            view.selectedFiles.push_back(addedName(i));
        }
        start = Clock::now();
        manager.addFiles();
        add.push_back(msSince(start));

        start = Clock::now();
        manager.sortList();
        sort.push_back(msSince(start));
        if (list1.count() != listed + added) {
            std::fprintf(stderr, "the list box holds %d lines\n", list1.count());
            return 1;
        }
        if (round == rounds - 1) {
            lastBox = box.release();
        }
    }
    report("read the list into List1", load);
    report("add the selected files", add);
    report("sort and refill List1", sort);

    // The list box's own exact search, file by file, on the full list: sampled.
    const int sample = std::min(added, 100);
    auto start = Clock::now();
    int hits = 0;
    for (int i = 0; i < sample; ++i) {
        const std::string probe = "E:\\Camera\\Import\\X" + addedName(i);
        hits += ::SendMessageW(lastBox, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                               reinterpret_cast<LPARAM>(widen(probe).c_str())) >= 0
                    ? 1
                    : 0;
    }
    const double perFile = msSince(start) / sample;
    std::printf("%-44s %8.3f ms per file on %d lines (%d hits): about %.1f s for %d files as the list grows\n",
                "LB_FINDSTRINGEXACT instead", perFile, listed + added, hits, perFile * added * 0.75 / 1000.0, added);
    ::DestroyWindow(lastBox);
    ::DeleteFileW(widen(listFile).c_str());
    return 0;
}
