#include "orn/colour/ContextGdiplus.h"

#include "orn/foundation/Error.h"
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
            std::string const text = error.what();
            EXPECT_EQ(text, "Error \"" + getMBS(formatMessage(31, nullptr)) + "\" calling " + call);
        }
        EXPECT_EQ(refuse.refusals(), 1);
    }
    ContextGdiplus works;
}

}
