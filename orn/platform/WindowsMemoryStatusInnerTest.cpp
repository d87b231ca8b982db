#include "orn/platform/WindowsMemoryStatus.h"

#include "orn/foundation/Error.h"
#include "orn/text/Printf.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

TEST(WindowsMemoryStatusInner, ARefusalIsThrownWithTheSystemsText) {
    faults::Refuse const refuse{"GlobalMemoryStatusEx"};
    try {
        ORN::WindowsMemoryStatus const status;
        ADD_FAILURE() << "gave " << status.usefulRam();
    } catch (WinError const& error) {
        std::wstring const text = formatMessage(DWORD{8}, nullptr);
        EXPECT_EQ(error.wWhat(), stringPrintf(L"Error \"%ls\" calling %ls", text.c_str(), L"GlobalMemoryStatusEx"));
    }
}

}
