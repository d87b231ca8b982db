#include "orn/colour/ContextGdiplus.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ContextGdiplus, ARefusalIsTheSystemsErrorAndNamesTheCall) {
    for (char const* call : {"GdiplusStartup", "NotificationHook"}) {
        faults::Refuse const refuse{call};
        try {
            ContextGdiplus context;
            FAIL() << call;
        } catch (WinError const& error) {
            std::wstring const reason = formatMessage(31, static_cast<wchar_t const*>(nullptr));
            EXPECT_EQ(error.wWhat(), L"Error \"" + reason + L"\" calling " + utf8(std::string{call}));
        }
        EXPECT_EQ(refuse.refusals(), 1);
    }
    ContextGdiplus works;
}

}
