#include "orn/os/Registry.h"

#include "orn/os/Fault.h"
#include "orn/os/posix/ErrnoCode.h"
#include "orn/os/posix/UserFolder.h"
#include "orn/os/posix/registry/RegistryStore.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <mutex>
#include <new>
#include <string>

namespace ORN::os {

namespace {

static_assert(std::endian::native == std::endian::little, "texts go into the file as they are");

constexpr DWORD queryRight = 1, setRight = 2;
constexpr std::size_t longestKeyName = 255;

struct OpenStore {
    OpenStore* next;
    int keys;  // how many are open
    RegistryStore store;
};

struct OpenKey {
    OpenKey* next;
    std::uintptr_t number;
    OpenStore* file;  // null for a root: it belongs to the file that the environment names at each call
    RegistryStore::Key key;
    DWORD rights;
};

// The lock guards all of these. The lists are short. A file without open keys stays open until another file is needed.
constinit std::mutex registryLock;
constinit OpenStore* stores = nullptr;
constinit OpenKey* keys = nullptr;
constinit std::uintptr_t lastNumber = 0;
constinit bool forkIsWatched = false;

void disconnectAll() noexcept {
    for (OpenStore* file = stores; file != nullptr; file = file->next) file->store.disconnect();
}

void deleteIdleStores() noexcept {
    for (OpenStore** link = &stores; *link != nullptr;) {
        OpenStore* const file = *link;
        if (file->keys == 0) {
            *link = file->next;
            delete file;
        } else {
            link = &file->next;
        }
    }
}

/// Closes the files when the library is unloaded.
struct AtEnd {
    constexpr AtEnd() noexcept = default;
    ~AtEnd() {
        std::lock_guard const guard{registryLock};
        deleteIdleStores();
        disconnectAll();
    }
};
constinit AtEnd const atEnd;

/// A child process must not inherit a connection, because it does not inherit the locks that the connection seems to have
/// on the file. So there is no connection while a process forks, and each side connects again when it needs to.
bool watchFork() noexcept {
    auto const prepare = [] {
        registryLock.lock();
        disconnectAll();
    };
    auto const resume = [] { registryLock.unlock(); };
    if (!forkIsWatched) forkIsWatched = ::pthread_atfork(prepare, resume, resume) == 0;
    return forkIsWatched;
}

/// The path of the registry. Empty when neither the environment nor the user's account gives one.
std::string storePath() {
    if (std::string own = trustedVariable("ORN_REGISTRY"); !own.empty()) {
        if (own[0] == '/') return own;
        // A relative path counts from the folder in which the program is now, not when SQLite comes to read it.
        std::unique_ptr<char, void (*)(void*)> const here{::getcwd(nullptr, 0), std::free};
        return here != nullptr ? here.get() + ("/" + own) : std::string{};
    }
    std::string const folder = userFolder("XDG_CONFIG_HOME", ".config");
    return folder.empty() ? folder : folder + "/orn/registry.db";
}

/// ENOENT means a missing folder here. A missing file would count as an empty registry.
DWORD statusOfErrno() noexcept {
    if (errno == ENOENT) return errorPathNotFound;
    return errno == EIO ? errorRegistryIo : windowsError(errno, errorAccessDenied);
}

/// Makes an empty file and the folders above it. Only the user may enter the folders or read the file.
DWORD makeFile(std::string const& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        if (::mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST) {
            // A folder that is there may be refused for another reason, such as a read-only file system.
            struct stat folder;
            DWORD const status = statusOfErrno();
            if (::stat(path.substr(0, end).c_str(), &folder) != 0) return status;
        }
    }
    // O_EXCL: this must open a new file only. Closing a file that SQLite uses would drop this process's locks on it.
    int const file = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file == -1) return errno == EEXIST ? 0 : statusOfErrno();
    ::close(file);
    return 0;
}

/// Connects to the file that the environment names now. A missing file is made for writing, and gives errorFileNotFound
/// for reading.
DWORD findStore(bool forWriting, OpenStore*& found) {
    std::string path = storePath();
    if (path.empty()) return errorPathNotFound;
    struct stat file;
    if (::stat(path.c_str(), &file) != 0) {
        if (errno != ENOENT && errno != ENOTDIR) return statusOfErrno();
        if (!forWriting) return errorFileNotFound;
        if (DWORD const status = makeFile(path)) return status;
        if (::stat(path.c_str(), &file) != 0) return statusOfErrno();
    }
    for (found = stores; found != nullptr; found = found->next) {
        if (found->store.isAt(path, file)) return found->store.connect(forWriting);
    }
    if (!watchFork()) return errorNotEnoughMemory;
    std::unique_ptr<OpenStore> opened{new OpenStore{nullptr, 0, {std::move(path), file}}};
    if (DWORD const status = opened->store.connect(forWriting)) return status;
    // Only one file without open keys stays open: this one, when its keys are closed.
    deleteIdleStores();
    opened->next = stores;
    found = stores = opened.release();
    return 0;
}

// An element of a wide string holds one code unit, on this system, too.
std::u16string units(wchar_t const* text) { return {text, text + std::wcslen(text)}; }

/// Splits a path into its names, and leaves empty ones out.
DWORD split(wchar_t const* path, RegistryStore::Names& names) {
    std::u16string const whole = units(path);
    if (whole.starts_with(u'\\')) return errorBadPath;
    for (std::size_t begin = 0; begin < whole.size();) {
        std::size_t const end = std::min(whole.find(u'\\', begin), whole.size());
        if (end - begin > longestKeyName) return errorInvalidParameter;
        if (end != begin) names.push_back(whole.substr(begin, end - begin));
        begin = end + 1;
    }
    return 0;
}

/// The key that a root is in the file; 0 for a handle that is no root.
RegistryStore::Key rootOf(HKEY key) noexcept {
    auto const number = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(key));
    // The last one is HKEY_USERS.
    return number >= rootClasses && number <= rootMachine + 1 ? number : 0;
}

OpenKey** linkTo(HKEY key) noexcept {
    OpenKey** link = &keys;
    while (*link != nullptr && (*link)->number != reinterpret_cast<std::uintptr_t>(key)) link = &(*link)->next;
    return link;
}

/// Finds the key that a handle stands for.
DWORD resolve(HKEY handle, OpenKey& key) noexcept {
    if (RegistryStore::Key const root = rootOf(handle)) {
        // A root is never opened, so it has all rights.
        key = {nullptr, 0, nullptr, root, queryRight | setRight};
        return 0;
    }
    OpenKey const* const open = *linkTo(handle);
    if (open == nullptr) return errorInvalidHandle;
    key = *open;
    return 0;
}

DWORD connect(OpenKey const& key, bool forWriting, OpenStore*& file) {
    if (key.file == nullptr) return findStore(forWriting, file);
    file = key.file;
    return file->store.connect(forWriting);
}

/// Runs a call under the lock, and returns a lack of memory as a status.
template <typename Body>
DWORD locked(Body body) noexcept {
    try {
        std::lock_guard const guard{registryLock};
        return body();
    } catch (std::bad_alloc const&) {
        return errorNotEnoughMemory;
    }
}

/// The same, for a call on an open key that needs these rights.
template <typename Body>
DWORD onKey(HKEY handle, DWORD right, bool forWriting, Body body) noexcept {
    return locked([&]() -> DWORD {
        OpenKey key;
        OpenStore* file = nullptr;
        if (DWORD const status = resolve(handle, key)) return status;
        if ((key.rights & right) != right) return errorAccessDenied;
        if (DWORD const status = connect(key, forWriting, file)) return status;
        return body(file->store, key.key);
    });
}

DWORD list(HKEY handle, std::vector<std::wstring>& names,
           DWORD (RegistryStore::*listed)(RegistryStore::Key, RegistryStore::Names&)) noexcept {
    DWORD const status = onKey(handle, queryRight, false, [&](RegistryStore& store, RegistryStore::Key key) {
        RegistryStore::Names found;
        DWORD const told = (store.*listed)(key, found);
        for (std::u16string const& name : found) names.emplace_back(name.begin(), name.end());
        return told;
    });
    return status != errorFileNotFound ? status : 0;  // a root exists even without a file
}

DWORD open(HKEY parent, wchar_t const* subKey, DWORD rights, bool create, HKEY& key) {
    RegistryStore::Names names;
    auto opened = std::make_unique<OpenKey>();
    if (DWORD const status = split(subKey, names)) return status;
    if (DWORD const status = resolve(parent, *opened)) return status;
    opened->rights = rights;

    OpenStore* file = nullptr;
    // find() and make() write to opened->key while they still read where to begin.
    RegistryStore::Key const from = opened->key;
    DWORD status = connect(*opened, create, file);
    if (status == 0) {
        status = create ? file->store.make(from, names, opened->key) : file->store.find(from, names, opened->key);
    }
    bool const isRoot = opened->file == nullptr && names.empty();
    if (status != 0 && !(isRoot && status == errorFileNotFound)) return status;  // a root exists even without a file

    if (!isRoot) {
        opened->file = file;
        ++file->keys;
    }
    // Handles of Windows are multiples of four. A number is given out once, so that a closed handle never means another
    // key.
    opened->number = lastNumber += 4;
    opened->next = keys;
    keys = opened.release();
    key = reinterpret_cast<HKEY>(keys->number);
    return 0;
}

}

DWORD openKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegOpenKeyExW")) return errorAccessDenied;
    return locked([&] { return open(parent, subKey, rights, false, key); });
}

DWORD createKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegCreateKeyExW")) return errorAccessDenied;
    return locked([&] { return open(parent, subKey, rights, true, key); });
}

DWORD closeKey(HKEY handle) noexcept {
    return locked([&]() -> DWORD {
        if (rootOf(handle) != 0) return 0;
        OpenKey** const link = linkTo(handle);
        if (*link == nullptr) return errorInvalidHandle;
        std::unique_ptr<OpenKey> const key{*link};
        *link = key->next;
        if (key->file != nullptr) --key->file->keys;
        return 0;
    });
}

DWORD queryValue(HKEY handle, wchar_t const* name, DWORD& type, void* data, DWORD& size) noexcept {
    if (ORN_OS_REFUSED("RegQueryValueExW")) return errorAccessDenied;
    return onKey(handle, queryRight, false, [&](RegistryStore& store, RegistryStore::Key key) {
        return store.read(key, units(name), type, data, size);
    });
}

DWORD setValue(HKEY handle, wchar_t const* name, DWORD type, void const* data, DWORD size) noexcept {
    if (ORN_OS_REFUSED("RegSetValueExW")) return errorAccessDenied;
    return onKey(handle, setRight, true, [&](RegistryStore& store, RegistryStore::Key key) {
        return store.write(key, units(name), type, data, size);
    });
}

DWORD deleteValue(HKEY handle, wchar_t const* name) noexcept {
    if (ORN_OS_REFUSED("RegDeleteValueW")) return errorAccessDenied;
    return onKey(handle, setRight, true,
                 [&](RegistryStore& store, RegistryStore::Key key) { return store.removeValue(key, units(name)); });
}

DWORD deleteTree(HKEY handle, wchar_t const* subKey) noexcept {
    if (ORN_OS_REFUSED("SHDeleteKeyW")) return errorAccessDenied;
    // The call needs no right on the key itself, as on Windows.
    return onKey(handle, 0, true, [&](RegistryStore& store, RegistryStore::Key key) -> DWORD {
        RegistryStore::Names names;
        if (DWORD const status = split(subKey, names)) return status;
        return store.remove(key, names);
    });
}

DWORD listSubKeys(HKEY handle, std::vector<std::wstring>& names) noexcept {
    if (ORN_OS_REFUSED("RegEnumKeyExW")) return errorAccessDenied;
    return list(handle, names, &RegistryStore::listKeys);
}

DWORD listValues(HKEY handle, std::vector<std::wstring>& names) noexcept {
    if (ORN_OS_REFUSED("RegEnumValueW")) return errorAccessDenied;
    return list(handle, names, &RegistryStore::listValues);
}

}
