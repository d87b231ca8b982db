/// Entities of a DXF file.
#pragma once

#include "drawing/dxf/Elements.h"
#include "drawing/dxf/Groups.h"

#include <functional>
#include <string>

namespace drawing::dxf {

/// Functions that give the index of a name in the reader's tables.
struct Names {
    std::function<std::uint32_t(std::string const&)> layer, block, kind;
};

/// Reads entities one at a time. When an entity lacks something, the error names the line where it begins.
class EntityReader {
public:
    EntityReader(Groups& groups, Names names);

    /// From now on elements of a larger size are refused.
    void limit(std::uint64_t mostNumbers) { mostNumbers_ = mostNumbers; }

    /// Reads the entity whose group 0 is the present one, with its vertices and attributes, and appends it and its
    /// numbers; the group 0 behind it comes next. What belongs to paper, or is invisible, appends nothing.
    void read(Elements& elements);

private:
    struct Vertex {
        double x = 0, y = 0, z = 0, bulge = 0;
    };

    void readGroups();
    void takeGroup();
    void takeNumber(int code);
    void readVertices();
    void skipAttributes();

    bool has(int code) const { return given_[code]; }
    double value(int code, double otherwise) const { return given_[code] ? values_[code] : otherwise; }
    double required(int code) const;
    Vector<3> point(int code) const;  ///< x and y required
    Vector<3> extrusion() const;
    int flags() const noexcept { return flags_; }

    void append(Kind kind);  // with the style that was read
    void notDrawn(std::string const& kind);
    void put(double number);
    void put(Vector<3> const& v);
    void putPath(Vector<3> const& extrusion, bool closed, std::vector<Vertex> const& vertices);

    void line();
    void point();
    void lightPolyline();
    void polyline();
    void arc(bool whole);
    void ellipse();
    void spline();
    void solid();
    void face();
    void insertion();
    void dimension();

    Groups& groups_;
    Names names_;
    std::uint64_t mostNumbers_ = 0;
    Elements* elements_ = nullptr;

    // The entity that is being read.
    std::uint64_t line_ = 0;
    std::string type_, layer_, name_;
    std::int32_t colour_ = byLayer, trueColour_ = -1;
    bool hidden_ = false, onPaper_ = false, attributesFollow_ = false;
    int flags_ = 0, degree_ = 3, columns_ = 1, rows_ = 1;
    double values_[240];
    bool given_[240];
    std::vector<Vertex> vertices_;
    std::vector<double> knots_, weights_;
};

}
