#include "orn/foundation/Error.h"

#include "orn/os/Types.h"
#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

namespace {

static_assert(std::is_base_of_v<std::runtime_error, ORN::OrnError>);
static_assert(std::is_base_of_v<ORN::OrnError, WinError>);
static_assert(std::is_base_of_v<std::logic_error, ORN::NotImplemented>);
static_assert(!std::is_base_of_v<std::runtime_error, ORN::NotImplemented>);
static_assert(!std::is_base_of_v<ORN::OrnError, ORN::NotImplemented>);
static_assert(std::is_nothrow_copy_constructible_v<ORN::OrnError> && std::is_nothrow_copy_constructible_v<WinError> &&
              std::is_nothrow_copy_constructible_v<ORN::NotImplemented>);

template <typename E>
void expectTexts() {
    std::wstring const longer = L"a text that is long enough not to lie inside the string object";
    std::wstring const texts[] = {L"", L"plain", L"caf\u00E9 \u4E2D", {0xD83D, 0xDE00}, {0xD800}, longer};
    for (std::wstring const& text : texts) {
        auto const original = std::make_unique<E>(text);
        E const fromPointer{text.c_str()}, copy{*original};
        E assigned{L"before"};
        assigned = *original;
        EXPECT_NE(copy.what(), original->what()) << "copies own their texts";
        EXPECT_NE(assigned.wWhat(), original->wWhat());
        for (E const* error : std::initializer_list<E const*>{original.get(), &fromPointer, &copy, &assigned}) {
            EXPECT_EQ(error->wWhat(), text);
            EXPECT_EQ(static_cast<std::exception const*>(error)->what(), getMBS(text));
        }
    }
}

TEST(Error, HoldsItsTextWideAndNarrow) {
    expectTexts<ORN::OrnError>();
    expectTexts<ORN::NotImplemented>();
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
    for (std::wstring const text : {L"", L"first", L"second"}) {
        if (!text.empty()) error.tell(text);
        EXPECT_TRUE(error.what() == getMBS(text) && error.wWhat() == text && error.told() == text);
    }
}

TEST(Error, SystemCodesBecomeTexts) {
    wchar_t const* const noModule = nullptr;
    IUnknown* const noObject = nullptr;
    std::wstring const denied = formatMessage(DWORD{5}, noModule);
    EXPECT_EQ(denied.find(L"Error "), std::wstring::npos);
    EXPECT_GT(denied.size(), 5u);

    EXPECT_EQ(formatMessage(DWORD{0xDEADBEEF}, noModule), L"Error -559038737");
    EXPECT_EQ(formatMessage(DWORD{5}, L"no-such-module.dll"), L"Error 5");
    EXPECT_EQ(formatMessage(DWORD{0x80070005}, noModule), denied);  // a COM result that carries the system's code
    EXPECT_EQ(formatMessage(static_cast<HRESULT>(0x80004005), noObject),
              L"[0x80004005] " + formatMessage(DWORD{0x80004005}, noModule));
    EXPECT_EQ(formatMessage(HRESULT{0x1234ABC}, noObject), L"[0x01234abc] Error 19090108");

    // A wider type is taken for the one that has its sign, and null for what goes with it.
    EXPECT_EQ(formatMessage(5ul, nullptr), denied);
    EXPECT_EQ(formatMessage(5ull, nullptr), denied);
    EXPECT_EQ(formatMessage(0x80004005ll, nullptr), formatMessage(static_cast<HRESULT>(0x80004005), noObject));

    EXPECT_EQ(WinError{5}.wWhat(), denied);
    EXPECT_EQ((WinError{L"PostMessage", 5}.wWhat()), L"Error \"" + denied + L"\" calling PostMessage");
    HRESULT const failed = static_cast<HRESULT>(0x80004005);
    std::wstring const failure = formatMessage(failed, noObject);
    EXPECT_EQ((WinError{failed, noObject}.wWhat()), failure);
    EXPECT_EQ((WinError{L"CoInitializeEx", failed, noObject}.wWhat()), failure + L" calling CoInitializeEx");
}

TEST(Error, AFailedCallTellsItsCodeAndCopiesDo) {
    HRESULT const failed = static_cast<HRESULT>(0x80004005);
    for (auto const& [error, code] : {std::pair{WinError{5}, 5u},
                                      {WinError{0}, 0u},
                                      {WinError{L"PostMessage", 0xDEADBEEF}, 0xDEADBEEFu},
                                      {WinError{failed, nullptr}, 0x80004005u},
                                      {WinError{L"", failed, nullptr}, 0x80004005u}}) {
        WinError copy{error}, assigned{77};
        assigned = error;
        EXPECT_TRUE(error.code() == code && copy.code() == code && assigned.code() == code) << code;
        EXPECT_EQ(std::string{copy.what()}, getMBS(error.wWhat()));
        static_cast<ORN::OrnError&>(copy) = ORN::OrnError{L"another failure"};
        EXPECT_EQ(copy.code(), 0u);
        static_cast<ORN::OrnError&>(assigned) = ORN::OrnError{std::wstring{L"its zero\0four", 13}};
        EXPECT_EQ(assigned.code(), 0u);
    }
}

}
