/// What the lines of samples of one row of pixels cover.
#pragma once

#include "drawing/Samples.h"

#include <algorithm>
#include <cstdint>

#if (defined(__SSE2__) || defined(_M_X64)) && !defined(ORN_SCALAR)
#define ORN_INTERVALS_SSE2
#include <emmintrin.h>
#endif

namespace drawing {

inline constexpr int lanes = 16;  ///< numbers that an Intervals reads; the last one counts for nothing

/// An interval on each of the lines of a row, without what lies outside of a window. Places are counted in steps from the
/// window's start. An interval that ends before it begins is empty.
class PlainIntervals {
public:
    static constexpr std::int32_t window = 32767;  ///< steps

    PlainIntervals(std::int32_t const* lefts, std::int32_t const* rights, std::int32_t start) {
        for (int i = 0; i < linesPerRow; ++i) {
            lefts_[i] = std::clamp(lefts[i] - start, 0, window);
            rights_[i] = std::clamp(rights[i] - start, 0, window);
            first_ = std::min(first_, lefts_[i]);
            last_ = std::max(last_, rights_[i]);
            rights_[i] = std::max(rights_[i], lefts_[i]);
        }
    }

    std::int32_t first() const { return first_; }  ///< where the first of them begins
    std::int32_t last() const { return last_; }    ///< where the last of them ends

    /// The length of all that lies to the right of a place.
    std::int32_t beyond(std::int32_t place) const {
        std::int32_t sum = 0;
        for (int i = 0; i < linesPerRow; ++i) sum += std::max(rights_[i], place) - std::max(lefts_[i], place);
        return sum;
    }

private:
    std::int32_t lefts_[linesPerRow], rights_[linesPerRow];
    std::int32_t first_ = window, last_ = 0;
};

#if defined(ORN_INTERVALS_SSE2)

/// The same with all lines at once, in two registers for each side.
class FastIntervals {
public:
    static constexpr std::int32_t window = PlainIntervals::window;

    FastIntervals(std::int32_t const* lefts, std::int32_t const* rights, std::int32_t start)
        : lefts_{load(lefts, start), load(lefts + 8, start)}, rights_{load(rights, start), load(rights + 8, start)} {
        // The last lane becomes an empty interval.
        __m128i const lastLane = _mm_setr_epi16(0, 0, 0, 0, 0, 0, 0, window);
        lefts_[1] = _mm_or_si128(lefts_[1], lastLane);
        rights_[1] = _mm_andnot_si128(lastLane, rights_[1]);
        __m128i least = _mm_min_epi16(lefts_[0], lefts_[1]), most = _mm_max_epi16(rights_[0], rights_[1]);
        least = _mm_min_epi16(least, _mm_shuffle_epi32(least, 0x4E));
        most = _mm_max_epi16(most, _mm_shuffle_epi32(most, 0x4E));
        least = _mm_min_epi16(least, _mm_shufflelo_epi16(least, 0x4E));
        most = _mm_max_epi16(most, _mm_shufflelo_epi16(most, 0x4E));
        first_ = std::min(_mm_extract_epi16(least, 0), _mm_extract_epi16(least, 1));
        last_ = std::max(_mm_extract_epi16(most, 0), _mm_extract_epi16(most, 1));
        for (int i = 0; i < 2; ++i) rights_[i] = _mm_max_epi16(rights_[i], lefts_[i]);
    }

    std::int32_t first() const { return first_; }
    std::int32_t last() const { return last_; }

    std::int32_t beyond(std::int32_t place) const {
        __m128i const here = _mm_set1_epi16(static_cast<short>(place)), ones = _mm_set1_epi16(1);
        __m128i sums[2];
        for (int i = 0; i < 2; ++i) {
            __m128i const lengths = _mm_sub_epi16(_mm_max_epi16(rights_[i], here), _mm_max_epi16(lefts_[i], here));
            sums[i] = _mm_madd_epi16(lengths, ones);
        }
        __m128i sum = _mm_add_epi32(sums[0], sums[1]);
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0x4E));
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0xB1));
        return _mm_cvtsi128_si32(sum);
    }

private:
    /// What does not fit into 16 bits becomes the window's start or its end.
    static __m128i load(std::int32_t const* from, std::int32_t start) {
        auto const* const places = reinterpret_cast<__m128i const*>(from);
        __m128i const origin = _mm_set1_epi32(start);
        __m128i const low = _mm_sub_epi32(_mm_loadu_si128(places), origin);
        __m128i const high = _mm_sub_epi32(_mm_loadu_si128(places + 1), origin);
        return _mm_max_epi16(_mm_packs_epi32(low, high), _mm_setzero_si128());
    }

    __m128i lefts_[2], rights_[2];
    std::int32_t first_, last_;
};

using Intervals = FastIntervals;
#else
using Intervals = PlainIntervals;
#endif

}
