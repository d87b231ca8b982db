/// Keys of the registry. Off Windows all of it is one file of the user, which processes share: the one that the environment
/// variable ORN_REGISTRY names, otherwise registry.db in the folder orn of the configuration folder ($XDG_CONFIG_HOME, else
/// ~/.config). Names compare as on Windows: without case, by simple upper case. Statuses are those of Windows: 1009 for a
/// damaged file, 1017 for a file that is no registry, 5 for a file that may not be written, 170 when other processes have
/// kept the file busy for ten seconds.
///
/// Nothing here throws when the system refuses a call. A key that could not be opened is still an object, and every call on
/// it fails. When memory runs out, constructors and errorMessage throw std::bad_alloc and leave no key open; all other
/// calls fail with status 8.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// An open key. The destructor closes it. Accessors return false, 0 or an empty result when they fail; status and
/// errorMessage say why the last call to the system failed. The empty name is that of the key's default value. A name or a
/// path with a zero inside is refused with status 87, without a call to the system. Only one thread may use a key at a time;
/// different keys are independent.
class ORN_API RegKey {
public:
    /// The roots, with the numbers that the system gives them: the classes of programs, the settings of the user, of the
    /// machine, and of all users. Off Windows all of them are the user's own.
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
    HKEY key() const noexcept { return key_; }      ///< the handle, which this object keeps; only for a valid key

    DWORD status() const noexcept { return lastStatus_; }  ///< of the last call to the system; 0 for success

    /// The key's path and, when the last call failed and the system has a text for its status, a line end and that text.
    std::wstring errorMessage();

    /// Reads a string. In one of the expandable type, references %NAME% to existing environment variables are replaced.
    /// `value` is empty when it fails.
    bool getString(std::wstring const& name, std::wstring& value) const;

    /// Reads a list of strings, up to the first empty one. `values` is empty when it fails.
    bool getMultiString(std::wstring const& name, std::vector<std::wstring>& values) const;

    /// Reads a 32-bit number. `value` is set only on success.
    [[nodiscard]] bool getDword(std::wstring const& name, DWORD& value) const;

    /// Reads a binary value of at most `size` bytes into `data`, and returns how many bytes it has. Returns 0 for a longer
    /// value. After a failure `data` may hold anything.
    [[nodiscard]] DWORD getBinary(std::wstring const& name, void* data, DWORD size) const;

    /// Read a string as it was written, a 64-bit number, and a binary value of any length. A value of another type fails with
    /// status 0. After a failure the last argument is empty, but a number keeps its value. A stored 64-bit number may have
    /// fewer than eight bytes; the missing high ones are zeros.
    /// @{
    bool getUnexpandedString(std::wstring const& name, std::wstring& value) const;
    [[nodiscard]] bool getQword(std::wstring const& name, std::uint64_t& value) const;
    bool getBinary(std::wstring const& name, std::vector<BYTE>& bytes) const;
    /// @}

    /// Reads the bytes of a value of any type, and the system's number of that type: 1 for a string, 2 for an expandable
    /// string, 3 for a binary value, 4 and 11 for numbers of 32 and 64 bits, 7 for a list of strings. Texts are in UTF-16,
    /// little-endian.
    bool getValue(std::wstring const& name, DWORD& type, std::vector<BYTE>& bytes) const;

    /// Read the names of the keys, or of the values, directly in this key, in any order. `names` is empty when it fails. A
    /// name that another program makes or deletes meanwhile may be among them or not.
    /// @{
    bool getSubKeys(std::vector<std::wstring>& names) const;
    bool getValueNames(std::vector<std::wstring>& names) const;  ///< the default value has the empty name
    /// @}

protected:
    /// What a key is opened for.
    enum class Mode {
        read,  ///< for reading, if it exists
        write  ///< for reading and writing; a missing key is made
    };

    /// Opens the sub-key of a root or of another key. `access` are extra rights, such as those for the 32-bit or the 64-bit
    /// view, which mean nothing off Windows.
    /// @{
    RegKey(Mode mode, HKEY root, std::wstring const& subKey, DWORD access);
    RegKey(Mode mode, RegKey const& parent, std::wstring const& subKey, DWORD access);
    /// @}

    /// Takes over the key of `other`, which is then not valid, with status 0 and no path. Closes the key that this had.
    /// @{
    RegKey(RegKey&& other) noexcept;
    RegKey& operator=(RegKey&& other) noexcept;
    /// @}

    /// Keeps the status of a call, and returns whether it is that of success.
    bool keepStatus(DWORD status) const noexcept;

    /// Whether the key is valid and the name has no zero inside. Keeps status 87 for a name that has.
    bool mayAsk(std::wstring const& name) const noexcept;

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
    /// Opens the sub-key of a root or of another key. Backslashes divide the names of its path. `access` are extra rights, 0
    /// for none.
    /// @{
    RegReadKey(HKEY root, std::wstring const& subKey, DWORD access = 0);
    RegReadKey(RegKey const& parent, std::wstring const& subKey, DWORD access = 0);
    /// @}

    /// Takes over the key of `other`, which is then not valid, with status 0 and no path. Closes the key that this had.
    /// @{
    RegReadKey(RegReadKey&& other) noexcept;
    RegReadKey& operator=(RegReadKey&& other) noexcept;
    /// @}
    ~RegReadKey() override;
};

/// A key opened for reading and writing. A missing key is made.
class ORN_API RegWriteKey : public RegKey {
public:
    /// Opens the sub-key, or makes it together with all keys that are missing above it.
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

    /// Writes a string that is not expandable.
    bool setString(std::wstring const& name, std::wstring const& value) const;

    /// Write values of the other types; setValue takes the type's number, as getValue gives it. In the text of
    /// setExpandString, getString replaces references %NAME%. A list is refused with status 87 when one of its strings is
    /// empty or has a zero inside, because it could not be read again; so is a value of more than 0xFFFFFFFF bytes. Nothing
    /// is written then.
    /// @{
    bool setExpandString(std::wstring const& name, std::wstring const& value) const;
    bool setMultiString(std::wstring const& name, std::vector<std::wstring> const& values) const;
    bool setDword(std::wstring const& name, DWORD value) const;
    bool setQword(std::wstring const& name, std::uint64_t value) const;
    bool setBinary(std::wstring const& name, void const* data, std::size_t size) const;
    bool setValue(std::wstring const& name, DWORD type, void const* data, std::size_t size) const;
    /// @}

    /// Deletes a value. Also true when there is no such value.
    bool deleteValue(std::wstring const& name) const;

    /// Deletes a sub-key and everything below it. Also true when there is no such key. The empty name and names of
    /// backslashes alone would mean this key itself, and are refused with status 87.
    bool deleteSubKey(std::wstring const& name) const;

private:
    bool setText(std::wstring const& name, DWORD type, std::wstring const& text) const;
};
