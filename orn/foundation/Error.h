/// The exceptions that the library throws, and the texts of the system's error codes.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <stdexcept>
#include <string>

namespace ORN {

/// A failure at run time. The wide message is the text to show; the narrow one is its form in the system's multibyte
/// code page (see getMBS), for narrow logging.
class ORN_API OrnError : public std::runtime_error {
public:
    explicit OrnError(wchar_t const* message);       ///< the terminated text
    explicit OrnError(std::wstring const& message);  ///< the text
    OrnError(OrnError const&);                       ///< copies both messages
    OrnError& operator=(OrnError const&);            ///< copies both messages
    ~OrnError() override;

    char const* what() const noexcept override;     ///< the narrow message; valid while the exception lives
    virtual wchar_t const* wWhat() const noexcept;  ///< the wide message; valid while the exception lives

protected:
    OrnError();  ///< both messages empty, for classes that call setup later

    void setup(std::wstring const& message);                           ///< sets both messages
    std::wstring const& whatString() const noexcept { return wide_; }  ///< the wide message

private:
    std::string narrow_;
    std::wstring wide_;
};

/// An operation that an interface has and this type does not implement. It is a std::logic_error, and not an OrnError.
class ORN_API NotImplemented : public std::logic_error {
public:
    explicit NotImplemented(wchar_t const* what);       ///< what: the operation's qualified name
    explicit NotImplemented(std::wstring const& what);  ///< the same
    NotImplemented(NotImplemented const&);              ///< copies both messages
    NotImplemented& operator=(NotImplemented const&);   ///< copies both messages
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

    WinError(WinError const&);             ///< copies both messages
    WinError& operator=(WinError const&);  ///< copies both messages
    ~WinError() override;

private:
    static DWORD lastError() noexcept;
};

/// The system's text for a message code, or that of a loaded module when one is named (it is never loaded here). A code
/// without a text gives `Error %d` of the code as a signed number.
ORN_API std::wstring formatMessage(DWORD code, wchar_t const* module);

/// `[0x%08lx] ` of the result, then the object's own description of the error where it offers one (through
/// IErrorInfo), else the system's text. The object may be null; it stays the caller's.
ORN_API std::wstring formatMessage(HRESULT hresult, IUnknown* object);

/// Throws ORN::OrnError "integer value right out of range": a 64-bit size was to go where 32 bits are taken.
[[noreturn]] ORN_API void throwIntCast();
