/// Colour transforms between ICC profiles.
#pragma once

#include "orn/Export.h"
#include "orn/colour/Colour.h"
#include "orn/colour/ColourProfile.h"
#include "orn/foundation/Handle.h"
#include "orn/os/Types.h"

#include <span>

namespace ORN {

/// How colours that the target does not have are replaced; the numbers are ICC's.
enum class RenderingIntent : LONG {
    perceptual = 0,            ///< all colours move together, for pictures
    relativeColorimetric = 1,  ///< the nearest colour, white to white
    saturation = 2,            ///< vivid colours stay vivid, for charts
    absoluteColorimetric = 3   ///< the nearest colour, white as it is
};

/// A transform from one profile to another, through the profiles between them. Any number of threads may use one.
class ORN_API ColourTransform : public Handlable {
public:
    /// For the implementation, as this class has no data.
    /// @{
    ColourTransform() noexcept;
    ColourTransform(ColourTransform const&) noexcept;
    ColourTransform& operator=(ColourTransform const&) noexcept;
    /// @}

    ~ColourTransform() override;

    /// A transform through the profiles in this order, in the best quality that the system has; it does not need them
    /// afterwards. Throws WinError when the system cannot make it.
    /// @{
    [[nodiscard]] static Handle<ColourTransform> create(RenderingIntent intent, ColourProfile const& p1,
                                                        ColourProfile const& p2);
    [[nodiscard]] static Handle<ColourTransform> create(RenderingIntent intent, ColourProfile const& p1,
                                                        ColourProfile const& p2, ColourProfile const& p3);
    [[nodiscard]] static Handle<ColourTransform> create(RenderingIntent intent, ColourProfile const& p1,
                                                        ColourProfile const& p2, ColourProfile const& p3,
                                                        ColourProfile const& p4);
    /// @}

    virtual HTRANSFORM handle() const = 0;  ///< the colour management's; stays the object's

    /// Takes colours from the first profile's RGB to the last one's; alpha stays. Components go through as 16-bit
    /// numbers: they are clamped to 0 … 1 (what is not a number counts as 0) and rounded. The results may take the place
    /// of the colours, but not overlap them otherwise. The colours are not changed, not even what they cache, so
    /// threads may share them.
    ///
    /// Throws std::logic_error, before anything is written, when there are not as many results as colours, when the
    /// transform has anything but RGB at either end, or when it is not one that create made. A failure of the system
    /// throws WinError and leaves colours before the failure converted.
    void convert(std::span<Colour const> in, std::span<Colour> out) const;
};

}
