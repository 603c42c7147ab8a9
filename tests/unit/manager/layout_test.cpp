#include "manager/manager_layout.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace tl {
namespace {

bool overlap(const LayoutRect& a, const LayoutRect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

// Each control whole and inside its parent's width x height, and none on top of another. `names` gives the
// controls' names in order; a name ending in '*' is a drop-down list, which overlaps what is below it only
// when open: its closed height is a row.
void expectApartAndInside(const std::string& names,
                          std::vector<LayoutRect> rects,
                          int width,
                          int height,
                          const std::string& where) {
    std::istringstream in(names);
    std::vector<std::string> name(rects.size());
    for (size_t i = 0; i < rects.size(); ++i) {
        in >> name[i];
        LayoutRect& r = rects[i];
        r.height = name[i].back() == '*' ? 24 : r.height;
        EXPECT_TRUE(r.x >= 0 && r.y >= 0 && r.right() <= width && r.bottom() <= height) << where << ": " << name[i];
        EXPECT_TRUE(r.width > 0 && r.height > 0) << where << ": " << name[i];
        for (size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(overlap(rects[j], r)) << where << ": " << name[j] << " and " << name[i];
        }
    }
}

TEST(ManagerLayout, ControlsStayApartAndInsideAtEverySizeAndTheListTakesTheRoom) {
    for (const auto& [w, h] : {std::pair{0, 0}, std::pair{762, 470}, std::pair{1900, 1000}}) {
        for (const bool browser : {true, false}) {
            const ManagerLayout l = layoutManager(w, h, browser);
            const std::string where = std::to_string(w) + "x" + std::to_string(h) + (browser ? " browser" : "");
            std::vector<LayoutRect> window = {l.list1,     l.command1,     l.conFrame,
                                              l.addOrType, l.dupeChecking, l.prevFrame};
            if (browser) {
                window.push_back(l.browseFrame);
            }
            expectApartAndInside("list1 command1 conFrame addOrType* dupeChecking prevFrame browseFrame", window,
                                 std::max(w, ManagerLayout::kMinClientWidth),
                                 std::max(h, ManagerLayout::kMinClientHeight), where);
            expectApartAndInside("drive1* dir1 addFolder file1 fileCount addFiles",
                                 {l.drive1, l.dir1, l.addFolder, l.file1, l.fileCount, l.addFiles}, l.browseFrame.width,
                                 l.browseFrame.height, where + " browseFrame");
            expectApartAndInside("orType* removeFile killFile", {l.orType, l.removeFile, l.killFile}, l.conFrame.width,
                                 l.conFrame.height, where + " conFrame");
            expectApartAndInside("preview label1 fsize label2 fdate label3 dimensions",
                                 {l.preview, l.label1, l.fsize, l.label2, l.fdate, l.label3, l.dimensions},
                                 l.prevFrame.width, l.prevFrame.height, where + " prevFrame");
            // The busy text fits the window shrunk to its busy size (449 x 98 pixels, title and menu included).
            EXPECT_LE(l.scanDir.right(), 449 - 16) << where;
        }
    }
    const ManagerLayout small = layoutManager(762, 470, true);
    const ManagerLayout large = layoutManager(1262, 970, true);
    EXPECT_EQ(large.list1.width - small.list1.width, 500);
    EXPECT_EQ(large.list1.height - small.list1.height, 500);
    EXPECT_EQ(large.prevFrame.width, small.prevFrame.width) << "the preview column keeps its width";
    EXPECT_EQ(layoutManager(762, 470, false).list1.height - small.list1.height, 190 + 6) << "without the browser";
}

}  // namespace
}  // namespace tl
