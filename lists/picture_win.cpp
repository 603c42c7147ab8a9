#include "lists/picture_win.h"

#include "base/page_memory.h"
#include "base/picture_limits.h"
#include "base/utf8_win.h"
#include "jpeg/decoder.h"
#include "lists/picture_scale.h"

#include <wincodec.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <span>
#include <tuple>
#include <utility>

namespace tl {

namespace {

BITMAPINFOHEADER dibHeader(int width, int height) {
    BITMAPINFOHEADER h{};
    h.biSize = sizeof h;
    h.biWidth = width;
    h.biHeight = height;  // positive: bottom-up, as BMP files store their rows
    h.biPlanes = 1;
    h.biBitCount = 24;
    h.biCompression = BI_RGB;
    h.biSizeImage = static_cast<DWORD>(Picture::rowBytes(width) * static_cast<size_t>(height));
    return h;
}

// A JPEG file read whole, in page memory: a photo's file runs to megabytes, which the heap would keep.
struct JpegFile {
    ScratchArray<uint8_t> data;
    size_t size = 0;  // what was read: less than data.size() when the file got shorter meanwhile
    std::span<const uint8_t> bytes() const { return {data.data(), size}; }
};

// The whole file when it starts as a JPEG does (the SOI marker), whatever its name says; empty otherwise.
JpegFile readJpegFile(const std::wstring& path) {
    unique_hfile file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER size{};
    if (!file || !::GetFileSizeEx(file.get(), &size) || size.QuadPart < 4 || size.QuadPart > INT_MAX) {
        return {};
    }
    uint8_t soi[2] = {};
    DWORD read = 0;
    if (!::ReadFile(file.get(), soi, 2, &read, nullptr) || read != 2 || soi[0] != 0xFF || soi[1] != 0xD8) {
        return {};
    }
    JpegFile jpeg{ScratchArray<uint8_t>(pageMemory(), static_cast<size_t>(size.QuadPart)), 2};
    jpeg.data[0] = soi[0];
    jpeg.data[1] = soi[1];
    while (jpeg.size < jpeg.data.size()) {
        if (!::ReadFile(file.get(), jpeg.data.data() + jpeg.size, static_cast<DWORD>(jpeg.data.size() - jpeg.size),
                        &read, nullptr) ||
            read == 0) {
            break;  // the file got shorter: the decoder makes what it can of the rest
        }
        jpeg.size += read;
    }
    return jpeg;
}

// What our own decoder made of a file.
struct JpegLoad {
    std::optional<LoadedPicture> picture;
    bool refused = false;  // a JPEG cut short or with data missing: no decoder may show it
};

// Hands the decoder's rows to the resampler, which keeps only the few its filter spans.
class ResampledRows final : public JpegRowSink {
  public:
    explicit ResampledRows(RowResampler& resampler) : resampler_(resampler) {}
    uint8_t* row(int y) override { return resampler_.row(y); }
    void rowDone(int y) override { resampler_.rowDone(y); }

  private:
    RowResampler& resampler_;
};

// Our own decoder goes first for JPEG files: several times faster than WIC on a big photo, and it writes
// straight into the DIB, at a reduced size where that still covers what is needed. With `exact`, the
// picture comes out resampled to exactly the size `needed` gives, on the way from the decoder: decoded at
// the reduced size that covers a quarter more, and never held at that size. Neither a picture nor refused
// when the decoder doesn't handle the file (arithmetic coding, CMYK...), for WIC to try.
JpegLoad loadJpeg(const std::wstring& path, const SizeNeeded& needed, bool exact) {
    JpegFile file;
    try {
        file = readJpegFile(path);
    } catch (const std::bad_alloc&) {
        return {};  // a file too big to hold: WIC reads it piece by piece
    }
    if (file.size == 0) {
        return {};
    }
    // A JPEG cut short is no wallpaper (one still being written, say), and WIC would show it with a grey
    // remainder: refused before a bitmap of the size its header claims is made.
    if (!jpegReachesEnd(file.bytes())) {
        return {std::nullopt, true};
    }
    const JpegHeader header = readJpegHeader(file.bytes());
    if (!header.handled) {
        return {};
    }
    // One thread: under Wine a thread that has ended leaves about a megabyte behind (Wine keeps the last one's
    // stacks), which the tray program would then hold while idle after every large picture. A second thread
    // only pays on a loaded machine's spare core anyway, and at a reduced size little work is left for it.
    JpegOptions options;
    options.threads = 1;
    options.scratch = &pageMemory();
    int width = header.width;
    int height = header.height;
    if (needed) {
        std::tie(width, height) = needed(header.width, header.height);
        options.eighths = exact ? jpegEighthsToCover(header.width, header.height, sideToResampleFrom(width),
                                                     sideToResampleFrom(height))
                                : jpegEighthsToCover(header.width, header.height, width, height);
    }
    const int decodedWidth = jpegScaledSide(header.width, options.eighths);
    const int decodedHeight = jpegScaledSide(header.height, options.eighths);
    if (!exact) {
        width = decodedWidth;
        height = decodedHeight;
    }
    Picture picture = Picture::create(width, height);
    if (!picture) {
        return {};
    }
    JpegResult result = JpegResult::notHandled;
    if (width == decodedWidth && height == decodedHeight) {
        result = decodeJpeg(file.bytes(), {picture.bits(), picture.imageSize()}, options);
    } else {
        try {
            RowResampler resampler(decodedWidth, decodedHeight, picture.bits(), width, height, picture.stride(), true);
            ResampledRows rows(resampler);
            result = decodeJpegRows(file.bytes(), rows, options);
        } catch (const std::bad_alloc&) {
            return {};
        }
    }
    switch (result) {
        case JpegResult::decoded:
            return {LoadedPicture{std::move(picture), header.width, header.height}, false};
        case JpegResult::damaged:
            return {std::nullopt, true};
        case JpegResult::notHandled:
            break;
    }
    return {};
}

}  // namespace

BITMAPINFOHEADER Picture::infoHeader() const {
    return dibHeader(width_, height_);
}

Picture Picture::create(int width, int height) {
    Picture p;
    if (!pictureSizeAllowed(width, height)) {
        return p;
    }
    BITMAPINFO info{};
    info.bmiHeader = dibHeader(width, height);
    void* bits = nullptr;
    p.bitmap_.reset(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!p.bitmap_ || !bits) {
        return Picture();
    }
    p.bits_ = static_cast<BYTE*>(bits);
    p.width_ = width;
    p.height_ = height;
    return p;
}

unique_hbitmap Picture::releaseBitmap() {
    bits_ = nullptr;
    width_ = 0;
    height_ = 0;
    return std::move(bitmap_);
}

namespace {

// Everything else (and what our decoder leaves) through WIC.
std::optional<Picture> loadWithWic(const std::wstring& wide) {
    scoped_com_init com;
    com_ptr<IWICImagingFactory> factory;
    com_ptr<IWICBitmapDecoder> decoder;
    com_ptr<IWICBitmapFrameDecode> frame;
    if (FAILED(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  factory.put_void())) ||
        FAILED(factory->CreateDecoderFromFilename(wide.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                  decoder.put())) ||
        FAILED(decoder->GetFrame(0, frame.put()))) {
        return std::nullopt;
    }
    UINT width = 0;
    UINT height = 0;
    WICPixelFormatGUID format{};
    // A header that claims more than the size limit is refused here, before anything is allocated for it.
    if (FAILED(frame->GetSize(&width, &height)) || FAILED(frame->GetPixelFormat(&format)) ||
        !pictureSizeAllowed(width, height)) {
        return std::nullopt;
    }

    // JPEG and 24-bit BMP decode straight to the DIB's layout; anything else goes through converters
    // that hand out the same rows. Paletted and grey pictures pass through 32-bit BGRA first, the one
    // road to 24 bits that every WIC (Wine's too) has.
    IWICBitmapSource* source = frame.get();
    com_ptr<IWICFormatConverter> toBgra;
    com_ptr<IWICFormatConverter> toBgr;
    if (!IsEqualGUID(format, GUID_WICPixelFormat24bppBGR)) {
        if (!IsEqualGUID(format, GUID_WICPixelFormat32bppBGRA) && !IsEqualGUID(format, GUID_WICPixelFormat32bppBGR)) {
            if (FAILED(factory->CreateFormatConverter(toBgra.put())) ||
                FAILED(toBgra->Initialize(source, GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0.0,
                                          WICBitmapPaletteTypeCustom))) {
                return std::nullopt;
            }
            source = toBgra.get();
        }
        if (FAILED(factory->CreateFormatConverter(toBgr.put())) ||
            FAILED(toBgr->Initialize(source, GUID_WICPixelFormat24bppBGR, WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom))) {
            return std::nullopt;
        }
        source = toBgr.get();
    }

    Picture picture = Picture::create(static_cast<int>(width), static_cast<int>(height));
    if (!picture) {
        return std::nullopt;
    }
    // WIC hands rows out top first, and each call crosses into the codec (under Wine, into its Unix side,
    // at some cost per call), so rows are asked for in strips and then put in their bottom-up places.
    constexpr UINT kStripRows = 64;
    const size_t stride = picture.stride();
    BYTE* const bits = picture.bits();
    ScratchArray<BYTE> strip;
    try {
        strip = ScratchArray<BYTE>(pageMemory(), stride * std::min<UINT>(kStripRows, height));
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
    for (UINT y = 0; y < height; y += kStripRows) {
        const UINT rows = std::min<UINT>(kStripRows, height - y);
        const WICRect rect{0, static_cast<INT>(y), static_cast<INT>(width), static_cast<INT>(rows)};
        if (FAILED(
                source->CopyPixels(&rect, static_cast<UINT>(stride), static_cast<UINT>(stride * rows), strip.data()))) {
            return std::nullopt;
        }
        for (UINT k = 0; k < rows; ++k) {
            std::memcpy(bits + static_cast<size_t>(height - 1 - y - k) * stride, strip.data() + k * stride, stride);
        }
    }
    return picture;
}

}  // namespace

std::optional<Picture> loadPicture(const std::string& path) {
    std::optional<LoadedPicture> loaded = loadPictureFor(path, {});
    if (!loaded) {
        return std::nullopt;
    }
    return std::move(loaded->picture);
}

std::optional<LoadedPicture> loadPictureFor(const std::string& path, const SizeNeeded& needed) {
    const std::wstring wide = widen(path);
    JpegLoad jpeg = loadJpeg(wide, needed, false);
    if (jpeg.picture || jpeg.refused) {
        return std::move(jpeg.picture);
    }
    std::optional<Picture> picture = loadWithWic(wide);
    if (!picture) {
        return std::nullopt;
    }
    const int width = picture->width();
    const int height = picture->height();
    return LoadedPicture{std::move(*picture), width, height};
}

std::optional<LoadedPicture> loadPictureFitted(const std::string& path, const SizeNeeded& fitted) {
    const std::wstring wide = widen(path);
    JpegLoad jpeg = loadJpeg(wide, fitted, true);
    if (jpeg.picture || jpeg.refused) {
        return std::move(jpeg.picture);
    }
    std::optional<Picture> whole = loadWithWic(wide);
    if (!whole) {
        return std::nullopt;
    }
    const int naturalWidth = whole->width();
    const int naturalHeight = whole->height();
    const auto [width, height] = fitted(naturalWidth, naturalHeight);
    if (width == naturalWidth && height == naturalHeight) {
        return LoadedPicture{std::move(*whole), naturalWidth, naturalHeight};
    }
    Picture picture = resampledPicture(*whole, width, height);
    if (!picture) {
        return std::nullopt;
    }
    return LoadedPicture{std::move(picture), naturalWidth, naturalHeight};
}

std::optional<Picture> loadPictureAtLeast(const std::string& path, int width, int height) {
    std::optional<LoadedPicture> loaded = loadPictureFor(path, [=](int, int) { return std::pair{width, height}; });
    if (!loaded) {
        return std::nullopt;
    }
    return std::move(loaded->picture);
}

Picture scaledPicture(const Picture& source, int width, int height) {
    Picture out = Picture::create(width, height);
    if (!out || !source) {
        return Picture();
    }
    if (width <= source.width() && height <= source.height()) {
        // Averaged by hand: GDI's halftone stretching samples on some systems, and a photo shrunk twenty
        // times then shimmers.
        shrinkPixels(source.bits(), source.width(), source.height(), source.stride(), out.bits(), width, height,
                     out.stride());
        return out;
    }
    unique_hdc from(::CreateCompatibleDC(nullptr));
    unique_hdc to(::CreateCompatibleDC(nullptr));
    if (!from || !to) {
        return Picture();
    }
    bool drawn = false;
    {
        scoped_select_object selectFrom(from.get(), source.bitmap());
        scoped_select_object selectTo(to.get(), out.bitmap());
        ::SetStretchBltMode(to.get(), HALFTONE);
        ::SetBrushOrgEx(to.get(), 0, 0, nullptr);
        drawn = ::StretchBlt(to.get(), 0, 0, width, height, from.get(), 0, 0, source.width(), source.height(),
                             SRCCOPY) != 0;
    }
    ::GdiFlush();
    return drawn ? std::move(out) : Picture();
}

Picture resampledPicture(const Picture& source, int width, int height) {
    Picture out = Picture::create(width, height);
    if (!out || !source ||
        !resamplePixels(source.bits(), source.width(), source.height(), source.stride(), out.bits(), width, height,
                        out.stride())) {
        return Picture();
    }
    return out;
}

}  // namespace tl
