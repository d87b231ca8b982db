#include "orn/foundation/DebuggingLevelImp.h"
#include "orn/text/Quark.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(QuarkOutput, ShowsItsTextByTheDebuggingLevel) {
    Quark const quark = Quark::create(L"text");
    std::wostringstream pointer;
    pointer << L"Q:" << static_cast<void const*>(quark.value());
    for (DebugStream::DebuggingLevel level : {DebugStream::debugNothing, DebugStream::debugFailures,
                                              DebugStream::debugNormal, DebugStream::debugEverything}) {
        DebugStream::currentLevel = level;
        std::wostringstream written;
        written << quark;
        EXPECT_EQ(written.str(), level < 2 ? pointer.str() : pointer.str() + L" \"text\"") << level;
    }
    DebugStream::currentLevel = DebugStream::debugNormal;
}
