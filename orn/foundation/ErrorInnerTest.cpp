#include "orn/foundation/Error.h"
#include "orn/os/Com.h"
#include "orn/os/ErrorText.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

namespace {

HRESULT const ok = 0, noInterface = static_cast<HRESULT>(0x80004002), failed = static_cast<HRESULT>(0x80004005);

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // COM objects have none
#endif

// An object that may tell of an error, with its references counted.
struct FakeObject final : IErrorInfo {
    FakeObject(std::optional<std::wstring> text, HRESULT query, HRESULT result, bool told)
        : description{text}, queryResult{query}, descriptionResult{result}, tells{told} {}

    std::optional<std::wstring> description;  // none: a success without a text
    HRESULT queryResult, descriptionResult;
    bool tells;
    long references = 1;

    HRESULT QueryInterface(GUID const& iid, void** object) override {
        bool const known = std::memcmp(&iid, &ORN::os::errorInfoId, sizeof iid) == 0;
        if (!known || !tells) return noInterface;
        ++references;
        *object = static_cast<IErrorInfo*>(this);
        return queryResult;
    }
    DWORD AddRef() override { return static_cast<DWORD>(++references); }
    DWORD Release() override { return static_cast<DWORD>(--references); }
    HRESULT GetGUID(GUID*) override { return failed; }
    HRESULT GetSource(BSTR*) override { return failed; }
    HRESULT GetDescription(BSTR* text) override {
        *text = description ? ORN::os::allocString(*description) : nullptr;
        return descriptionResult;
    }
    HRESULT GetHelpFile(BSTR*) override { return failed; }
    HRESULT GetHelpContext(DWORD*) override { return failed; }
};

TEST(ErrorInner, AnObjectsOwnDescriptionComesFirstAndThenTheSystemsText) {
    std::wstring const own = L"[0x80004005] the disc is upside down";
    std::wstring const systems = L"[0x80004005] " + formatMessage(DWORD{0x80004005}, static_cast<wchar_t*>(nullptr));
    std::wstring const parted{L"one\0two", 7};
    struct {
        std::optional<std::wstring> description;
        HRESULT query, descriptionResult;
        bool tells;
        std::wstring text;
    } const cases[] = {{L"the disc is upside down", ok, ok, true, own},
                       {L"the disc is upside down", noInterface, ok, true, own},  // only the pointer counts
                       {parted, ok, ok, true, L"[0x80004005] " + parted},
                       {std::nullopt, ok, ok, true, L"[0x80004005] "},
                       {L"the disc is upside down", ok, failed, true, systems},
                       {L"the disc is upside down", ok, ok, false, systems}};
    for (auto const& [description, query, descriptionResult, tells, text] : cases) {
        FakeObject object{description, query, descriptionResult, tells};
        EXPECT_EQ(formatMessage(failed, &object), text);
        EXPECT_EQ((WinError{L"Save", failed, &object}.wWhat()), std::wstring{text.c_str()} + L" calling Save");
        EXPECT_EQ(object.references, 1);
    }
}

TEST(ErrorInner, LackOfMemoryLeavesNoReference) {
    FakeObject object{L"the disc is upside down", ok, ok, true};
    faults::expectFailures({{"an error", [&] { return WinError(L"Save", failed, &object).code(); }, {}, 3}});
    EXPECT_EQ(object.references, 1);
}

TEST(ErrorInner, TheDefaultIsTheLastErrorAtConstruction) {
    ORN::os::setLastError(6);
    WinError const invalidHandle;
    ORN::os::setLastError(5);
    EXPECT_TRUE(invalidHandle.code() == 6 && WinError{}.code() == 5);
}

}
