#include "drawing/Canvas.h"

#include "orn/foundation/Error.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

namespace drawing {

namespace {

void check(Gdiplus::Status status, wchar_t const* call) {
    if (status == Gdiplus::Ok) return;
    if (status == Gdiplus::OutOfMemory) throw std::bad_alloc{};
    throw WinError{call, status == Gdiplus::Win32Error ? GetLastError() : DWORD{ERROR_GEN_FAILURE}};
}

Gdiplus::Color colourOf(Colour const& colour) {
    COLORREF const ref = colour.colorref();
    return {GetRValue(ref), GetGValue(ref), GetBValue(ref)};
}

/// Lines drawn at `scale` times their size into memory of that size.
class Strokes {
public:
    Strokes(unsigned char* pixels, int width, int height, int top, int scale, Colour const& paper)
        : top_{top},
          scale_{scale},
          bitmap_{width, height, width * 4, PixelFormat32bppRGB, pixels},
          graphics_{&bitmap_} {
        check(bitmap_.GetLastStatus(), L"Bitmap");
        check(graphics_.GetLastStatus(), L"Graphics");
        check(graphics_.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias), L"SetSmoothingMode");
        // Coordinates are those of pixels' corners, not of their centres.
        check(graphics_.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf), L"SetPixelOffsetMode");
        check(graphics_.Clear(colourOf(paper)), L"Clear");
    }

    void stroke(std::span<Point<2> const> points, Colour const& colour, double width) {
        points_.clear();
        for (Point<2> const& p : points) {
            points_.emplace_back(static_cast<float>(p.x() * scale_), static_cast<float>((p.y() - top_) * scale_));
        }
        Gdiplus::Pen pen{colourOf(colour), static_cast<float>(width * scale_)};
        pen.SetLineJoin(Gdiplus::LineJoinRound);
        pen.SetStartCap(Gdiplus::LineCapRound);
        pen.SetEndCap(Gdiplus::LineCapRound);
        check(graphics_.DrawLines(&pen, points_.data(), static_cast<int>(points_.size())), L"DrawLines");
    }

    void finish() { graphics_.Flush(Gdiplus::FlushIntentionSync); }

private:
    int top_;
    int scale_;
    Gdiplus::Bitmap bitmap_;
    Gdiplus::Graphics graphics_;
    std::vector<Gdiplus::PointF> points_;
};

/// Over a GDI+ that smooths lines.
class SmoothCanvas final : public Canvas {
public:
    SmoothCanvas(Band const& band, Colour const& paper)
        : strokes_{band.pixels, band.width, band.height, band.top, 1, paper} {}

    void stroke(std::span<Point<2> const> points, Colour const& colour, double width) override {
        strokes_.stroke(points, colour, width);
    }
    void finish() override { strokes_.finish(); }

private:
    Strokes strokes_;
};

/// Over a GDI+ that draws lines without smoothing them: drawn larger, and each pixel is the mean of its part. Such a
/// GDI+ (that of Wine) also takes time for the whole box around a shape, hence the short pieces; without smoothing
/// they join without a trace.
class OversizedCanvas final : public Canvas {
public:
    OversizedCanvas(Band const& band, Colour const& paper)
        : band_{band},
          pixels_(std::size_t{4} * scale * scale * static_cast<std::size_t>(band.width) *
                  static_cast<std::size_t>(band.height)),
          strokes_{pixels_.data(), band.width * scale, band.height * scale, band.top, scale, paper} {}

    void stroke(std::span<Point<2> const> points, Colour const& colour, double width) override {
        for (std::size_t i = 1; i < points.size(); ++i) {
            Vector<2> const step = points[i] - points[i - 1];
            int const pieces = std::max(1, static_cast<int>(std::max(std::fabs(step.x()), std::fabs(step.y())) / 16));
            for (int piece = 0; piece < pieces; ++piece) {
                Point<2> const ends[] = {points[i - 1] + step * (static_cast<double>(piece) / pieces),
                                         points[i - 1] + step * ((piece + 1.0) / pieces)};
                if (reaches(ends[0], ends[1], width)) strokes_.stroke(ends, colour, width);
            }
        }
    }

    void finish() override {
        strokes_.finish();
        std::size_t const rowSize = std::size_t{4} * scale * static_cast<std::size_t>(band_.width);
        unsigned char* out = band_.pixels;
        for (int y = 0; y < band_.height; ++y) {
            unsigned char const* const rows = pixels_.data() + rowSize * scale * static_cast<std::size_t>(y);
            for (int x = 0; x < band_.width; ++x, out += 4) {
                unsigned int sums[3] = {};
                for (std::size_t row = 0; row < scale; ++row) {
                    unsigned char const* in =
                        rows + rowSize * row + std::size_t{4} * scale * static_cast<std::size_t>(x);
                    for (int column = 0; column < scale; ++column, in += 4) {
                        for (int i = 0; i < 3; ++i) sums[i] += in[i];
                    }
                }
                for (int i = 0; i < 3; ++i) {
                    out[i] = static_cast<unsigned char>((sums[i] + scale * scale / 2) / (scale * scale));
                }
            }
        }
    }

private:
    bool reaches(Point<2> const& p, Point<2> const& q, double width) const {
        return std::max(p.y(), q.y()) + width >= band_.top &&
               std::min(p.y(), q.y()) - width <= band_.top + band_.height;
    }

    static constexpr int scale = 4;

    Band band_;
    std::vector<unsigned char> pixels_;
    Strokes strokes_;
};

/// Tries a line: smoothed, it leaves pixels that are neither paper nor ink.
bool smooths() {
    unsigned char pixels[16 * 16 * 4];
    SmoothCanvas canvas{{pixels, 16, 0, 16}, Colour::rgb(1, 1, 1)};
    Point<2> const line[] = {{2, 3}, {14, 10}};
    canvas.stroke(line, Colour::rgb(0, 0, 0), 2);
    canvas.finish();
    for (int i = 0; i < 16 * 16; ++i) {
        if (pixels[i * 4] != 0 && pixels[i * 4] != 255) return true;
    }
    return false;
}

template <typename Interface>
struct Held {
    Interface* pointer = nullptr;
    ~Held() {
        if (pointer != nullptr) pointer->Release();
    }
};

// The encoder that every GDI+ brings along: {557CF406-1A04-11D3-9A73-0000F81EF32E}.
constexpr CLSID pngEncoder{0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

}

std::unique_ptr<Canvas> Canvas::create(Band const& band, Colour const& paper) {
    static bool const smooth = smooths();
    if (smooth) return std::make_unique<SmoothCanvas>(band, paper);
    return std::make_unique<OversizedCanvas>(band, paper);
}

std::unique_ptr<Canvas> pdfCanvas(ORN::RawWriter&, int, int, Colour const&) {
    throw ORN::OrnError{L"PDF is not written on this system (SVG is)"};
}

std::vector<unsigned char> pngFile(DIBitmap const& bitmap) {
    BITMAPINFOHEADER const& header = bitmap.header()->bmiHeader;
    auto* const pixels = const_cast<unsigned char*>(bitmap.bits());  // only read
    Gdiplus::Bitmap image{header.biWidth, -header.biHeight, header.biWidth * 4, PixelFormat32bppRGB, pixels};
    check(image.GetLastStatus(), L"Bitmap");

    Held<IStream> stream;
    HRESULT const made = CreateStreamOnHGlobal(nullptr, TRUE, &stream.pointer);
    if (made < 0) throw WinError{L"CreateStreamOnHGlobal", made, nullptr};
    check(image.Save(stream.pointer, &pngEncoder, nullptr), L"Save");

    STATSTG state{};
    HRESULT const told = stream.pointer->Stat(&state, STATFLAG_NONAME);
    if (told < 0) throw WinError{L"Stat", told, nullptr};
    HGLOBAL memory = nullptr;
    HRESULT const got = GetHGlobalFromStream(stream.pointer, &memory);
    if (got < 0) throw WinError{L"GetHGlobalFromStream", got, nullptr};
    auto const* const bytes = static_cast<unsigned char const*>(GlobalLock(memory));
    if (bytes == nullptr) throw WinError{L"GlobalLock", GetLastError()};
    std::vector<unsigned char> file(bytes, bytes + state.cbSize.QuadPart);
    GlobalUnlock(memory);
    return file;
}

}
