/// The exceptions that the library throws, and the texts of the system's error codes.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <concepts>
#include <stdexcept>
#include <string>

class WinError;

namespace ORN {

/// A failure at run time. The wide message is the text to show; the narrow one is its form in the system's multibyte
/// code page (see getMBS), for narrow logging.
class ORN_API OrnError : public std::runtime_error {
public:
    explicit OrnError(wchar_t const* message);       ///< the terminated text
    explicit OrnError(std::wstring const& message);  ///< the text
    OrnError(OrnError const&) noexcept;    ///< copies both messages; leaves both empty without memory for them
    OrnError& operator=(OrnError const&);  ///< copies both messages, or throws std::bad_alloc and copies none
    ~OrnError() override;

    char const* what() const noexcept override;     ///< the narrow message; valid while the exception lives
    virtual wchar_t const* wWhat() const noexcept;  ///< the wide message; valid while the exception lives

protected:
    OrnError();  ///< both messages empty, for classes that call setup later

    void setup(std::wstring const& message);                           ///< sets both messages
    std::wstring const& whatString() const noexcept { return wide_; }  ///< the wide message

private:
    friend class ::WinError;

    std::string narrow_;
    std::wstring wide_;
};

/// An operation that an interface has and this type does not implement. It is a std::logic_error, and not an OrnError.
class ORN_API NotImplemented : public std::logic_error {
public:
    explicit NotImplemented(wchar_t const* what);       ///< what: the operation's qualified name
    explicit NotImplemented(std::wstring const& what);  ///< the same
    NotImplemented(NotImplemented const&) noexcept;     ///< as that of OrnError
    NotImplemented& operator=(NotImplemented const&);   ///< as that of OrnError
    ~NotImplemented() override;

    char const* what() const noexcept override;     ///< the narrow text; valid while the exception lives
    virtual wchar_t const* wWhat() const noexcept;  ///< the wide text; valid while the exception lives

protected:
    NotImplemented();  ///< both texts empty

private:
    std::string narrow_;
    std::wstring wide_;
};

}

/// A failed call of the system, told by the system's own text for the error code.
class ORN_API WinError : public ORN::OrnError {
public:
    /// The system's text for a code; by default the calling thread's last error, read at the moment of construction.
    explicit WinError(DWORD error = lastError());

    /// Error "TEXT" calling FUNCTION.
    explicit WinError(wchar_t const* function, DWORD error);

    /// The text of formatMessage(hresult, object). The object, which may be null, stays the caller's.
    explicit WinError(HRESULT hresult, IUnknown* object);

    /// TEXT calling FUNCTION.
    explicit WinError(wchar_t const* function, HRESULT hresult, IUnknown* object);

    WinError(WinError const&) noexcept;    ///< as that of OrnError, with the code
    WinError& operator=(WinError const&);  ///< as that of OrnError, with the code
    ~WinError() override;

    /// The system's code, or the COM result's bits, that this was made of; 0 once it has got another text, and in a copy
    /// that there was no memory for.
    DWORD code() const noexcept;

private:
    static DWORD lastError() noexcept;
    void keepCode(DWORD code);
};

/// The system's text for a message code, or that of a loaded module when one is named (it is never loaded here). A code
/// without a text gives `Error %d` of the code as a signed number.
[[nodiscard]] ORN_API std::wstring formatMessage(DWORD code, wchar_t const* module);

/// `[0x%08lx] ` of the result, then the object's own description of the error where it offers one (through
/// IErrorInfo), else the system's text. The object may be null; it stays the caller's.
[[nodiscard]] ORN_API std::wstring formatMessage(HRESULT hresult, IUnknown* object);

/// The same for integers with more than 32 bits, of which the lower ones count: an unsigned one is a code and a signed one
/// a result, also beside a plain nullptr.
/// @{
template <std::unsigned_integral Code>
requires(sizeof(Code) > sizeof(DWORD)) [[nodiscard]] std::wstring formatMessage(Code code, wchar_t const* module) {
    return formatMessage(static_cast<DWORD>(code), module);
}
template <std::signed_integral Result>
requires(sizeof(Result) > sizeof(HRESULT)) [[nodiscard]] std::wstring formatMessage(Result result, IUnknown* object) {
    return formatMessage(static_cast<HRESULT>(result), object);
}
/// @}

/// Throws ORN::OrnError "integer value right out of range": a 64-bit size was to go where 32 bits are taken.
[[noreturn]] ORN_API void throwIntCast();
