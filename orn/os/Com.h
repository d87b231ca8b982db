/// The part of COM that error descriptions need: two interfaces, and the strings that they hand out. On Windows these are the
/// system's own. Elsewhere they are abstract classes of the same shape, so that their users are the same code everywhere.
#pragma once

#include "orn/os/Types.h"

#include <cstddef>
#include <string_view>

#if defined(_WIN32)
#include <oaidl.h>
#else

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend bool operator==(GUID const&, GUID const&) = default;
};
using BSTR = wchar_t*;

struct IUnknown {
    virtual HRESULT QueryInterface(GUID const& iid, void** object) = 0;
    virtual DWORD AddRef() = 0;
    virtual DWORD Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT GetGUID(GUID* guid) = 0;
    virtual HRESULT GetSource(BSTR* source) = 0;
    virtual HRESULT GetDescription(BSTR* description) = 0;
    virtual HRESULT GetHelpFile(BSTR* file) = 0;
    virtual HRESULT GetHelpContext(DWORD* context) = 0;

protected:
    ~IErrorInfo() = default;
};

#endif

namespace ORN::os {

/// IID of IErrorInfo: {1CF2B120-547D-101B-8E65-08002B2BD119}.
inline constexpr GUID errorInfoId{0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

/// Copies a text; null without memory for it. The caller frees the copy with freeString.
BSTR allocString(std::wstring_view text);

/// The length in units, which counts zeros inside the string. 0 for null.
std::size_t stringLength(BSTR string) noexcept;

/// Frees a string. Does nothing for null.
void freeString(BSTR string) noexcept;

}
