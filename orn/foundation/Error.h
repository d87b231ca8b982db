/// The exceptions that the library throws, and the texts of the system's error codes.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <concepts>
#include <stdexcept>
#include <string>

class WinError;

namespace ORN {

/// A failure at run time. It has two messages: the wide one is the text to show to users; the narrow one is the same text
/// in the system's multibyte code page (see getMBS), for narrow logs.
class ORN_API OrnError : public std::runtime_error {
public:
    /// The message is a terminated text, or a string.
    /// @{
    explicit OrnError(wchar_t const* message);
    explicit OrnError(std::wstring const& message);
    /// @}

    /// The copy has both messages. When memory runs out, the constructor leaves both empty, because an exception that is
    /// being thrown must not throw another one; the assignment throws std::bad_alloc and changes nothing.
    /// @{
    OrnError(OrnError const&) noexcept;
    OrnError& operator=(OrnError const&);
    /// @}

    ~OrnError() override;

    /// The narrow and the wide message, which are valid while the exception lives.
    /// @{
    char const* what() const noexcept override;
    virtual wchar_t const* wWhat() const noexcept;
    /// @}

protected:
    OrnError();  ///< Leaves both messages empty, for derived classes that call setup later.

    void setup(std::wstring const& message);                           ///< Sets both messages.
    std::wstring const& whatString() const noexcept { return wide_; }  ///< The wide message.

private:
    friend class ::WinError;

    std::string narrow_;
    std::wstring wide_;
};

/// A call of an operation that the interface declares and this type does not implement. It is a std::logic_error, and not
/// an OrnError. Messages, copies and assignments follow the rules of OrnError.
class ORN_API NotImplemented : public std::logic_error {
public:
    /// The message is the qualified name of the operation.
    /// @{
    explicit NotImplemented(wchar_t const* what);
    explicit NotImplemented(std::wstring const& what);
    /// @}

    /// As those of OrnError.
    /// @{
    NotImplemented(NotImplemented const&) noexcept;
    NotImplemented& operator=(NotImplemented const&);
    ~NotImplemented() override;
    char const* what() const noexcept override;
    virtual wchar_t const* wWhat() const noexcept;
    /// @}

protected:
    NotImplemented();  ///< Leaves both messages empty.

private:
    std::string narrow_;
    std::wstring wide_;
};

}

/// A failed call of the system. The message contains the system's own text for the error code.
class ORN_API WinError : public ORN::OrnError {
public:
    /// The message is the system's text for the code. The default is the calling thread's last error, which is read at the
    /// moment of construction.
    explicit WinError(DWORD error = lastError());

    /// The message is `Error "TEXT" calling FUNCTION`, with the system's text for the code.
    explicit WinError(wchar_t const* function, DWORD error);

    /// The message is that of formatMessage(hresult, object). The object may be null; the caller goes on owning it.
    explicit WinError(HRESULT hresult, IUnknown* object);

    /// The message is `TEXT calling FUNCTION`, with the text of formatMessage(hresult, object).
    explicit WinError(wchar_t const* function, HRESULT hresult, IUnknown* object);

    /// As those of OrnError. The copy has the code, too.
    /// @{
    WinError(WinError const&) noexcept;
    WinError& operator=(WinError const&);
    ~WinError() override;
    /// @}

    /// The system's code, or the bits of the COM result, from which this error was made. It is 0 when the error has been
    /// given another text, and in a copy for which memory ran out.
    DWORD code() const noexcept;

private:
    static DWORD lastError() noexcept;
    void keepCode(DWORD code);
};

/// The system's text for a message code; when a module is named, the text from that module, which must be loaded already.
/// A code without a text gives `Error %d` with the code as a signed number.
[[nodiscard]] ORN_API std::wstring formatMessage(DWORD code, wchar_t const* module);

/// `[0x%08lx] ` with the result, followed by the object's own description of the error when it offers one (through
/// IErrorInfo), and otherwise by the system's text. The object may be null; the caller goes on owning it.
[[nodiscard]] ORN_API std::wstring formatMessage(HRESULT hresult, IUnknown* object);

/// The same for integers with more than 32 bits, of which the lower 32 count. An unsigned integer is a code and a signed
/// one is a result, so that a plain nullptr may stand beside either.
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

/// Throws ORN::OrnError "integer value right out of range". Call it when a 64-bit size does not fit an interface of 32 bits.
[[noreturn]] ORN_API void throwIntCast();
