/// The file that keeps the registry: a tree of keys with their values, in a database with a write-ahead log. Many
/// processes may use the file at once; of an object only one thread at a time.
///
/// Calls give Windows statuses. They may throw std::bad_alloc, and then have done nothing.
#pragma once

#include "orn/os/Types.h"

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

struct sqlite3;

namespace ORN::os {

class RegistryStore {
public:
    using Names = std::vector<std::u16string>;  ///< of keys, each below the one before it
    using Key = std::int64_t;                   ///< roots are below 0 and always there, all others above

    static constexpr DWORD pathNotFound = 3, accessDenied = 5, diskFull = 112, busy = 170, damaged = 1009,
                           failed = 1016, foreign = 1017, keyDeleted = 1018;

    /// The file as it was found at an absolute path; nothing is opened yet.
    RegistryStore(std::string path, struct stat const& file);
    ~RegistryStore();
    RegistryStore(RegistryStore const&) = delete;
    RegistryStore& operator=(RegistryStore const&) = delete;

    bool isAt(std::string const& path, struct stat const& file) const noexcept;

    /// Begins a call: opens the file unless it is open, which all functions below need. From here on the call waits for
    /// other processes for ten seconds altogether. An empty file becomes a registry when it is opened
    /// for writing, and otherwise stays as it is: statusNotFound.
    DWORD connect(bool forWriting);
    void disconnect() noexcept;

    DWORD exists(Key key);                         ///< 0 or keyDeleted
    DWORD find(Key from, Names const&, Key& key);  ///< or statusNotFound
    DWORD make(Key from, Names const&, Key& key);  ///< those that are missing
    DWORD remove(Key from, Names const&);          ///< the last one, with everything below it

    /// As os::queryValue; without `data` only the type and the size are told.
    DWORD read(Key key, std::u16string const& name, DWORD& type, void* data, DWORD& size);
    DWORD write(Key key, std::u16string const& name, DWORD type, void const* data, DWORD size);
    DWORD removeValue(Key key, std::u16string const& name);

    /// Append the names of what the key has.
    /// @{
    DWORD listKeys(Key key, Names& names);
    DWORD listValues(Key key, Names& names);
    /// @}

private:
    bool wait() const noexcept;  ///< a moment for other processes; false once the call has waited long enough
    DWORD open(bool forWriting);
    DWORD recognise(bool& empty);
    DWORD check();
    DWORD initialise();
    DWORD keepLog();

    template <typename Body>
    DWORD change(Key key, Body body);
    DWORD list(Key key, char const* sql, Names& names);
    DWORD descend(Names const& names, Key& key, std::size_t& depth);

    std::string path_;
    dev_t device_;
    ino_t inode_;
    sqlite3* database_ = nullptr;
    std::chrono::steady_clock::time_point deadline_;
};

}
