#include "drawing/Svg.h"

#include "orn/text/CodePoint.h"
#include "orn/text/Printf.h"
#include "orn/text/TextWriter.h"

#include <charconv>
#include <cmath>
#include <memory>
#include <vector>

namespace drawing {

namespace {

std::wstring numberText(double value) {
    char text[32];
    // Nine digits: on the longest side that a page may have they reach to a ten-thousandth of a pixel.
    auto const end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 9);
    return {text, end.ptr};
}

std::wstring pointText(Point<2> const& p) { return numberText(p.x()) + L' ' + numberText(p.y()); }

/// As a text of XML, which has no lone surrogates and nearly no control characters: U+FFFD takes their place.
std::wstring escaped(std::wstring const& text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        wchar_t const c = text[i];
        bool const leads = c >= 0xD800 && c < 0xDC00, follows = c >= 0xDC00 && c < 0xE000;
        if (leads && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            result += c;
            result += text[++i];
        } else if (leads || follows || c < L' ' || c == 0xFFFE || c == 0xFFFF) {
            result += L'\xFFFD';
        } else {
            result += c == L'&' ? L"&amp;" : c == L'<' ? L"&lt;" : c == L'>' ? L"&gt;" : std::wstring{c};
        }
    }
    return result;
}

/// What the page makes of circles: ellipses, all turned the same way.
struct Ellipse {
    double wide, high;  ///< factors of the radius
    double degrees;
    bool turnsBack;  ///< arcs run the other way round

    explicit Ellipse(AffineTransform<2> const& transform) {
        // The singular values, and the angle of the greater one's image.
        Vector<2> const u = Vector<2>{1, 0} * transform, v = Vector<2>{0, 1} * transform;
        double const e = (u.x() + v.y()) / 2, f = (u.x() - v.y()) / 2, g = (u.y() + v.x()) / 2, h = (u.y() - v.x()) / 2;
        double const sum = std::hypot(e, h), difference = std::hypot(f, g);
        wide = sum + difference;
        high = std::fabs(sum - difference);
        degrees = Angle::radians((std::atan2(g, f) + std::atan2(h, e)) / 2).degrees();
        // Then the determinant, which is the product of sum + difference and sum - difference, is negative.
        turnsBack = sum < difference;
    }
};

class Paths {
public:
    Paths(ORN::TextWriter& file, Page const& page) : file_{file}, transform_{page.transform()}, ellipse_{transform_} {}

    void add(Entity const& entity) {
        ORN::Arc<2> const& arc = entity.arc;
        std::wstring const start = pointText(arc.start() * transform_), end = pointText(arc.end() * transform_);
        // A path has one colour. A long one is ended, so that the text in memory stays small for any drawing.
        if (path_.empty() || entity.rgb != rgb_ || path_.size() > 100'000) {
            finish();
            rgb_ = entity.rgb;
            path_ = L"M" + start;
        } else if (start != at_) {
            // Texts are compared, not numbers: lines that meet in the file go on in one stroke, with a join.
            path_ += L"M" + start;
        }
        at_ = end;
        if (std::fabs(arc.bulge()) > 1) {  // in halves: then every arc is the lesser one of its circle
            addArc(arc, pointText(arc.midpoint() * transform_));
        }
        if (arc.bulge() != 0) {
            addArc(arc, end);
        } else {
            path_ += L"L" + end;
        }
    }

    void finish() {
        if (!path_.empty()) {
            file_.writeLine(stringPrintf(L"<path stroke=\"#%06X\" d=\"", static_cast<unsigned int>(rgb_)) + path_ +
                            L"\"/>");
        }
        path_.clear();
    }

private:
    void addArc(ORN::Arc<2> const& arc, std::wstring const& end) {
        double const radius = arc.radius();
        // Such an arc is as good as straight: it departs from its chord by the chord's square over 8 radii, on a page
        // of 1200x900 pixels by 0.003 at most.
        if (!std::isfinite(radius) || radius * ellipse_.wide > 1e8) {
            path_ += L"L" + end;
            return;
        }
        // The second flag of an SVG arc is 1 when angles grow in the page's coordinates, which have y downwards.
        bool const positive = (arc.bulge() > 0) != ellipse_.turnsBack;
        path_ += L"A" + numberText(radius * ellipse_.wide) + L' ' + numberText(radius * ellipse_.high) + L' ' +
                 numberText(ellipse_.degrees) + (positive ? L" 0 1 " : L" 0 0 ") + end;
    }

    ORN::TextWriter& file_;
    AffineTransform<2> const& transform_;
    Ellipse ellipse_;
    std::uint32_t rgb_ = 0;
    std::wstring path_, at_;
};

}

void writeSvg(Drawing const& drawing, Page const& page, ORN::RawWriter& raw) {
    std::unique_ptr<ORN::TextWriter> const file{ORN::TextWriter::create(raw, ORN::encUTF8, false, ORN::lineEndLF)};
    auto const [width, height] = page.size();
    file->writeLine(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    file->writeLine(
        stringPrintf(L"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">",
                     width, height, width, height));
    file->writeLine(stringPrintf(L"<rect width=\"%d\" height=\"%d\" fill=\"#%06X\"/>", width, height,
                                 static_cast<unsigned int>(page.paper())));
    file->writeLine(L"<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" stroke-width=\"" +
                    numberText(page.lineWidth()) + L"\">");
    // Entities of one layer stand in one group, so they are collected first; within a layer they keep their order.
    std::vector<std::vector<std::size_t>> byLayer(drawing.layers().size());
    for (std::size_t i = 0; i < drawing.entities().size(); ++i) byLayer[drawing.entities()[i].layer].push_back(i);
    Paths paths{*file, page};
    for (std::size_t layer = 0; layer < byLayer.size(); ++layer) {
        file->writeLine(L"<g id=\"layer" + std::to_wstring(layer + 1) + L"\"><title>" +
                        escaped(drawing.layers()[layer].name) + L"</title>");
        for (std::size_t const i : byLayer[layer]) paths.add(drawing.entities()[i]);
        paths.finish();
        file->writeLine(L"</g>");
    }
    file->writeLine(L"</g>");
    file->writeLine(L"</svg>");
    file->close();
}

}
