#include "orn/colour/ContextGdiplus.h"

#include <gtest/gtest.h>

namespace {

TEST(ContextGdiplus, StartsAgainAfterItsEndAndWhileAnotherLives) {
    for (int round = 0; round < 3; ++round) {
        ContextGdiplus outer;
        ContextGdiplus inner;
    }
}

TEST(ContextGdiplus, SessionsCanBeExchanged) {
    // Two scopes whose fields change places still stop each session once; a third, started between, sees nothing of it.
    ContextGdiplus a;
    ContextGdiplus b;
    alignas(ContextGdiplus) unsigned char room[sizeof(ContextGdiplus)];
    auto* const spare = new (room) ContextGdiplus;
    ContextGdiplus ofSpare;
    ofSpare = *spare;
    *spare = a;
    a = b;
    b = *spare;
    *spare = ofSpare;
    spare->~ContextGdiplus();
}

static_assert(!std::is_copy_constructible_v<ContextGdiplus> && std::is_copy_assignable_v<ContextGdiplus>);

}
