#include "orn/foundation/Error.h"

#include "orn/os/Com.h"
#include "orn/os/ErrorText.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"

#include <utility>

namespace ORN {

OrnError::OrnError() : std::runtime_error{std::string{}} {}

OrnError::OrnError(wchar_t const* message) : OrnError{std::wstring{message}} {}

OrnError::OrnError(std::wstring const& message)
    : std::runtime_error{std::string{}}, narrow_{getMBS(message)}, wide_{message} {}

OrnError::OrnError(OrnError const&) = default;
OrnError& OrnError::operator=(OrnError const&) = default;
OrnError::~OrnError() = default;

void OrnError::setup(std::wstring const& message) {
    std::string narrow = getMBS(message);
    wide_ = message;
    narrow_ = std::move(narrow);
}

char const* OrnError::what() const noexcept { return narrow_.c_str(); }
wchar_t const* OrnError::wWhat() const noexcept { return wide_.c_str(); }

NotImplemented::NotImplemented() : std::logic_error{std::string{}} {}

NotImplemented::NotImplemented(wchar_t const* what) : NotImplemented{std::wstring{what}} {}

NotImplemented::NotImplemented(std::wstring const& what)
    : std::logic_error{std::string{}}, narrow_{getMBS(what)}, wide_{what} {}

NotImplemented::NotImplemented(NotImplemented const&) = default;
NotImplemented& NotImplemented::operator=(NotImplemented const&) = default;
NotImplemented::~NotImplemented() = default;

char const* NotImplemented::what() const noexcept { return narrow_.c_str(); }
wchar_t const* NotImplemented::wWhat() const noexcept { return wide_.c_str(); }

}

using ORN::OrnError;

namespace {

std::wstring textOf(DWORD code) { return formatMessage(code, static_cast<wchar_t const*>(nullptr)); }

/// An object's own account of an error, held for the scope.
class ErrorInfo {
public:
    explicit ErrorInfo(IUnknown* object) {
        void* info = nullptr;
        if (object != nullptr) object->QueryInterface(ORN::os::errorInfoId, &info);  // only the pointer counts
        info_ = static_cast<IErrorInfo*>(info);
    }
    ~ErrorInfo() {
        if (info_ != nullptr) info_->Release();
    }
    ErrorInfo(ErrorInfo const&) = delete;
    ErrorInfo& operator=(ErrorInfo const&) = delete;

    bool appendDescription(std::wstring& text) const {
        if (info_ == nullptr) return false;
        struct Description {
            BSTR text = nullptr;
            ~Description() { ORN::os::freeString(text); }
        } description;
        if (info_->GetDescription(&description.text) < 0) return false;
        if (description.text != nullptr) text += description.text;
        return true;
    }

private:
    IErrorInfo* info_;
};

}

WinError::WinError(DWORD error) : OrnError{textOf(error)} {}

WinError::WinError(wchar_t const* function, DWORD error)
    : OrnError{stringPrintf(L"Error \"%ls\" calling %ls", textOf(error).c_str(), function)} {}

WinError::WinError(HRESULT hresult, IUnknown* object) : OrnError{formatMessage(hresult, object)} {}

WinError::WinError(wchar_t const* function, HRESULT hresult, IUnknown* object)
    : OrnError{stringPrintf(L"%ls calling %ls", formatMessage(hresult, object).c_str(), function)} {}

WinError::WinError(WinError const&) = default;
WinError& WinError::operator=(WinError const&) = default;
WinError::~WinError() = default;

DWORD WinError::lastError() noexcept { return ORN::os::lastError(); }

std::wstring formatMessage(DWORD code, wchar_t const* module) {
    std::wstring text;
    if (ORN::os::errorText(code, module, text)) return text;
    return stringPrintf(L"Error %d", static_cast<int>(code));
}

std::wstring formatMessage(HRESULT hresult, IUnknown* object) {
    std::wstring message = stringPrintf(L"[0x%08lx] ", static_cast<DWORD>(hresult));

    ErrorInfo const info{object};
    if (!info.appendDescription(message)) message += textOf(static_cast<DWORD>(hresult));
    return message;
}

void throwIntCast() { throw OrnError{L"integer value right out of range"}; }
