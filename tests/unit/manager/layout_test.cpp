#include "manager/manager_layout.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tl {
namespace {

using Named = std::pair<std::string, LayoutRect>;

bool overlap(const LayoutRect& a, const LayoutRect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

void expectApartAndInside(const std::vector<Named>& rects, int width, int height, const std::string& where) {
    for (size_t i = 0; i < rects.size(); ++i) {
        const auto& [name, r] = rects[i];
        EXPECT_GE(r.x, 0) << where << ": " << name;
        EXPECT_GE(r.y, 0) << where << ": " << name;
        EXPECT_LE(r.right(), width) << where << ": " << name;
        EXPECT_LE(r.bottom(), height) << where << ": " << name;
        EXPECT_GT(r.width, 0) << where << ": " << name;
        EXPECT_GT(r.height, 0) << where << ": " << name;
        for (size_t j = i + 1; j < rects.size(); ++j) {
            EXPECT_FALSE(overlap(r, rects[j].second)) << where << ": " << name << " and " << rects[j].first;
        }
    }
}

// Drop-down lists overlap what is below them only when open; their closed height is a row.
LayoutRect closed(LayoutRect r) {
    r.height = 24;
    return r;
}

TEST(ManagerLayout, ControlsStayApartAndInsideAtEverySize) {
    const std::pair<int, int> sizes[] = {{0, 0}, {762, 470}, {1000, 700}, {1900, 1000}};
    for (const auto& [w, h] : sizes) {
        for (const bool browser : {true, false}) {
            const ManagerLayout l = layoutManager(w, h, browser);
            const int cw = std::max(w, ManagerLayout::kMinClientWidth);
            const int ch = std::max(h, ManagerLayout::kMinClientHeight);
            const std::string where = std::to_string(w) + "x" + std::to_string(h) + (browser ? " browser" : "");
            std::vector<Named> window = {{"list1", l.list1},
                                         {"command1", l.command1},
                                         {"conFrame", l.conFrame},
                                         {"addOrType", closed(l.addOrType)},
                                         {"dupeChecking", l.dupeChecking},
                                         {"prevFrame", l.prevFrame}};
            if (browser) {
                window.push_back({"browseFrame", l.browseFrame});
            }
            expectApartAndInside(window, cw, ch, where);
            expectApartAndInside({{"drive1", closed(l.drive1)},
                                  {"dir1", l.dir1},
                                  {"addFolder", l.addFolder},
                                  {"file1", l.file1},
                                  {"fileCount", l.fileCount},
                                  {"addFiles", l.addFiles}},
                                 l.browseFrame.width, l.browseFrame.height, where + " browseFrame");
            expectApartAndInside({{"orType", closed(l.orType)}, {"removeFile", l.removeFile}, {"killFile", l.killFile}},
                                 l.conFrame.width, l.conFrame.height, where + " conFrame");
            expectApartAndInside({{"preview", l.preview},
                                  {"label1", l.label1},
                                  {"fsize", l.fsize},
                                  {"label2", l.label2},
                                  {"fdate", l.fdate},
                                  {"label3", l.label3},
                                  {"dimensions", l.dimensions}},
                                 l.prevFrame.width, l.prevFrame.height, where + " prevFrame");
            // The busy text fits the window shrunk to its busy size (449 x 98 pixels, title and menu included).
            EXPECT_LE(l.scanDir.right(), 449 - 16) << where;
        }
    }
}

TEST(ManagerLayout, TheListTakesTheRoomTheWindowGivesAndTheBrowserLeaves) {
    const ManagerLayout small = layoutManager(762, 470, true);
    const ManagerLayout large = layoutManager(1262, 970, true);
    EXPECT_EQ(large.list1.width - small.list1.width, 500);
    EXPECT_EQ(large.list1.height - small.list1.height, 500);
    EXPECT_EQ(large.file1.width - small.file1.width, 500) << "the file list widens with the window";
    EXPECT_EQ(large.prevFrame.width, small.prevFrame.width) << "the preview column keeps its width";
    const ManagerLayout hidden = layoutManager(762, 470, false);
    EXPECT_EQ(hidden.list1.height - small.list1.height, 190 + 6);
}

}  // namespace
}  // namespace tl
