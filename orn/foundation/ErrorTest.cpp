#include "orn/foundation/Error.h"

#include "orn/os/Types.h"
#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

static_assert(std::is_base_of_v<std::runtime_error, ORN::OrnError>);
static_assert(std::is_base_of_v<ORN::OrnError, WinError>);
static_assert(std::is_base_of_v<std::logic_error, ORN::NotImplemented>);
static_assert(!std::is_base_of_v<std::runtime_error, ORN::NotImplemented>);
static_assert(!std::is_base_of_v<ORN::OrnError, ORN::NotImplemented>);
static_assert(sizeof(WinError) == sizeof(ORN::OrnError));

TEST(Error, FamiliesAreCaughtByTheirBases) {
    EXPECT_THROW(throw ORN::OrnError{L"x"}, std::runtime_error);
    EXPECT_THROW(throw WinError{5}, ORN::OrnError);
    EXPECT_THROW(throw ORN::NotImplemented{L"x"}, std::logic_error);
}

template <typename E>
void holdsBothTexts() {
    std::wstring const texts[] = {L"", L"plain", L"caf\u00E9 \u4E2D", {0xD83D, 0xDE00}, {0xD800}};
    for (std::wstring const& text : texts) {
        E const fromString{text}, fromPointer{text.c_str()};
        for (E const* error : {&fromString, &fromPointer}) {
            EXPECT_EQ(error->wWhat(), text);
            EXPECT_EQ(error->what(), getMBS(text));
            EXPECT_EQ(static_cast<std::exception const*>(error)->what(), getMBS(text));
        }
    }
}

template <typename E>
void copiesOwnTheirTexts() {
    auto original = std::make_unique<E>(L"a text that is long enough not to lie inside the string object");
    std::wstring const wide = original->wWhat();
    std::string const narrow = original->what();
    E const copy{*original};
    E assigned{L"before"};
    assigned = *original;
    EXPECT_NE(copy.what(), original->what());
    EXPECT_NE(assigned.wWhat(), original->wWhat());
    original.reset();
    for (E const* error : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(error->wWhat(), wide);
        EXPECT_EQ(error->what(), narrow);
    }
}

TEST(Error, HoldsTheTextWideAndNarrow) {
    holdsBothTexts<ORN::OrnError>();
    holdsBothTexts<ORN::NotImplemented>();
}

TEST(Error, CopiesOwnTheirTexts) {
    copiesOwnTheirTexts<ORN::OrnError>();
    copiesOwnTheirTexts<ORN::NotImplemented>();
}

// A class that knows its text only after its construction.
class LateError : public ORN::OrnError {
public:
    LateError() = default;
    void tell(std::wstring const& message) { setup(message); }
    std::wstring const& told() const { return whatString(); }
};

TEST(Error, DerivedClassesSetTheTextLater) {
    LateError error;
    EXPECT_STREQ(error.what(), "");
    EXPECT_EQ(error.wWhat(), std::wstring{});
    error.tell(L"first");
    error.tell(L"second");
    EXPECT_STREQ(error.what(), "second");
    EXPECT_EQ(error.wWhat(), std::wstring{L"second"});
    EXPECT_EQ(error.told(), L"second");
}

TEST(Error, SystemCodesBecomeTexts) {
    wchar_t const* const noModule = nullptr;
    IUnknown* const noObject = nullptr;
    std::wstring const denied = formatMessage(DWORD{5}, noModule);
    EXPECT_EQ(denied.find(L"Error "), std::wstring::npos);
    EXPECT_GT(denied.size(), 5u);

    EXPECT_EQ(formatMessage(DWORD{0xDEADBEEF}, noModule), L"Error -559038737");
    EXPECT_EQ(formatMessage(DWORD{5}, L"no-such-module.dll"), L"Error 5");
    EXPECT_EQ(formatMessage(static_cast<HRESULT>(0x80004005), noObject),
              L"[0x80004005] " + formatMessage(DWORD{0x80004005}, noModule));
    EXPECT_EQ(formatMessage(HRESULT{0x1234ABC}, noObject), L"[0x01234abc] Error 19090108");

    EXPECT_EQ(WinError{5}.wWhat(), denied);
    EXPECT_EQ((WinError{L"PostMessage", 5}.wWhat()), L"Error \"" + denied + L"\" calling PostMessage");
    HRESULT const failed = static_cast<HRESULT>(0x80004005);
    std::wstring const failure = formatMessage(failed, noObject);
    EXPECT_EQ((WinError{failed, noObject}.wWhat()), failure);
    EXPECT_EQ((WinError{L"CoInitializeEx", failed, noObject}.wWhat()), failure + L" calling CoInitializeEx");
}

TEST(Error, AnIntegerThatDoesNotFitIsTold) {
    try {
        throwIntCast();
    } catch (std::runtime_error const& error) {
        EXPECT_STREQ(error.what(), "integer value right out of range");
        EXPECT_EQ(dynamic_cast<ORN::OrnError const&>(error).wWhat(), std::wstring{L"integer value right out of range"});
    }
}

}
