// The facts panel's Win32 half: pictures decoded, a fitted copy in a real STATIC control, the labels,
// and every GDI object given back.
#include <gtest/gtest.h>

#include <cstring>

#include "base/file_system_win.h"
#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "lists/facts_panel_win.h"
#include "lists/image_facts.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

// A window offering a facts panel, laid out as the forms do.
class PanelHost {
  public:
    PanelHost(int boxWidth, int boxHeight) {
        panel.preview = child("STATIC", SS_BITMAP, 10, 10, boxWidth, boxHeight);
        panel.previewDefaultWidth = boxWidth;
        panel.previewDefaultHeight = boxHeight;
        panel.prevFrame = child("BUTTON", BS_GROUPBOX, 10, 300, 300, 120);
        ::ShowWindow(panel.prevFrame, SW_HIDE);
        panel.fsize = child("STATIC", SS_LEFT, 20, 320, 200, 20);
        panel.fdate = child("STATIC", SS_LEFT, 20, 345, 200, 20);
        panel.dimensions = child("STATIC", SS_LEFT, 20, 370, 200, 20);
    }
    static bool visible(HWND w) { return (::GetWindowLongA(w, GWL_STYLE) & WS_VISIBLE) != 0; }
    // The size of the bitmap the preview shows, "none" when it shows none.
    std::string previewBitmap() const {
        BITMAP shown{};
        const auto bitmap = reinterpret_cast<HBITMAP>(::SendMessageA(panel.preview, STM_GETIMAGE, IMAGE_BITMAP, 0));
        return bitmap && ::GetObjectA(bitmap, sizeof shown, &shown)
                   ? std::to_string(shown.bmWidth) + "x" + std::to_string(shown.bmHeight)
                   : "none";
    }

    FactsPanel panel;  // after the window's controls have gone, as in the forms
    unique_hwnd window{::CreateWindowExA(0,
                                         "STATIC",
                                         "facts",
                                         WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                         0,
                                         0,
                                         700,
                                         500,
                                         nullptr,
                                         nullptr,
                                         nullptr,
                                         nullptr)};

  private:
    HWND child(const char* cls, DWORD style, int x, int y, int w, int h) {
        return ::CreateWindowExA(0, cls, "", WS_CHILD | WS_VISIBLE | style, x, y, w, h, window.get(), nullptr, nullptr,
                                 nullptr);
    }
};

TEST(FactsPanel, ShowsEachKindOfPictureFittedWithItsFactsAndHidesWhatCantBeLoaded) {
    ProgramDir dir(false);
    Win32FileSystem fs;
    struct Case {
        const char* type;
        int width, height;
    };
    for (const Case& c : {Case{"bmp", 640, 480}, Case{"jpg", 1024, 768}, Case{"gif", 100, 50}, Case{"png", 7, 13},
                          Case{"jpg", 50, 1000}}) {
        const std::string name = std::to_string(c.width) + "x" + std::to_string(c.height) + "." + c.type;
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
        EXPECT_EQ(windowText(host.panel.dimensions),
                  std::to_string(c.width) + " x " + std::to_string(c.height) + " pixels");
        EXPECT_EQ(windowText(host.panel.fsize), sizeText(static_cast<double>(facts->size)));
        EXPECT_EQ(windowText(host.panel.fdate), dateText(facts->modified));
        const auto fit = fitPreview(c.width, c.height, 303, 257);
        ASSERT_TRUE(fit);
        EXPECT_EQ(host.previewBitmap(), std::to_string(fit->width) + "x" + std::to_string(fit->height))
            << "the preview holds only the fitted copy";
        RECT r{};
        ::GetWindowRect(host.panel.preview, &r);
        EXPECT_EQ(r.right - r.left, fit->width);
        EXPECT_EQ(r.bottom - r.top, fit->height);
        EXPECT_TRUE(PanelHost::visible(host.panel.preview) && PanelHost::visible(host.panel.prevFrame));
        EXPECT_EQ(host.panel.picture(), nullptr) << "the full picture is not kept unless asked for";
    }

    // Stored facts are used as they are: height, width, size.
    PanelHost host(200, 150);
    WallpaperEntry stored{dir.file("640x480.bmp"), kTile, 100, 400, 3000000.0};
    ASSERT_TRUE(ShowImageFacts(stored, host.panel));
    EXPECT_EQ(windowText(host.panel.dimensions), "400 x 100 pixels");
    EXPECT_EQ(windowText(host.panel.fsize), "3 MB");
    EXPECT_EQ(host.previewBitmap(), "200x50");

    dir.write("broken.jpg", std::string("\xFF\xD8\xFF\xE0 this is no picture", 24));
    dir.write("empty.png", "");
    host.panel.keepPicture = true;
    for (const char* name : {"broken.jpg", "empty.png", "missing.bmp"}) {
        WallpaperEntry entry{dir.file(name), kScale};
        EXPECT_FALSE(ShowImageFacts(entry, host.panel)) << name;
        EXPECT_EQ(entry.width, 0) << name;
        EXPECT_FALSE(PanelHost::visible(host.panel.preview)) << name;
        EXPECT_EQ(host.panel.picture(), nullptr) << "no stale picture is left for the caller";
    }
    EXPECT_FALSE(dir.exists("missing.bmp")) << "looking never creates a file";
}

TEST(FactsPanel, AHiddenWindowsPreviewIsMadeWhenItShows) {
    ProgramDir dir(false);
    writePicture(dir.file("a.jpg"), "jpg", 640, 480);
    writePicture(dir.file("b.bmp"), "bmp", 100, 50);
    PanelHost host(200, 150);
    ::ShowWindow(host.window.get(), SW_HIDE);
    WallpaperEntry a{dir.file("a.jpg")};
    ASSERT_TRUE(ShowImageFacts(a, host.panel));
    EXPECT_EQ(windowText(host.panel.dimensions), "640 x 480 pixels") << "the facts at once";
    EXPECT_EQ(host.previewBitmap(), "none") << "no preview while nobody sees it";
    WallpaperEntry b{dir.file("b.bmp")};
    ASSERT_TRUE(ShowImageFacts(b, host.panel));
    ::ShowWindow(host.window.get(), SW_SHOW);
    host.panel.showPendingPreview();
    EXPECT_EQ(host.previewBitmap(), "200x100") << "the last picture's preview, as the window shows";
    EXPECT_TRUE(PanelHost::visible(host.panel.preview));
    host.panel.showPendingPreview();
    EXPECT_EQ(host.previewBitmap(), "200x100") << "made once";

    // A picture gone before the window shows leaves the preview empty.
    ::ShowWindow(host.window.get(), SW_HIDE);
    ASSERT_TRUE(ShowImageFacts(a, host.panel));
    ASSERT_TRUE(::DeleteFileA(dir.file("a.jpg").c_str()));
    ::ShowWindow(host.window.get(), SW_SHOW);
    host.panel.showPendingPreview();
    EXPECT_EQ(host.previewBitmap(), "none");
}

TEST(FactsPanel, KeepsTheFullPictureAsTheBmpFilesOwnRows) {
    ProgramDir dir(false);
    writePicture(dir.file("a.bmp"), "bmp", 31, 17, 0x123456);
    PanelHost host(100, 100);
    host.panel.keepPicture = true;
    WallpaperEntry entry{dir.file("a.bmp")};
    ASSERT_TRUE(ShowImageFacts(entry, host.panel));
    Picture full = host.panel.takePicture();
    EXPECT_EQ(host.panel.picture(), nullptr);
    ASSERT_EQ(full.width(), 31);
    ASSERT_EQ(full.height(), 17);
    EXPECT_EQ(full.stride(), 96u);
    EXPECT_EQ(full.infoHeader().biHeight, 17) << "bottom-up";
    // The file is bottom-up 24-bit rows too, bottom row first.
    const std::string file = dir.read("a.bmp");
    BITMAPFILEHEADER header{};
    std::memcpy(&header, file.data(), sizeof header);
    for (size_t row = 0; row < 17; ++row) {
        ASSERT_EQ(std::memcmp(full.bits() + row * 96, file.data() + header.bfOffBits + row * 96, 31 * 3), 0) << row;
    }
}

TEST(FactsPanel, RepeatedLoadsGiveBackEveryGdiObject) {
    ProgramDir dir(false);
    const char* names[] = {"a.jpg", "b.png", "c.gif"};
    writePicture(dir.file("a.jpg"), "jpg", 800, 600);
    writePicture(dir.file("b.png"), "png", 333, 1000);
    writePicture(dir.file("c.gif"), "gif", 64, 64);
    const auto gdiObjects = [] { return ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS); };
    PanelHost host(303, 257);
    WallpaperEntry warmUp{dir.file("a.jpg")};
    ASSERT_TRUE(ShowImageFacts(warmUp, host.panel));
    host.panel.clearPreview();
    const DWORD before = gdiObjects();
    for (int i = 0; i < 30; ++i) {
        host.panel.keepPicture = i % 2 == 0;
        WallpaperEntry e{dir.file(names[i % 3])};
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
