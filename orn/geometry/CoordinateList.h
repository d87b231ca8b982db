/// How coordinates are written: in parentheses, separated by commas, each by the stream's own insertion.
#pragma once

#include <ostream>

namespace ORN {

template <class T, int N>
std::wostream& putList(std::wostream& os, T const (&components)[N]) {
    wchar_t before = L'(';
    for (T const component : components) {
        os << before << component;
        before = L',';
    }
    return os << L')';
}

/// For what packs itself into N components of type T.
template <class T, int N, class Tuple>
std::wostream& putTuple(std::wostream& os, Tuple const& tuple) {
    T components[N];
    tuple.packToPod(components);
    return putList(os, components);
}

/// The two corners of a box, joined by a colon; an empty one is "degenerate".
template <class Bounds>
std::wostream& putBounds(std::wostream& os, Bounds const& box) {
    if (box.degenerate()) return os << L"degenerate";
    putList(os, box.lo) << L':';
    return putList(os, box.hi);
}

}
