/* A program of C17 that measures arcs. */
#include "orn/geometry/ArcFunctions.h"

#include <math.h>
#include <stdio.h>

int main(void) {
    double first, height, along, tangentY, tangentX, second;
    ORNArcSplit(0, 1, &first, &height, &along, &tangentY, &tangentX, &second);
    double const off = fabs(ORNArcLength(1) - 1.5707963267948966) + fabs(ORNArcSegmentArea(1) - 0.39269908169872415) +
                       fabs(ORNArcSegmentCoG(1) - 0.21220659078919379) + fabs(height - 0.5);
    printf("off by %g\n", off);
    return off > 1e-15;
}
