#include "orn/colour/ContextGdiplus.h"

#include "orn/text/Encoding.h"
#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"

namespace {

TEST(ContextGdiplus, ARefusalIsTheSystemsErrorAndNamesTheCall) {
    for (char const* call : {"GdiplusStartup", "NotificationHook"}) {
        faults::Refuse const refuse{call};
        std::wstring const reason = formatMessage(31, static_cast<wchar_t const*>(nullptr));
        EXPECT_EQ(thrown([] { ContextGdiplus const refused; }),
                  L"WinError: Error \"" + reason + L"\" calling " + utf8(std::string{call}));
        EXPECT_EQ(refuse.refusals(), 1);
    }
    ContextGdiplus works;
}

}
