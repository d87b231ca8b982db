/// The part of COM that error descriptions need: two interfaces and the strings they hand out. On Windows these are the
/// system's; elsewhere minimal abstract classes of the same shape, so that what stands on them is the same code.
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

BSTR allocString(std::wstring_view text);        ///< a copy that freeString takes back; null when out of memory
std::size_t stringLength(BSTR string) noexcept;  ///< in units, zeros inside counted; 0 for null
void freeString(BSTR string) noexcept;           ///< null is allowed

}
