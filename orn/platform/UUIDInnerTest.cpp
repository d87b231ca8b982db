#include "orn/platform/UUID.h"

#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"

using ORN::UUID;

namespace {

TEST(UUIDInner, RefusalsAreThrownByNameAndStatus) {
    UUID const nil, one{L"00000000-0000-0000-0000-000000000001"};
    struct {
        char const* call;
        std::function<void()> use;
        wchar_t const* text;
    } const cases[] = {
        {"UuidCreate", [] { (void)UUID::create(); }, L"OrnError: UuidCreate 1824"},  // valid on this computer only
        {"UuidCreateNil", [] { UUID{}; }, L"OrnError: UuidCreateNil 14"},
        {"UuidCompare", [&] { (void)(nil < one); }, L"OrnError: UuidCompare 87"},
        {"UuidIsNil", [&] { (void)nil.isNull(); }, L"OrnError: UuidIsNil 87"},
        {"UuidCompare", [&] { (void)(nil == one); }, L"OrnError: UuidCompare 87"},
        {"UuidCompare", [&] { (void)(nil != one); }, L"OrnError: UuidCompare 87"},
        {"UuidCompare", [&] { std::less<UUID>{}(nil, one); }, L"OrnError: UuidCompare 87"},
    };
    for (auto const& [call, use, text] : cases) {
        faults::Refuse const refuse{call};
        EXPECT_EQ(thrown(use), text);
        EXPECT_EQ(refuse.refusals(), 1);
    }
}

}
