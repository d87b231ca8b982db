#include "drawing/dxf/EntityReader.h"

#include "drawing/dxf/Curves.h"

#include "orn/geometry/Angle.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>
#include <utility>

namespace drawing::dxf {

namespace {

constexpr double turn = 2 * Angle::pi;
Vector<3> const upwards{0, 0, 1};

double radians(double degrees) { return degrees * (Angle::pi / 180); }

/// From one angle anticlockwise to another, above 0 and up to a whole turn.
double sweepOf(double from, double to, double whole) {
    // fmod has the sign of the difference, so one turn more is enough. Equal angles mean a whole turn.
    double const sweep = std::fmod(to - from, whole);
    return sweep <= 0 ? sweep + whole : sweep;
}

}

Axes::Axes(Vector<3> const& direction) : z{direction} {
    // The limit belongs to the format: another one would turn the axes of planes near it.
    bool const nearlyUpright = std::fabs(z.x()) < 1.0 / 64 && std::fabs(z.y()) < 1.0 / 64;
    x = cross(nearlyUpright ? Vector<3>{0, 1, 0} : upwards, z).unit();
    y = cross(z, x).unit();
}

EntityReader::EntityReader(Groups& groups, Names names) : groups_{groups}, names_{std::move(names)} {}

void EntityReader::read(Elements& elements) {
    static constexpr std::pair<char const*, void (*)(EntityReader&)> forms[] = {
        {"LINE", [](EntityReader& e) { e.line(); }},
        {"LWPOLYLINE", [](EntityReader& e) { e.lightPolyline(); }},
        {"POLYLINE", [](EntityReader& e) { e.polyline(); }},
        {"ARC", [](EntityReader& e) { e.arc(false); }},
        {"CIRCLE", [](EntityReader& e) { e.arc(true); }},
        {"ELLIPSE", [](EntityReader& e) { e.ellipse(); }},
        {"SPLINE", [](EntityReader& e) { e.spline(); }},
        {"POINT", [](EntityReader& e) { e.point(); }},
        {"SOLID", [](EntityReader& e) { e.solid(); }},
        {"TRACE", [](EntityReader& e) { e.solid(); }},
        {"3DFACE", [](EntityReader& e) { e.face(); }},
        {"INSERT", [](EntityReader& e) { e.insertion(); }},
        {"DIMENSION", [](EntityReader& e) { e.dimension(); }},
    };
    type_ = groups_.text();
    line_ = groups_.line();
    auto const form = std::find_if(std::begin(forms), std::end(forms), [&](auto const& f) { return type_ == f.first; });
    elements_ = &elements;
    // What turns out to be hidden is taken back to here.
    std::size_t const list = elements.list.size(), numbers = elements.numbers.size();
    if (form == std::end(forms)) {
        // The rest of the style may be that of an earlier entity: only the layer counts for what is not drawn.
        layer_.clear();
        hidden_ = onPaper_ = false;
        for (groups_.next(); groups_.code() != 0; groups_.next()) {
            if (groups_.code() == 8) layer_ = groups_.text();
            if (groups_.code() == 60) hidden_ |= groups_.integer() == 1;
            if (groups_.code() == 67) onPaper_ |= groups_.integer() == 1;
        }
        groups_.putBack();
        notDrawn(type_);
    } else {
        readGroups();
        form->second(*this);
    }
    // A viewport is the frame of a view on paper: it is no part of the drawing that a user would miss.
    if (!hidden_ && !onPaper_) return;
    elements.list.resize(list);
    elements.numbers.resize(numbers);
    if (type_ != "VIEWPORT") notDrawn(onPaper_ ? "on paper" : "invisible");
}

void EntityReader::readGroups() {
    std::fill(std::begin(given_), std::end(given_), false);
    layer_.clear();
    name_.clear();
    colour_ = byLayer;
    trueColour_ = -1;
    hidden_ = onPaper_ = attributesFollow_ = false;
    flags_ = 0;
    degree_ = 3;
    columns_ = rows_ = 1;
    vertices_.clear();
    knots_.clear();
    weights_.clear();
    for (groups_.next(); groups_.code() != 0; groups_.next()) takeGroup();
    groups_.putBack();
}

void EntityReader::takeGroup() {
    int const code = groups_.code();
    switch (code) {
        case 2: name_ = groups_.text(); return;
        case 8: layer_ = groups_.text(); return;
        case 60: hidden_ |= groups_.integer() == 1; return;
        case 67: onPaper_ |= groups_.integer() == 1; return;
        case 62: colour_ = std::clamp(groups_.integer(), 0, 256); return;
        case 420: trueColour_ = groups_.integer() & 0xFFFFFF; return;
        case 66: attributesFollow_ = groups_.integer() == 1; return;
        // Groups 70 and 71 mean different things in different entities; each function reads what is its own.
        case 70:
            flags_ = groups_.integer();
            columns_ = std::clamp(flags_, 1, 32767);
            return;
        case 71:
            degree_ = groups_.integer();
            rows_ = std::clamp(degree_, 1, 32767);
            return;
        default:
            // The codes of coordinates, lengths and angles. Their places in values_ end at 239.
            if ((code >= 10 && code < 60) || code == 210 || code == 220 || code == 230) takeNumber(code);
    }
}

void EntityReader::takeNumber(int code) {
    double const number = groups_.number();
    values_[code] = number;
    given_[code] = true;
    // Only these two repeat groups: each group 10 begins a point, and what follows belongs to it.
    bool const isSpline = type_ == "SPLINE";
    if (!isSpline && type_ != "LWPOLYLINE") return;
    if (elements_->size() + 4 * vertices_.size() + knots_.size() + weights_.size() > mostNumbers_) {
        groups_.fail(L"the entity has too many points to be kept");
    }
    if (code == 10) {
        vertices_.push_back({number});
    } else if (isSpline && code == 40) {
        knots_.push_back(number);
    } else if (isSpline && code == 41) {
        weights_.push_back(number);
    } else if (!vertices_.empty()) {
        Vertex& vertex = vertices_.back();
        if (code == 20) vertex.y = number;
        if (code == 30) vertex.z = number;
        if (code == 42 && !isSpline) vertex.bulge = number;
    }
}

double EntityReader::required(int code) const {
    if (has(code)) return values_[code];
    groups_.fail(line_, std::wstring{type_.begin(), type_.end()} + L" lacks its group " + std::to_wstring(code));
}

Vector<3> EntityReader::point(int code) const { return {required(code), required(code + 10), value(code + 20, 0)}; }

/// Without its groups it is the z axis. A file may give it any length.
Vector<3> EntityReader::extrusion() const {
    Vector<3> const direction{value(210, 0), value(220, 0), value(230, has(210) ? 0 : 1)};
    double const length = direction.length();
    if (!(length > 0) || !std::isfinite(length)) groups_.fail(line_, L"the extrusion direction has no length");
    return direction / length;
}

void EntityReader::append(Kind kind) {
    if (elements_->size() >= mostNumbers_) groups_.fail(line_, L"the blocks hold more than can be kept");
    Element element;
    element.kind = kind;
    element.layer = names_.layer(layer_.empty() ? "0" : layer_);
    element.colour = trueColour_ >= 0 ? trueColour + trueColour_ : colour_;
    // put() adds to the element that was appended last: its numbers follow each other from here on.
    element.first = elements_->numbers.size();
    elements_->list.push_back(element);
}

void EntityReader::notDrawn(std::string const& kind) {
    append(Kind::notDrawn);
    elements_->list.back().name = names_.kind(kind);
}

void EntityReader::put(double number) {
    if (elements_->size() >= mostNumbers_) groups_.fail(line_, L"the blocks hold more than can be kept");
    elements_->numbers.push_back(number);
    ++elements_->list.back().count;
}

void EntityReader::put(Vector<3> const& v) {
    for (int i : {0, 1, 2}) put(v[i]);
}

void EntityReader::putPath(Vector<3> const& extrusion, bool closed, std::vector<Vertex> const& vertices) {
    if (vertices.empty()) return;
    append(Kind::path);
    put(extrusion);
    put(closed ? 1 : 0);
    for (Vertex const& v : vertices) {
        for (double const number : {v.x, v.y, v.z, v.bulge}) put(number);
    }
}

void EntityReader::line() {
    Vector<3> const a = point(10), b = point(11);
    putPath(upwards, false, {{a.x(), a.y(), a.z()}, {b.x(), b.y(), b.z()}});
}

void EntityReader::point() {
    Vector<3> const p = point(10);
    putPath(upwards, false, {{p.x(), p.y(), p.z()}});
}

void EntityReader::lightPolyline() {
    // All vertices share one height, which may stand behind them in the file.
    double const elevation = value(38, 0);
    for (Vertex& vertex : vertices_) vertex.z = elevation;
    putPath(extrusion(), (flags() & 1) != 0, vertices_);
}

/// The old form: its vertices are entities of their own.
void EntityReader::polyline() {
    bool const inSpace = (flags() & 8) != 0, mesh = (flags() & (16 | 64)) != 0, closed = (flags() & 1) != 0;
    // readGroups replaces these by those of each vertex.
    bool const hidden = hidden_, onPaper = onPaper_;
    double const elevation = value(30, 0);
    Vector<3> const direction = inSpace || mesh ? upwards : extrusion();
    auto const style = std::make_tuple(layer_, colour_, trueColour_);
    std::vector<Vertex> vertices;
    for (groups_.next(); groups_.is(0, "VERTEX"); groups_.next()) {
        readGroups();
        // Flag 16: the vertex belongs to the frame of a spline. Vertices of meshes are not kept, either.
        if ((flags() & 16) != 0 || mesh) continue;
        if (elements_->size() + 4 * vertices.size() > mostNumbers_) {
            groups_.fail(L"the entity has too many points to be kept");
        }
        Vector<3> const p = point(10);
        vertices.push_back({p.x(), p.y(), inSpace ? p.z() : elevation, inSpace ? 0 : value(42, 0)});
    }
    if (groups_.is(0, "SEQEND")) {
        readGroups();
    } else {
        groups_.putBack();
    }
    // Vertices may have styles of their own, and the polyline is drawn in its own.
    std::tie(layer_, colour_, trueColour_) = style;
    hidden_ = hidden;
    onPaper_ = onPaper;
    if (mesh) return notDrawn("POLYLINE (mesh)");
    putPath(direction, closed, vertices);
}

void EntityReader::arc(bool whole) {
    Axes const axes{extrusion()};
    Vector<3> const c = point(10);
    double const radius = required(40);
    double const from = whole ? 0 : required(50), sweep = whole ? 360 : sweepOf(from, required(51), 360);
    append(Kind::conic);
    put(axes.x * c.x() + axes.y * c.y() + axes.z * c.z());
    put(axes.x * radius);
    put(axes.y * radius);
    put(radians(from));
    put(radians(sweep));
}

void EntityReader::ellipse() {
    Vector<3> const c = point(10), major = point(11);
    double const from = value(41, 0), to = value(42, turn);
    append(Kind::conic);
    put(c);
    put(major);
    put(cross(extrusion(), major) * required(40));  // the minor axis, by the ratio of the two
    put(from);
    // Files give a whole turn with a dozen digits.
    put(std::fabs(to - from) >= turn * (1 - 1e-12) ? turn : sweepOf(from, to, turn));
}

void EntityReader::spline() {
    if (vertices_.empty()) return notDrawn("SPLINE (without control points)");
    std::size_t const count = vertices_.size();
    if (weights_.empty()) weights_.assign(count, 1.0);
    if (degree_ < 1 || degree_ > Spline::mostDegree) {
        groups_.fail(line_, L"a SPLINE of degree " + std::to_wstring(degree_) + L" cannot be drawn");
    }
    bool const knotsFit = count > static_cast<std::size_t>(degree_) &&
                          knots_.size() == count + static_cast<std::size_t>(degree_) + 1 &&
                          std::is_sorted(knots_.begin(), knots_.end());
    if (!knotsFit) groups_.fail(line_, L"the knots of a SPLINE do not fit its degree and its points");
    if (weights_.size() != count || std::any_of(weights_.begin(), weights_.end(), [](double w) { return !(w > 0); })) {
        groups_.fail(line_, L"the weights of a SPLINE do not fit its points");
    }
    append(Kind::spline);
    put(degree_);
    put(static_cast<double>(count));
    for (std::size_t i = 0; i < count; ++i) {
        put({vertices_[i].x, vertices_[i].y, vertices_[i].z});
        put(weights_[i]);
    }
    for (double const knot : knots_) put(knot);
}

/// The outline. The file gives the third and the fourth corner in exchanged order.
void EntityReader::solid() {
    Vector<3> const a = point(10), b = point(11), c = point(12), d = has(13) ? point(13) : c;
    std::vector<Vertex> corners;
    for (Vector<3> const& corner : {a, b, d, c}) corners.push_back({corner.x(), corner.y(), corner.z()});
    bool const triangle = !has(13) || (c.x() == d.x() && c.y() == d.y() && c.z() == d.z());
    if (triangle) corners.pop_back();
    putPath(extrusion(), true, corners);
}

/// The edges, without those that the flags hide. They need not lie in a plane, so each is a path of its own.
void EntityReader::face() {
    std::vector<Vertex> corners;
    for (int code : {10, 11, 12, 13}) {
        if (code == 13 && !has(13)) break;
        Vector<3> const corner = point(code);
        corners.push_back({corner.x(), corner.y(), corner.z()});
    }
    int const hiddenEdges = flags();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        Vertex const &a = corners[i], &b = corners[(i + 1) % corners.size()];
        bool const triangle = a.x == b.x && a.y == b.y && a.z == b.z;
        if ((hiddenEdges >> i & 1) == 0 && !triangle) putPath(upwards, false, {a, b});
    }
}

void EntityReader::insertion() {
    if (name_.empty()) groups_.fail(line_, L"INSERT lacks its group 2");
    Axes const axes{extrusion()};
    Vector<3> const place = point(10);
    // The insertion is turned in the plane of its extrusion, then scaled along the turned axes.
    double const angle = radians(value(50, 0));
    Vector<3> const x = axes.x * std::cos(angle) + axes.y * std::sin(angle);
    Vector<3> const y = axes.y * std::cos(angle) - axes.x * std::sin(angle);
    append(Kind::insertion);
    elements_->list.back().name = names_.block(name_);
    put(x * value(41, 1));
    put(y * value(42, 1));
    put(axes.z * value(43, 1));
    put(axes.x * place.x() + axes.y * place.y() + axes.z * place.z());
    // The steps of an array run along the turned axes, and are not scaled.
    put(columns_);
    put(rows_);
    put(x * value(44, 0));
    put(y * value(45, 0));
    if (attributesFollow_) skipAttributes();
}

/// Attributes are texts, which are not drawn.
void EntityReader::skipAttributes() {
    for (groups_.next(); groups_.is(0, "ATTRIB"); groups_.next()) {
        for (groups_.next(); groups_.code() != 0; groups_.next()) {}
        groups_.putBack();
        notDrawn("ATTRIB");
    }
    if (groups_.is(0, "SEQEND")) {
        for (groups_.next(); groups_.code() != 0; groups_.next()) {}
    }
    groups_.putBack();
}

/// The file holds a block with the picture of the dimension, already in its place. It is inserted unscaled.
void EntityReader::dimension() {
    if (name_.empty()) return notDrawn("DIMENSION (without a block)");
    Axes const axes{extrusion()};
    append(Kind::insertion);
    elements_->list.back().name = names_.block(name_);
    for (Vector<3> const& v : {Vector<3>{1, 0, 0}, Vector<3>{0, 1, 0}, Vector<3>{0, 0, 1}}) put(v);
    put(axes.x * value(12, 0) + axes.y * value(22, 0) + axes.z * value(32, 0));
    put(1);
    put(1);
    put(Vector<3>{});
    put(Vector<3>{});
}

}
