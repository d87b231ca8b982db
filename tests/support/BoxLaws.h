/// The laws that boxes of doubles and of whole numbers have in common.
#pragma once

#include <gtest/gtest.h>

#include <random>

/// Boxes and points of few coordinates, so that bounds often coincide.
template <typename Box, typename Point, typename Number>
class BoxLaws {
public:
    static constexpr int n = sizeof(Point) / sizeof(Number);

    Point point() {
        Number c[3];
        for (Number& x : c) x = std::uniform_int_distribution<int>{-3, 3}(random_);
        return Point{c};
    }
    Box box() { return {point(), point()}; }

    /// With the least and the greatest number there is.
    void expect(Number least, Number most) {
        for (int i = 0; i < n; ++i) {
            EXPECT_TRUE(Box{}.lo(i) == most && Box{}.hi(i) == least);
            EXPECT_TRUE(Box::everything().lo(i) == least && Box::everything().hi(i) == most);
        }
        EXPECT_TRUE(Box{} == Box::nothing() && Box::nothing().degenerate() && !Box::everything().degenerate());
        EXPECT_TRUE(&Box::nothing() == &Box::m_nothing && &Box::everything() == &Box::m_everything);
        for (int round = 0; round < 2000; ++round) {
            Point const p = point(), q = point();
            Box const a = box(), b = box(), both = a & b, either = a | b, pq{p, q};
            for (int i = 0; i < n; ++i)
                EXPECT_TRUE(pq.lo(i) == std::min(p[i], q[i]) && pq.hi(i) == std::max(p[i], q[i]));
            EXPECT_TRUE(pq == Box{} + p + q && !pq.degenerate());
            EXPECT_EQ(a.contains(p), a + p == a);
            EXPECT_EQ(a.contains(p) && b.contains(p), both.contains(p));
            EXPECT_TRUE(!a.contains(p) || either.contains(p));
            EXPECT_TRUE((a + p).contains(p) && a.contains(a.lo()) && a.contains(a.hi()));

            EXPECT_EQ(a <= b, either == b);
            EXPECT_EQ(a <= b, both == a);
            EXPECT_EQ(a <= b, b >= a);
            EXPECT_EQ(a < b, a <= b && a != b);
            EXPECT_EQ(a > b, b < a);

            // A box that an intersection empties is the one empty value.
            EXPECT_TRUE(!both.degenerate() || both == Box::nothing());
            EXPECT_TRUE((Box::nothing() | a) == a && (a | Box::nothing()) == a);
            EXPECT_TRUE((Box::everything() & a) == a && (a & Box::nothing()) == Box::nothing());

            Box c = a;
            EXPECT_TRUE((c += p) == a + p && c == a + p);
            EXPECT_TRUE(((c = a) |= b) == either && c == either);
            EXPECT_TRUE(((c = a) &= b) == both && c == both);
        }
        Number rows[2][n], packed[2][n];
        for (int i = 0; i < n; ++i) rows[0][i] = 5 + i, rows[1][i] = 1 - i;
        Box const unordered{rows};
        EXPECT_TRUE(unordered.degenerate());
        unordered.packToPod(packed);
        for (int i = 0; i < n; ++i) EXPECT_TRUE(packed[0][i] == 5 + i && packed[1][i] == 1 - i);
    }

private:
    std::mt19937 random_{3};
};
