/// Keys of the registry. Elsewhere than on Windows all of it is one file of the user's, registry.db in the folder orn of
/// the configuration folder ($XDG_CONFIG_HOME, else ~/.config), or the one that the environment variable ORN_REGISTRY
/// names; processes share it, names compare as on Windows (without case, in simple upper case), and statuses are
/// Windows' own: 1009 for a damaged file, 1017 for one that is no registry, 5 for one that may not be written.
///
/// Nothing here throws for what the system refuses: a key that could not be opened stays usable, and all that is asked
/// of it fails. When memory runs out, constructors and errorMessage throw std::bad_alloc and leave no key open;
/// everything else fails with status 8. Off Windows a call waits for other processes for at most ten seconds (status 170).
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// An open key, closed when destroyed. Accessors give false, 0 or an empty result when they fail; errorMessage tells of
/// the last call that one of them made to the system. A name of no characters is that of the key's default value. A name
/// or a path with a zero inside is refused, with status 87, before the system is asked. One key is for one thread at a
/// time; several keys need no care.
class ORN_API RegKey {
public:
    /// The roots that keys are opened below, as the system numbers them: programs' classes, the user's settings, those of
    /// the machine, those of all users. Elsewhere than on Windows all of them are the user's own.
    /// @{
    static HKEY classesRoot() noexcept { return root(0x80000000); }
    static HKEY currentUser() noexcept { return root(0x80000001); }
    static HKEY localMachine() noexcept { return root(0x80000002); }
    static HKEY users() noexcept { return root(0x80000003); }
    /// @}

    virtual ~RegKey();
    RegKey(RegKey const&) = delete;
    RegKey& operator=(RegKey const&) = delete;

    bool valid() const noexcept { return valid_; }  ///< whether the key was opened or created
    HKEY key() const noexcept { return key_; }      ///< stays this object's; means something only when valid

    DWORD status() const noexcept { return lastStatus_; }  ///< of that last call; 0 when it went well

    /// The key's path and, when the last call failed and the system has a text for its status, a line end and that text.
    std::wstring errorMessage();

    /// A string; one of the expandable type with its references %NAME% to the environment replaced, where there is such a
    /// variable. Empty when it fails.
    bool getString(std::wstring const& name, std::wstring& value) const;

    /// A list of strings; it ends before the first empty one. Empty when it fails.
    bool getMultiString(std::wstring const& name, std::vector<std::wstring>& values) const;

    /// A 32-bit number; `value` is set only on success.
    [[nodiscard]] bool getDword(std::wstring const& name, DWORD& value) const;

    /// Reads a binary value of at most `size` bytes into `data`; returns how many there were. A longer one gives 0; what
    /// `data` holds after a failure is not said.
    [[nodiscard]] DWORD getBinary(std::wstring const& name, void* data, DWORD size) const;

    /// More of the kind. A value of another type fails with status 0, and what failed leaves nothing in its last argument,
    /// but a number as it was. A 64-bit number may have fewer than its eight bytes, and then ends with zeros.
    /// @{
    bool getUnexpandedString(std::wstring const& name, std::wstring& value) const;      ///< a string as it was written
    [[nodiscard]] bool getQword(std::wstring const& name, std::uint64_t& value) const;  ///< a 64-bit number
    bool getBinary(std::wstring const& name, std::vector<BYTE>& bytes) const;  ///< a binary value of any length
    /// @}

    /// The bytes of a value of any type, and the type as the system numbers it: 1 for a string, 2 for an expandable one, 3
    /// binary, 4 and 11 for numbers of 32 and 64 bits, 7 for a list of strings. Texts are in UTF-16, little-endian.
    bool getValue(std::wstring const& name, DWORD& type, std::vector<BYTE>& bytes) const;

    /// The names of the keys and of the values that are directly in this one, in no order of meaning; empty when it fails.
    /// What others make or delete meanwhile may be among them or not.
    /// @{
    bool getSubKeys(std::vector<std::wstring>& names) const;
    bool getValueNames(std::vector<std::wstring>& names) const;  ///< the default value's is empty
    /// @}

protected:
    /// What a key is opened for.
    enum class Mode {
        read,  ///< an existing one
        write  ///< for reading too; a missing one is made
    };

    /// Opens the sub-key of a root or of another key. `access` are extra rights, as those for the 32-bit or 64-bit view
    /// (which mean nothing elsewhere than on Windows).
    /// @{
    RegKey(Mode mode, HKEY root, std::wstring const& subKey, DWORD access);
    RegKey(Mode mode, RegKey const& parent, std::wstring const& subKey, DWORD access);
    /// @}

    /// Takes the other's key over and leaves it as one that is not valid, with status 0 and no path. A key that this had is
    /// closed first.
    /// @{
    RegKey(RegKey&& other) noexcept;
    RegKey& operator=(RegKey&& other) noexcept;
    /// @}

    bool keepStatus(DWORD status) const noexcept;          ///< whether it is that of success
    bool mayAsk(std::wstring const& name) const noexcept;  ///< whether there is a key, and the name can be one

private:
    static HKEY root(std::uint32_t number) noexcept {
        return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(number)));
    }
    void open(Mode mode, HKEY parent, std::wstring const& subKey, DWORD access);
    bool readString(std::wstring const& name, std::wstring& text) const;
    bool readMultiString(std::wstring const& name, std::vector<std::wstring>& texts) const;

    bool valid_ = false;
    mutable DWORD lastStatus_ = 0;
    HKEY key_ = nullptr;
    std::wstring path_;
};

/// A key opened for reading; not valid when there is none.
class ORN_API RegReadKey : public RegKey {
public:
    /// Opens the sub-key, by names divided by backslashes, of a root or of another key. `access` are extra rights, 0 for
    /// none.
    /// @{
    RegReadKey(HKEY root, std::wstring const& subKey, DWORD access = 0);
    RegReadKey(RegKey const& parent, std::wstring const& subKey, DWORD access = 0);
    /// @}

    /// Takes the other's key over and leaves it as one that is not valid, with status 0 and no path. A key that this had is
    /// closed first.
    /// @{
    RegReadKey(RegReadKey&& other) noexcept;
    RegReadKey& operator=(RegReadKey&& other) noexcept;
    /// @}
    ~RegReadKey() override;
};

/// A key opened for reading and writing, made when there is none.
class ORN_API RegWriteKey : public RegKey {
public:
    /// Opens or makes the sub-key, and all that is missing on the way to it.
    /// @{
    RegWriteKey(HKEY root, std::wstring const& subKey, DWORD access = 0);
    RegWriteKey(RegWriteKey const& parent, std::wstring const& subKey, DWORD access = 0);
    /// @}

    /// As those of RegReadKey.
    /// @{
    RegWriteKey(RegWriteKey&& other) noexcept;
    RegWriteKey& operator=(RegWriteKey&& other) noexcept;
    /// @}
    ~RegWriteKey() override;

    bool setString(std::wstring const& name, std::wstring const& value) const;  ///< writes one that is not expandable

    /// More of the kind. A list with an empty string, or one with a zero inside, could not be read again and is refused with
    /// status 87, and so is what has more than 0xFFFFFFFF bytes. Nothing is written then.
    /// @{
    bool setExpandString(std::wstring const& name, std::wstring const& value) const;  ///< with %NAME%, for getString
    bool setMultiString(std::wstring const& name, std::vector<std::wstring> const& values) const;
    bool setDword(std::wstring const& name, DWORD value) const;
    bool setQword(std::wstring const& name, std::uint64_t value) const;
    bool setBinary(std::wstring const& name, void const* data, std::size_t size) const;
    bool setValue(std::wstring const& name, DWORD type, void const* data, std::size_t size) const;  ///< see getValue
    /// @}

    bool deleteValue(std::wstring const& name) const;  ///< also true when there was none

    /// With everything below it; also true when there was none. A name of no characters, or of backslashes alone, would be
    /// this key itself and is refused with status 87.
    bool deleteSubKey(std::wstring const& name) const;

private:
    bool setText(std::wstring const& name, DWORD type, std::wstring const& text) const;
};
