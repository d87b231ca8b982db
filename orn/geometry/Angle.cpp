#include "orn/geometry/Angle.h"

#include "orn/geometry/Elementary.h"

#include <ostream>

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

double difference(Angle const& a, Angle const& b) noexcept { return (a - b).radians(); }

}

Angle Angle::radians(double r) noexcept {
    auto const [sine, cosine] = ORN::sineAndCosine(r);
    return {cosine, sine};
}

Angle Angle::degrees(double d) noexcept { return radians(d * radiansPerDegree); }

Angle Angle::cosSin(double c, double s) noexcept {
    double const h = std::sqrt(c * c + s * s);
    return {c / h, s / h};
}

double Angle::radians() const noexcept { return ORN::arcTangent(sine_, cosine_); }

double Angle::degrees() const noexcept { return radians() / radiansPerDegree; }

Angle Angle::operator*(int n) const noexcept { return radians(radians() * n); }

bool closerThanDegrees(Angle const& a, Angle const& b, double tolerance) noexcept {
    return tolerance > std::fabs(difference(a, b) / radiansPerDegree);
}

bool closerThanRadians(Angle const& a, Angle const& b, double tolerance) noexcept {
    return tolerance > std::fabs(difference(a, b));
}

std::wostream& operator<<(std::wostream& os, Angle const& angle) { return os << angle.degrees(); }
