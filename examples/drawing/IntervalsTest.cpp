#include "drawing/Intervals.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(Intervals, MeasureLineByLineOrAllLinesAtOnce) {
    std::mt19937 random{11};
    auto const upTo = [&](int most) { return static_cast<std::int32_t>(random() % static_cast<unsigned>(most + 1)); };
    for (int round = 0; round < 20000; ++round) {
        std::int32_t const start = 256 * upTo(3000), reach = round % 2 == 0 ? 900 : 90000;
        std::int32_t lefts[drawing::lanes], rights[drawing::lanes];
        for (int i = 0; i < drawing::lanes; ++i) {
            lefts[i] = upTo(7) == 0 ? 0x3F3F3F3F : start + upTo(2 * reach) - reach;
            rights[i] = lefts[i] == 0x3F3F3F3F ? -0x3F3F3F40 : lefts[i] + upTo(reach) - reach / 20;
        }
        drawing::PlainIntervals const plain{lefts, rights, start};
        drawing::Intervals const fast{lefts, rights, start};
        std::int32_t const place = upTo(drawing::Intervals::window);
        std::int32_t first = drawing::Intervals::window, last = 0, beyond = 0;
        for (int i = 0; i < drawing::linesPerRow; ++i) {
            std::int32_t const left = std::clamp(lefts[i] - start, 0, drawing::Intervals::window);
            std::int32_t const right = std::clamp(rights[i] - start, 0, drawing::Intervals::window);
            first = std::min(first, left);
            last = std::max(last, right);
            beyond += std::max(0, right - std::max(left, place));
        }
        ASSERT_EQ(plain.first(), first);
        ASSERT_EQ(fast.first(), first);
        ASSERT_EQ(plain.last(), last);
        ASSERT_EQ(fast.last(), last);
        ASSERT_EQ(plain.beyond(place), beyond);
        ASSERT_EQ(fast.beyond(place), beyond);
    }
}

}
