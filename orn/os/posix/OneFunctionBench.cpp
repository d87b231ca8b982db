// A program that uses one function of the library, and waits until its input ends.
// needs: orn
#include "orn/geometry/ArcFunctions.h"

#include <unistd.h>

int main() {
    char input;
    return ORNArcLength(0.5) > 1 && ::read(0, &input, 1) == 0 ? 0 : 1;
}
