/// The file that keeps the registry: a tree of keys with their values, in a database with a write-ahead log. Many
/// processes may use the file at once; of an object only one thread at a time.
///
/// Calls return the error codes of Status.h. They may throw std::bad_alloc, and have changed nothing then.
#pragma once

#include "orn/os/Status.h"

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

struct sqlite3;

namespace ORN::os {

class RegistryStore {
public:
    using Names = std::vector<std::u16string>;  ///< a path: each name is that of a key below the one before it
    using Key = std::int64_t;                   ///< a root has a negative number, and always exists

    /// Remembers which file was found at an absolute path. Opens nothing.
    RegistryStore(std::string path, struct stat const& file);
    ~RegistryStore();
    RegistryStore(RegistryStore const&) = delete;
    RegistryStore& operator=(RegistryStore const&) = delete;

    bool isAt(std::string const& path, struct stat const& file) const noexcept;

    /// Begins a call, and opens the file unless it is open. Every function below needs this first. From now on the call
    /// waits for other processes for at most ten seconds in all. An empty file becomes a registry when it is opened for
    /// writing. Opened for reading it stays empty, and the call fails with errorFileNotFound.
    DWORD connect(bool forWriting);
    void disconnect() noexcept;

    /// Fails with errorKeyDeleted when the key does not exist.
    DWORD exists(Key key);

    /// Follow a path from a key. find() fails with errorFileNotFound when a key is missing, make() makes what is missing,
    /// remove() deletes the last key of the path and everything below it.
    /// @{
    DWORD find(Key from, Names const&, Key& key);
    DWORD make(Key from, Names const&, Key& key);
    DWORD remove(Key from, Names const&);
    /// @}

    /// Reads as os::queryValue does. Without `data` it gives only the type and the size.
    DWORD read(Key key, std::u16string const& name, DWORD& type, void* data, DWORD& size);
    DWORD write(Key key, std::u16string const& name, DWORD type, void const* data, DWORD size);
    DWORD removeValue(Key key, std::u16string const& name);

    /// Append the names of the keys and values directly below a key.
    /// @{
    DWORD listKeys(Key key, Names& names);
    DWORD listValues(Key key, Names& names);
    /// @}

private:
    /// Lets other processes go on for a moment. False when the call has waited long enough.
    bool wait() const noexcept;
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
