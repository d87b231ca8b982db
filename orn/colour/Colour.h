/// A colour with opacity, seen as RGB, HSV or HLS.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Angle.h"
#include "orn/os/Types.h"

#include <cstddef>
#include <iosfwd>
#include <string_view>

/// @cond
namespace ORN {
struct DeviceColours;
}
/// @endcond

/// Keeps the model it was made in exactly and computes the others when they are first asked for; the results stay in
/// the object. Components run from 0 to 1, hue is an angle, and nothing is clamped. Since a query may fill the cache,
/// even one of a const object, two threads that read one colour need a lock or a copy each.
class ORN_API Colour {
public:
    Colour() noexcept : Colour{0.0, 0.0, 0.0, 1.0} {}     ///< opaque black
    Colour(Colour const&) noexcept = default;             ///< with what is cached
    Colour& operator=(Colour const&) noexcept = default;  ///< with what is cached
    virtual ~Colour() = default;

    /// Kept in the model that is named; opaque where no opacity is given.
    /// @{
    static Colour rgb(double r, double g, double b) { return {r, g, b, 1.0}; }
    static Colour rgba(double r, double g, double b, double a) { return {r, g, b, a}; }
    static Colour hsv(Angle const& h, double s, double v) { return {h, s, v, 1.0}; }
    static Colour hsva(Angle const& h, double s, double v, double a) { return {h, s, v, a}; }
    static Colour hls(Angle const& h, double l, double s) { return {h, l, s, 1.0, 0}; }
    static Colour hlsa(Angle const& h, double l, double s, double a) { return {h, l, s, a, 0}; }
    /// @}

    static Colour argb(unsigned int word);  ///< 0xAARRGGBB
    static Colour colorref(COLORREF word);  ///< 0x00BBGGRR, the top byte is ignored; opaque
    static Colour dib24(void const* p);     ///< three bytes: blue, green, red; opaque

    /// Components of a model, computed and cached if need be. The hue of a grey is 0; a() is the opacity.
    /// @{
    double r() const { return rgb().red; }
    double g() const { return rgb().green; }
    double b() const { return rgb().blue; }
    Angle h_hls() { return hls().hue; }
    double l_hls() const { return hls().lightness; }
    double s_hls() const { return hls().saturation; }
    Angle h_hsv() { return hsv().hue; }
    double s_hsv() const { return hsv().saturation; }
    double v_hsv() const { return hsv().value; }
    double a() const { return alpha_; }
    /// @}

    /// @name Device colours
    /// Device values are x·255 (or x·31) rounded half away from zero, and not clamped: a byte keeps the low eight bits,
    /// in a packed word an excess spills into the neighbour, and a table is indexed with the number as it is.
    /// @{
    void getDib24(void* p) const;  ///< writes three bytes: blue, green, red
    void getDib24(void* p, unsigned char const* redTable, unsigned char const* greenTable,
                  unsigned char const* blueTable) const;       ///< the same, each byte looked up in its channel's table
    void getDib24(void* p, unsigned char const* table) const;  ///< the same table for every channel
    void getDib16(void* p) const;                              ///< writes one 16-bit word: five bits each, red highest
    COLORREF colorref() const;                                 ///< 0x00BBGGRR
    /// @}

protected:
    Colour(double r, double g, double b, double a) noexcept : rgb_{true, r, g, b}, alpha_{a} {}        ///< RGB
    Colour(Angle const& h, double s, double v, double a) noexcept : hsv_{true, h, s, v}, alpha_{a} {}  ///< HSV

    /// HLS; the int only tells it from HSV.
    Colour(Angle const& h, double l, double s, double a, int) noexcept : hls_{true, h, l, s}, alpha_{a} {}

    // Each fills its model's fields from one that is valid, unless they are valid already.
    virtual void calcHSV() const;  ///< from HLS if that is valid, else from RGB
    virtual void calcHLS() const;  ///< from HSV if that is valid, else from RGB
    virtual void calcRGB() const;  ///< from HLS if that is valid, else from HSV

private:
    friend struct ORN::DeviceColours;

    struct RGB {
        bool valid = false;
        double red = 0, green = 0, blue = 0;
    };
    struct HLS {
        bool valid = false;
        Angle hue;
        double lightness = 0, saturation = 0;
    };
    struct HSV {
        bool valid = false;
        Angle hue;
        double saturation = 0, value = 0;
    };

    RGB const& rgb() const {
        if (!rgb_.valid) calcRGB();
        return rgb_;
    }
    HLS const& hls() const {
        if (!hls_.valid) calcHLS();
        return hls_;
    }
    HSV const& hsv() const {
        if (!hsv_.valid) calcHSV();
        return hsv_;
    }

    mutable RGB rgb_;
    mutable HLS hls_;
    mutable HSV hsv_;
    double alpha_;
};

/// The same red, green, blue and opacity, whatever model either was made in; computed, and cached, where need be.
inline bool operator==(Colour const& left, Colour const& right) {
    return left.r() == right.r() && left.g() == right.g() && left.b() == right.b() && left.a() == right.a();
}

/// The hash of red, green, blue and opacity.
template <>
struct std::hash<Colour> {
    /// The same for equal colours.
    std::size_t operator()(Colour const& colour) const {
        std::size_t result = 0;
        for (double const component : {colour.r(), colour.g(), colour.b(), colour.a()})
            result = result * 31 + std::hash<double>{}(component);
        return result;
    }
};

/// Colour::rgba(R,G,B,A)
ORN_API std::wostream& operator<<(std::wostream& os, Colour const& colour);

namespace ORN {

// For programs in which another library has such a name, too.
using ::Colour;

}
