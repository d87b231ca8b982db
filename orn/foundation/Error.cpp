#include "orn/foundation/Error.h"

#include "orn/foundation/MultibyteImp.h"
#include "orn/os/Com.h"
#include "orn/os/ErrorText.h"

#include <cstring>
#include <new>
#include <utility>

namespace ORN {

namespace {

/// Assigns both texts or, when memory runs out, neither. Every step that may throw comes before the first text is lost.
void assignTexts(std::string& narrow, std::wstring& wide, std::string const& newNarrow, std::wstring const& newWide) {
    std::string copy = newNarrow;
    wide = newWide;
    narrow.swap(copy);
}

/// Leaves both texts empty when memory runs out. The runtime copies exceptions while it throws them, and another exception
/// at that moment would end the program.
void copyTexts(std::string& narrow, std::wstring& wide, std::string const& from,
               std::wstring const& wideFrom) noexcept {
    try {
        assignTexts(narrow, wide, from, wideFrom);
    } catch (std::bad_alloc const&) {}
}

// WinError keeps its code inside the narrow message, behind the terminator: a zero, then the bytes of the code. So the class
// has the layout of OrnError, what() shows nothing of it, and copies take it along.
constexpr std::size_t tailSize = 1 + sizeof(DWORD);

/// The narrow message up to its first zero. what() shows no more, and what lay behind would read as WinError's code.
std::string narrowed(std::wstring const& message) {
    std::string narrow = toMultibyte(message);
    narrow.resize(std::strlen(narrow.c_str()));
    return narrow;
}

}

OrnError::OrnError() : std::runtime_error{std::string{}} {}

OrnError::OrnError(wchar_t const* message) : OrnError{std::wstring{message}} {}

OrnError::OrnError(std::wstring const& message)
    : std::runtime_error{std::string{}}, narrow_{narrowed(message)}, wide_{message} {}

OrnError::OrnError(OrnError const& other) noexcept : std::runtime_error{other} {
    copyTexts(narrow_, wide_, other.narrow_, other.wide_);
}

OrnError& OrnError::operator=(OrnError const& other) {
    assignTexts(narrow_, wide_, other.narrow_, other.wide_);
    std::runtime_error::operator=(other);
    return *this;
}

OrnError::~OrnError() = default;

void OrnError::setup(std::wstring const& message) {
    // The conversion and the copy may throw; the move may not. So both texts change, or neither.
    std::string narrow = narrowed(message);
    wide_ = message;
    narrow_ = std::move(narrow);
}

char const* OrnError::what() const noexcept { return narrow_.c_str(); }
wchar_t const* OrnError::wWhat() const noexcept { return wide_.c_str(); }

NotImplemented::NotImplemented() : std::logic_error{std::string{}} {}

NotImplemented::NotImplemented(wchar_t const* what) : NotImplemented{std::wstring{what}} {}

NotImplemented::NotImplemented(std::wstring const& what)
    : std::logic_error{std::string{}}, narrow_{toMultibyte(what)}, wide_{what} {}

NotImplemented::NotImplemented(NotImplemented const& other) noexcept : std::logic_error{other} {
    copyTexts(narrow_, wide_, other.narrow_, other.wide_);
}

NotImplemented& NotImplemented::operator=(NotImplemented const& other) {
    assignTexts(narrow_, wide_, other.narrow_, other.wide_);
    std::logic_error::operator=(other);
    return *this;
}

NotImplemented::~NotImplemented() = default;

char const* NotImplemented::what() const noexcept { return narrow_.c_str(); }
wchar_t const* NotImplemented::wWhat() const noexcept { return wide_.c_str(); }

}

using ORN::OrnError;

namespace {

// Errors stand below the formatter, which throws them, so their texts are put together by hand.

std::wstring textOf(DWORD code) { return formatMessage(code, static_cast<wchar_t const*>(nullptr)); }

std::wstring calling(wchar_t const* function) {
    return std::wstring{L" calling "}.append(function != nullptr ? function : L"(null)");
}

/// "[0x%08lx] "
std::wstring inBrackets(HRESULT result) {
    std::wstring text = L"[0x00000000] ";
    auto rest = static_cast<DWORD>(result);
    for (std::size_t digit = 10; rest != 0; --digit, rest /= 16) text[digit] = L"0123456789abcdef"[rest % 16];
    return text;
}

/// The IErrorInfo of an object, if it has one. Holds a reference for the scope.
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
        if (description.text != nullptr) text.append(description.text, ORN::os::stringLength(description.text));
        return true;
    }

private:
    IErrorInfo* info_;
};

}

WinError::WinError(DWORD error) : OrnError{textOf(error)} { keepCode(error); }

WinError::WinError(wchar_t const* function, DWORD error)
    : OrnError{L"Error \"" + textOf(error) + L'"' + calling(function)} {
    keepCode(error);
}

WinError::WinError(HRESULT hresult, IUnknown* object) : OrnError{formatMessage(hresult, object)} {
    keepCode(static_cast<DWORD>(hresult));
}

WinError::WinError(wchar_t const* function, HRESULT hresult, IUnknown* object)
    // A zero inside a description would hide the name of the call from readers of C strings, so the description ends there.
    : OrnError{formatMessage(hresult, object).c_str() + calling(function)} {
    keepCode(static_cast<DWORD>(hresult));
}

WinError::WinError(WinError const&) noexcept = default;
WinError& WinError::operator=(WinError const&) = default;
WinError::~WinError() = default;

DWORD WinError::code() const noexcept {
    DWORD code = 0;
    std::size_t const size = narrow_.size();
    // A text that was assigned, or set by a derived class, has no tail.
    if (size >= ORN::tailSize && narrow_[size - ORN::tailSize] == '\0')
        std::memcpy(&code, narrow_.data() + size - sizeof code, sizeof code);
    return code;
}

void WinError::keepCode(DWORD code) {
    char tail[ORN::tailSize] = {};
    std::memcpy(tail + 1, &code, sizeof code);
    narrow_.append(tail, sizeof tail);
}

DWORD WinError::lastError() noexcept { return ORN::os::lastError(); }

std::wstring formatMessage(DWORD code, wchar_t const* module) {
    std::wstring text;
    if (ORN::os::errorText(code, module, text)) return text;
    return L"Error " + std::to_wstring(static_cast<int>(code));
}

std::wstring formatMessage(HRESULT hresult, IUnknown* object) {
    std::wstring message = inBrackets(hresult);

    // What the object says of its failure is more exact than the text of the code.
    ErrorInfo const info{object};
    if (!info.appendDescription(message)) message += textOf(static_cast<DWORD>(hresult));
    return message;
}

void throwIntCast() { throw OrnError{L"integer value right out of range"}; }
