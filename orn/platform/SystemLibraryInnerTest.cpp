#include "orn/platform/SystemLibrary.h"

#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

TEST(SystemLibraryInner, NothingIsLoadedWithoutItsFolder) {
    {
        faults::Refuse const refuse{"GetSystemDirectory"};
        EXPECT_EQ(ORN::LoadSystemLibrary(L"kernel32.dll"), nullptr);
        EXPECT_EQ(ORN::LoadSystemLibrary(L"libc.so.6"), nullptr);
        EXPECT_EQ(refuse.refusals(), 2);
    }
    faults::Refuse const refuse{"GetModuleFileName"};
    EXPECT_EQ(ORN::LoadProgramLibrary(L"orn-beside.library"), nullptr);
    EXPECT_EQ(refuse.refusals(), 1);
}

}
