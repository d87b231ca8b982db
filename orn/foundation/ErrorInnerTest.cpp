#include "orn/foundation/Error.h"
#include "orn/os/Com.h"
#include "orn/os/ErrorText.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

HRESULT const ok = 0, noInterface = static_cast<HRESULT>(0x80004002), failed = static_cast<HRESULT>(0x80004005);

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // COM objects have none
#endif

// An object that may tell of an error, with its references counted.
struct FakeObject final : IErrorInfo {
    wchar_t const* description = L"the disc is upside down";  // null: a success without a text
    HRESULT queryResult = ok, descriptionResult = ok;
    bool tells = true;
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
        *text = description != nullptr ? ORN::os::allocString(description) : nullptr;
        return descriptionResult;
    }
    HRESULT GetHelpFile(BSTR*) override { return failed; }
    HRESULT GetHelpContext(DWORD*) override { return failed; }
};

std::wstring systemText() { return formatMessage(static_cast<DWORD>(failed), static_cast<wchar_t const*>(nullptr)); }

TEST(ErrorInner, AnObjectsOwnDescriptionComesFirst) {
    FakeObject object;
    EXPECT_EQ(formatMessage(failed, &object), L"[0x80004005] the disc is upside down");
    EXPECT_EQ((WinError{L"Save", failed, &object}.wWhat()),
              std::wstring{L"[0x80004005] the disc is upside down calling Save"});
    object.queryResult = noInterface;  // only the pointer counts
    EXPECT_EQ(formatMessage(failed, &object), L"[0x80004005] the disc is upside down");
    object.description = nullptr;
    EXPECT_EQ(formatMessage(failed, &object), L"[0x80004005] ");
    EXPECT_EQ(object.references, 1);
}

TEST(ErrorInner, WithoutADescriptionTheSystemsTextStands) {
    FakeObject silent, broken;
    silent.tells = false;
    broken.descriptionResult = failed;
    EXPECT_EQ(formatMessage(failed, &silent), L"[0x80004005] " + systemText());
    EXPECT_EQ(formatMessage(failed, &broken), L"[0x80004005] " + systemText());
    EXPECT_EQ(silent.references, 1);
    EXPECT_EQ(broken.references, 1);
}

TEST(ErrorInner, LackOfMemoryLeavesNoReferenceAndNoBlock) {
    FakeObject object;
    long const blocks = faults::liveBlocks();
    int const failures = faults::failEveryAllocation([&] { WinError const error(L"Save", failed, &object); },
                                                     [&](bool) { EXPECT_EQ(object.references, 1); });
    EXPECT_GT(failures, 3);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(faults::liveBlocks(), blocks);
}

TEST(ErrorInner, TheDefaultIsTheLastErrorAtConstruction) {
    ORN::os::setLastError(6);
    WinError const invalidHandle;
    ORN::os::setLastError(5);
    WinError const denied;
    EXPECT_EQ(invalidHandle.wWhat(), std::wstring{WinError{6}.wWhat()});
    EXPECT_EQ(denied.wWhat(), std::wstring{WinError{5}.wWhat()});
    EXPECT_NE(std::wstring{denied.wWhat()}, invalidHandle.wWhat());
}

}
