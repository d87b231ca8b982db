/* A program of C17 that measures arcs. */
#include "orn/geometry/ArcFunctions.h"

#include <stdio.h>

static int differs(char const* what, double value, double expected) {
    double const off = value > expected ? value - expected : expected - value;
    if (off < 1e-15) return 0;
    printf("%s is %.17g\n", what, value);
    return 1;
}

int main(void) {
    double first, height, along, tangentY, tangentX, second;
    ORNArcSplit(0, 1, &first, &height, &along, &tangentY, &tangentX, &second);
    return differs("length", ORNArcLength(1), 1.5707963267948966) +
           differs("area", ORNArcSegmentArea(1), 0.39269908169872415) +
           differs("centre of gravity", ORNArcSegmentCoG(1), 0.21220659078919379) +
           differs("height", height, 0.5) + differs("half", first, 0.41421356237309505) + differs("half", second, first) +
           differs("along", along, 0) + differs("tangent x", tangentX, 1) + differs("tangent y", tangentY, 0);
}
