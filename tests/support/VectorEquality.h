/// Exact equality of vectors, which the library leaves to their components: for tests that hold on every bit but the
/// sign of zero.
#pragma once

#include "orn/geometry/Vector.h"

template <int N>
bool operator==(Vector<N> const& a, Vector<N> const& b) {
    double as[N], bs[N];
    a.packToPod(as);
    b.packToPod(bs);
    for (int i = 0; i < N; ++i)
        if (as[i] != bs[i]) return false;
    return true;
}
