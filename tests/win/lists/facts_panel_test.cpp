#include <gtest/gtest.h>

#include <cstring>

#include "base/file_system_win.h"
#include "base/unique_handle_win.h"
#include "lists/facts_panel_win.h"
#include "lists/image_facts.h"
#include "support/program_dir.h"

namespace tl::wintest {
namespace {

// A window offering a facts panel, laid out as the forms do.
class PanelHost {
  public:
    PanelHost(int boxWidth, int boxHeight) {
        window_.reset(::CreateWindowExA(0, "STATIC", "facts", WS_OVERLAPPEDWINDOW, 0, 0, 700, 500, nullptr, nullptr,
                                        nullptr, nullptr));
        panel.preview = child("STATIC", SS_BITMAP, 10, 10, boxWidth, boxHeight);
        panel.previewDefaultWidth = boxWidth;
        panel.previewDefaultHeight = boxHeight;
        panel.prevFrame = child("BUTTON", BS_GROUPBOX, 10, 300, 300, 120);
        ::ShowWindow(panel.prevFrame, SW_HIDE);
        panel.fsize = child("STATIC", SS_LEFT, 20, 320, 200, 20);
        panel.fdate = child("STATIC", SS_LEFT, 20, 345, 200, 20);
        panel.dimensions = child("STATIC", SS_LEFT, 20, 370, 200, 20);
    }
    ~PanelHost() { window_.reset(); }

    static std::string text(HWND w) {
        char buf[256] = {};
        ::GetWindowTextA(w, buf, sizeof buf);
        return buf;
    }
    SIZE previewSize() const {
        RECT r{};
        ::GetWindowRect(panel.preview, &r);
        return {r.right - r.left, r.bottom - r.top};
    }
    static bool visible(HWND w) { return (::GetWindowLongA(w, GWL_STYLE) & WS_VISIBLE) != 0; }

    FactsPanel panel;

  private:
    HWND child(const char* cls, DWORD style, int x, int y, int w, int h) {
        return ::CreateWindowExA(0, cls, "", WS_CHILD | WS_VISIBLE | style, x, y, w, h, window_.get(), nullptr, nullptr,
                                 nullptr);
    }
    unique_hwnd window_;
};

struct PictureCase {
    const char* type;
    int width;
    int height;
};

TEST(FactsPanel, ShowsEveryKindOfPictureWithItsFacts) {
    ProgramDir dir(false);
    const PictureCase cases[] = {
        {"bmp", 640, 480}, {"jpg", 1024, 768}, {"gif", 100, 50}, {"png", 7, 13}, {"jpg", 50, 1000}, {"bmp", 303, 257},
    };
    Win32FileSystem fs;
    for (const PictureCase& c : cases) {
        const std::string name =
            std::string("p") + std::to_string(c.width) + "x" + std::to_string(c.height) + "." + c.type;
        SCOPED_TRACE(name);
        writePicture(dir.file(name), c.type, c.width, c.height);
        PanelHost host(303, 257);
        WallpaperEntry entry{dir.file(name), kCenter};
        ASSERT_TRUE(ShowImageFacts(entry, host.panel));

        const auto facts = fs.facts(entry.path);
        ASSERT_TRUE(facts);
        EXPECT_EQ(entry.width, c.width);
        EXPECT_EQ(entry.height, c.height);
        EXPECT_EQ(entry.size, static_cast<double>(facts->size));
        EXPECT_EQ(PanelHost::text(host.panel.dimensions),
                  std::to_string(c.width) + " x " + std::to_string(c.height) + " pixels");
        EXPECT_EQ(PanelHost::text(host.panel.fsize), sizeText(static_cast<double>(facts->size)));
        EXPECT_EQ(PanelHost::text(host.panel.fdate), dateText(facts->modified));
        EXPECT_FALSE(PanelHost::text(host.panel.fdate).empty());

        const auto fit = fitPreview(c.width, c.height, 303, 257);
        ASSERT_TRUE(fit);
        EXPECT_EQ(host.previewSize().cx, fit->width);
        EXPECT_EQ(host.previewSize().cy, fit->height);
        EXPECT_TRUE(PanelHost::visible(host.panel.preview));
        EXPECT_TRUE(PanelHost::visible(host.panel.prevFrame));

        BITMAP shown{};
        const auto bitmap =
            reinterpret_cast<HBITMAP>(::SendMessageA(host.panel.preview, STM_GETIMAGE, IMAGE_BITMAP, 0));
        ASSERT_TRUE(bitmap) << "the preview shows a picture";
        ASSERT_TRUE(::GetObjectA(bitmap, sizeof shown, &shown));
        EXPECT_EQ(shown.bmWidth, fit->width) << "the preview holds only the fitted copy";
        EXPECT_EQ(shown.bmHeight, fit->height);
        EXPECT_EQ(host.panel.picture(), nullptr) << "the full picture is not kept unless asked for";
    }
}

TEST(FactsPanel, StoredFactsAreUsedAsTheyAre) {
    ProgramDir dir(false);
    writePicture(dir.file("a.png"), "png", 640, 480);
    PanelHost host(200, 150);
    WallpaperEntry entry{dir.file("a.png"), kTile, 100, 400, 3000000.0};  // height, width, size
    ASSERT_TRUE(ShowImageFacts(entry, host.panel));
    EXPECT_EQ(PanelHost::text(host.panel.dimensions), "400 x 100 pixels");
    EXPECT_EQ(PanelHost::text(host.panel.fsize), "3 MB");
    EXPECT_EQ(entry.width, 400);
    EXPECT_EQ(entry.size, 3000000.0);
    EXPECT_EQ(host.previewSize().cx, 200);
    EXPECT_EQ(host.previewSize().cy, 50);

    // One stored side missing: both are taken from the picture.
    WallpaperEntry half{dir.file("a.png"), kTile, 0, 400, 0.0};
    ASSERT_TRUE(ShowImageFacts(half, host.panel));
    EXPECT_EQ(half.width, 640);
    EXPECT_EQ(half.height, 480);
}

TEST(FactsPanel, KeepsTheFullPictureForTheCallerWhenAsked) {
    ProgramDir dir(false);
    writePicture(dir.file("a.bmp"), "bmp", 31, 17, 0x123456);
    PanelHost host(100, 100);
    host.panel.keepPicture = true;
    WallpaperEntry entry{dir.file("a.bmp")};
    ASSERT_TRUE(ShowImageFacts(entry, host.panel));
    ASSERT_NE(host.panel.picture(), nullptr);
    Picture full = host.panel.takePicture();
    EXPECT_EQ(host.panel.picture(), nullptr);
    ASSERT_EQ(full.width(), 31);
    ASSERT_EQ(full.height(), 17);
    EXPECT_EQ(full.stride(), 96u);
    EXPECT_EQ(full.infoHeader().biHeight, 17) << "bottom-up";
    EXPECT_EQ(full.infoHeader().biBitCount, 24);

    // The bits are the BMP file's own pixel rows, bottom row first.
    const std::string file = dir.read("a.bmp");
    BITMAPFILEHEADER fh{};
    std::memcpy(&fh, file.data(), sizeof fh);
    BITMAPINFOHEADER ih{};
    std::memcpy(&ih, file.data() + sizeof fh, sizeof ih);
    ASSERT_EQ(ih.biBitCount, 24);
    ASSERT_GT(ih.biHeight, 0);
    for (int row = 0; row < 17; ++row) {
        const size_t at = static_cast<size_t>(row) * 96;
        ASSERT_EQ(std::memcmp(full.bits() + at, file.data() + fh.bfOffBits + at, 31 * 3), 0) << "row " << row;
    }
}

TEST(FactsPanel, APictureThatCantBeLoadedGivesFalse) {
    ProgramDir dir(false);
    dir.write("broken.jpg", std::string("\xFF\xD8\xFF\xE0 this is no picture", 24));
    dir.write("empty.png", "");
    writePicture(dir.file("good.gif"), "gif", 40, 30);
    PanelHost host(100, 100);
    host.panel.keepPicture = true;
    WallpaperEntry good{dir.file("good.gif")};
    ASSERT_TRUE(ShowImageFacts(good, host.panel));
    for (const char* name : {"broken.jpg", "empty.png", "missing.bmp"}) {
        WallpaperEntry entry{dir.file(name), kScale};
        EXPECT_FALSE(ShowImageFacts(entry, host.panel)) << name;
        EXPECT_EQ(entry.width, 0) << name;
        EXPECT_EQ(entry.size, 0.0) << name;
        EXPECT_FALSE(PanelHost::visible(host.panel.preview)) << name;
        EXPECT_EQ(host.panel.picture(), nullptr) << "no stale picture is left for the caller";
    }
    EXPECT_FALSE(dir.exists("missing.bmp")) << "looking never creates a file";
}

TEST(FactsPanel, RepeatedLoadsGiveBackEveryGdiObject) {
    ProgramDir dir(false);
    writePicture(dir.file("a.jpg"), "jpg", 800, 600);
    writePicture(dir.file("b.png"), "png", 333, 1000);
    writePicture(dir.file("c.gif"), "gif", 64, 64);
    const auto gdiObjects = [] { return ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS); };
    PanelHost host(303, 257);
    {
        WallpaperEntry warmUp{dir.file("a.jpg")};
        ASSERT_TRUE(ShowImageFacts(warmUp, host.panel));
        host.panel.clearPreview();
    }
    const DWORD before = gdiObjects();
    for (int i = 0; i < 30; ++i) {
        host.panel.keepPicture = i % 2 == 0;
        WallpaperEntry e{dir.file(i % 3 == 0 ? "a.jpg" : (i % 3 == 1 ? "b.png" : "c.gif"))};
        ASSERT_TRUE(ShowImageFacts(e, host.panel));
        if (i % 4 == 0) {
            Picture taken = host.panel.takePicture();
        }
    }
    WallpaperEntry missing{dir.file("none.jpg")};
    EXPECT_FALSE(ShowImageFacts(missing, host.panel));
    host.panel.clearPreview();
    host.panel.releasePicture();
    EXPECT_EQ(gdiObjects(), before);
}

}  // namespace
}  // namespace tl::wintest
