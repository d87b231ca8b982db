#include "drawing/Page.h"

#include "drawing/Flatten.h"

#include "orn/foundation/Error.h"
#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/UniformTransform.h"

#include <algorithm>
#include <cmath>

namespace drawing {

namespace {

using Affine = AffineTransform<2>;
using Uniform = UniformTransform<2>;

ORN::Line<2> axis(double x, double y) { return ORN::Line<2>{Vector<2>{x, y}, Point<2>::origin()}; }

std::unique_ptr<Affine> then(Affine const& first, Affine const& second) {
    return std::unique_ptr<Affine>{first.composeWith(second)};
}

/// Tells most arcs that add nothing to an extent, in a tenth of the time that their own extents take.
bool surelyContains(Extent<2> const& extent, ORN::Arc<2> const& arc, Affine const& transform, double stretch) {
    Disc const disc = discAround(arc);
    Point<2> const centre = disc.centre * transform;
    // Far more than the rounding of centre and radius.
    double const rounding = 1e-12 * (std::fabs(centre.x()) + std::fabs(centre.y()));
    double const radius = disc.radius * stretch * (1 + 1e-12) + rounding;
    // False for the empty extent, and for NaN: then the arc's own extent is taken.
    return centre.x() - radius >= extent.lo(0) && centre.x() + radius <= extent.hi(0) &&
           centre.y() - radius >= extent.lo(1) && centre.y() + radius <= extent.hi(1);
}

std::unique_ptr<Affine> turned(View const& view) {
    std::unique_ptr<Affine> transform = std::make_unique<Uniform>();
    if (view.scaleX != 1 || view.scaleY != 1) {
        transform = then(*transform, NonUniformTransform<2>::scale(view.scaleX, view.scaleY));
    }
    if (view.mirrored) transform = then(*transform, Uniform::mirror(axis(0, 1)));
    if (view.degrees != 0) transform = then(*transform, Uniform::rotation(Angle::degrees(view.degrees)));
    return transform;
}

}

Page::Page(Drawing const& drawing, PageSize size, View const& view) : size_{size}, paper_{view.paper} {
    std::unique_ptr<Affine> const turn = turned(view);
    Extent<2> extent;
    double const stretch = largestStretch(*turn);
    for (Entity const& entity : drawing.entities()) {
        if (!surelyContains(extent, entity.arc, *turn, stretch)) extent |= mappedExtent(entity.arc, *turn);
    }

    // The margin is 4 % at either side. A dot has no size to be fitted: its scale is 1.
    double const filled = 1 - 2 * 0.04;
    double const width = extent.hi().x() - extent.lo().x(), height = extent.hi().y() - extent.lo().y();
    // Division by a width or a height of 0 gives an infinity, and min takes the other one.
    double const scaleX = size.width * filled / width, scaleY = size.height * filled / height;
    double const scale = width > 0 || height > 0 ? std::min(scaleX, scaleY) : 1.0;

    Vector<2> const toOrigin = Point<2>::origin() - (extent.lo() + (extent.hi() - extent.lo()) * 0.5);
    Uniform place = Uniform::translation(toOrigin);
    place *= Uniform::scale(scale);
    // From y upwards to y downwards. The closeup comes next, while the page's middle is still the origin.
    place *= Uniform::mirror(axis(1, 0));
    place *= Uniform::scale(view.closeup.zoom);
    place *= Uniform::translation(Vector<2>{size.width * 0.5, size.height * 0.5} + view.closeup.shift);
    transform_ = then(*turn, place);

    // Very large and very small drawings overflow on the way: no page is better than one with nothing on it.
    bool const finite = (extent.lo() * place).isFinite() && (extent.hi() * place).isFinite();
    if (!(scale > 0) || !finite || !std::isfinite(largestStretch(*transform_))) {
        throw ORN::OrnError{L"the drawing is too large, or too small, to be fitted into a page"};
    }
}

double Page::lineWidth() const noexcept { return std::max(1.0, std::hypot(size_.width, size_.height) / 1000); }

}
