#include "jpeg/tests/reference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "jpeg/decoder.h"

namespace tl::test {

namespace {

bool run(const std::string& command) {
    return std::system((command + " 2>/dev/null").c_str()) == 0;
}

// The binary PPM djpeg writes with -rgb, grey pictures included.
std::optional<RgbImage> parsePpm(const std::string& data) {
    std::istringstream in(data);
    std::string magic;
    RgbImage image;
    int maxval = 0;
    in >> magic >> image.width >> image.height >> maxval;
    in.get();
    const auto start = static_cast<size_t>(in.tellg());
    const size_t size = static_cast<size_t>(image.width) * image.height * 3;
    if (magic != "P6" || image.width <= 0 || image.height <= 0 || maxval != 255 || data.size() < start + size) {
        return std::nullopt;
    }
    image.rgb.assign(data.begin() + static_cast<ptrdiff_t>(start), data.begin() + static_cast<ptrdiff_t>(start + size));
    return image;
}

void writePpm(const TempDir& dir, const std::string& name, const RgbImage& picture) {
    std::string ppm = "P6\n" + std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n255\n";
    ppm.append(picture.rgb.begin(), picture.rgb.end());
    dir.write(name, ppm);
}

}  // namespace

bool haveJpegTools() {
    return run("cjpeg -version >/dev/null") && run("djpeg -version >/dev/null");
}

RgbImage testPicture(int width, int height, unsigned seed) {
    RgbImage image{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 3)};
    uint32_t state = seed * 2654435761u + 1;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            state = state * 1664525u + 1013904223u;
            const int noise = static_cast<int>(state >> 27) - 16;
            const int edge = ((x / 6 + y / 5) % 3 == 0) ? 70 : -30;
            const int r = x * 255 / std::max(1, width - 1) + noise;
            const int g = y * 255 / std::max(1, height - 1) + edge;
            const int b = 128 + static_cast<int>(100 * std::sin((x + 2 * y) * 0.21)) - noise;
            uint8_t* p = &image.rgb[(static_cast<size_t>(y) * width + x) * 3];
            p[0] = static_cast<uint8_t>(std::clamp(r, 0, 255));
            p[1] = static_cast<uint8_t>(std::clamp(g, 0, 255));
            p[2] = static_cast<uint8_t>(std::clamp(b, 0, 255));
        }
    }
    return image;
}

RgbImage photoPicture(const TempDir& dir, int width, int height, unsigned seed) {
    if (!run("convert -seed " + std::to_string(seed) + " -size " + std::to_string(width) + "x" +
             std::to_string(height) + " plasma:fractal -blur 0x1 -depth 8 " + dir.file("photo.ppm"))) {
        return {};
    }
    return parsePpm(dir.read("photo.ppm")).value_or(RgbImage{});
}

std::vector<uint8_t> encodeJpeg(const TempDir& dir, const RgbImage& picture, const std::string& switches) {
    writePpm(dir, "in.ppm", picture);
    if (!run("cjpeg " + switches + " -outfile " + dir.file("out.jpg") + " " + dir.file("in.ppm"))) {
        return {};
    }
    const std::string jpeg = dir.read("out.jpg");
    return std::vector<uint8_t>(jpeg.begin(), jpeg.end());
}

std::optional<RgbImage> referenceDecode(const TempDir& dir, const std::vector<uint8_t>& jpeg) {
    dir.write("ref.jpg", std::string(jpeg.begin(), jpeg.end()));
    // djpeg exits with 2 after warnings (a file cut short) and still writes the picture.
    std::system(("djpeg -rgb -outfile " + dir.file("ref.ppm") + " " + dir.file("ref.jpg") + " 2>/dev/null").c_str());
    return parsePpm(dir.read("ref.ppm"));
}

std::optional<RgbImage> referenceResize(const TempDir& dir,
                                        const RgbImage& picture,
                                        int width,
                                        int height,
                                        const std::string& filter) {
    writePpm(dir, "resize.ppm", picture);
    if (!run("convert " + dir.file("resize.ppm") + " -filter " + filter + " -resize " + std::to_string(width) + "x" +
             std::to_string(height) + "! -depth 8 " + dir.file("resized.ppm"))) {
        return std::nullopt;
    }
    return parsePpm(dir.read("resized.ppm"));
}

double psnr(const RgbImage& a, const RgbImage& b) {
    if (a.width != b.width || a.height != b.height || a.rgb.size() != b.rgb.size() || a.rgb.empty()) {
        return 0;
    }
    double sum = 0;
    for (size_t i = 0; i < a.rgb.size(); ++i) {
        const double d = a.rgb[i] - b.rgb[i];
        sum += d * d;
    }
    const double mse = sum / static_cast<double>(a.rgb.size());
    return mse == 0 ? 99 : 10 * std::log10(255.0 * 255.0 / mse);
}

std::optional<RgbImage> decodeWithOurs(const std::vector<uint8_t>& jpeg, int threads, bool* complete, int eighths) {
    const JpegHeader header = readJpegHeader(jpeg);
    if (!header.handled) {
        return std::nullopt;
    }
    const int width = jpegScaledSide(header.width, eighths);
    const int height = jpegScaledSide(header.height, eighths);
    const size_t stride = jpegBmpRowBytes(width);
    std::vector<uint8_t> pixels(stride * static_cast<size_t>(height));
    JpegOptions options;
    options.threads = threads;
    options.eighths = eighths;
    const JpegResult result = decodeJpeg(jpeg, pixels, options);
    if (complete) {
        *complete = result == JpegResult::decoded;
    }
    if (result == JpegResult::notHandled) {
        return std::nullopt;
    }
    RgbImage image{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 3)};
    for (int y = 0; y < height; ++y) {
        const uint8_t* row = &pixels[static_cast<size_t>(height - 1 - y) * stride];
        for (int x = 0; x < width; ++x) {
            uint8_t* p = &image.rgb[(static_cast<size_t>(y) * width + x) * 3];
            p[0] = row[x * 3 + 2];
            p[1] = row[x * 3 + 1];
            p[2] = row[x * 3];
        }
    }
    return image;
}

std::optional<RgbImage> decodeRowsWithOurs(const std::vector<uint8_t>& jpeg) {
    // Rows taken as the decoder hands them out, each into its own place.
    class Rows final : public JpegRowSink {
      public:
        explicit Rows(int width) : width_(width), bgr_(static_cast<size_t>(width) * 3) {}
        uint8_t* row(int) override { return bgr_.data(); }
        void rowDone(int y) override {
            image.height = std::max(image.height, y + 1);
            image.rgb.resize(static_cast<size_t>(image.height) * bgr_.size());
            for (size_t x = 0; x < static_cast<size_t>(width_); ++x) {
                uint8_t* p = &image.rgb[static_cast<size_t>(y) * bgr_.size() + x * 3];
                p[0] = bgr_[x * 3 + 2];
                p[1] = bgr_[x * 3 + 1];
                p[2] = bgr_[x * 3];
            }
        }
        RgbImage image;

      private:
        int width_;
        std::vector<uint8_t> bgr_;
    };
    const JpegHeader header = readJpegHeader(jpeg);
    Rows rows(header.width);
    rows.image.width = header.width;
    if (!header.handled || decodeJpegRows(jpeg, rows) == JpegResult::notHandled) {
        return std::nullopt;
    }
    return rows.image;
}

Difference compareImages(const RgbImage& a, const RgbImage& b) {
    Difference d;
    if (a.width != b.width || a.height != b.height || a.rgb.size() != b.rgb.size()) {
        return {255, 255.0};
    }
    double sum = 0;
    for (size_t i = 0; i < a.rgb.size(); ++i) {
        const int diff = std::abs(a.rgb[i] - b.rgb[i]);
        d.max = std::max(d.max, diff);
        sum += diff;
    }
    d.mean = a.rgb.empty() ? 0 : sum / static_cast<double>(a.rgb.size());
    return d;
}

}  // namespace tl::test
