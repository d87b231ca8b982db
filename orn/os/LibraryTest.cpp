#include "orn/os/Library.h"

#include "orn/os/Path.h"

#include <gtest/gtest.h>

namespace os = ORN::os;

namespace {

TEST(OsLibrary, LoadsOneFileAndFindsItsFunctions) {
    std::wstring const program = os::programFile();
    std::wstring const folder = program.substr(0, program.find_last_of(os::pathSeparator()) + 1);
    ASSERT_FALSE(folder.empty()) << ::testing::PrintToString(program);

    auto const load = [](std::wstring const& file) { return os::loadLibrary(file, os::Needs::ofTheProgram); };
    HINSTANCE const library = load(folder + L"orn-beside.library");
    ASSERT_NE(library, nullptr);
    auto const number = reinterpret_cast<int (*)()>(os::libraryFunction(library, "ornBesideNumber"));
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number(), 93);
    EXPECT_EQ(os::libraryFunction(library, "ornBesideNothing"), nullptr);
    EXPECT_EQ(os::libraryFunction(nullptr, "ornBesideNumber"), nullptr);

    std::wstring const zero(1, L'\0');
    EXPECT_EQ(load(folder + L"orn-beside.library" + zero), nullptr);
    EXPECT_EQ(load(folder + L"orn-nowhere.library"), nullptr);
    EXPECT_EQ(load(L""), nullptr);
}

}
