#include "orn/os/posix/registry/RegistryStore.h"

#include "orn/os/Registry.h"
#include "orn/os/posix/registry/Database.h"
#include "orn/os/posix/registry/NameCase.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstring>
#include <string_view>
#include <utility>

namespace ORN::os {

namespace {

constexpr std::chrono::seconds longestWait{10};
constexpr std::int64_t applicationId = 0x6F726E72, format = 1;  // "ornr"

std::u16string folded(std::u16string name) {
    for (char16_t& unit : name) unit = upperCaseOfName(unit);
    return name;
}

}

RegistryStore::RegistryStore(std::string path, struct stat const& file)
    : path_{std::move(path)}, device_{file.st_dev}, inode_{file.st_ino} {}

RegistryStore::~RegistryStore() { disconnect(); }

bool RegistryStore::isAt(std::string const& path, struct stat const& file) const noexcept {
    // Another file may have got the name, and the same file may have got another name. Neither is this registry.
    return device_ == file.st_dev && inode_ == file.st_ino && path_ == path;
}

void RegistryStore::disconnect() noexcept {
    if (database_ != nullptr) sqlite3_close(std::exchange(database_, nullptr));
}

bool RegistryStore::wait() const noexcept {
    if (std::chrono::steady_clock::now() >= deadline_) return false;
    ::usleep(1000);
    return true;
}

DWORD RegistryStore::connect(bool forWriting) {
    deadline_ = std::chrono::steady_clock::now() + longestWait;
    // A file that was opened for reading only may have become writable meanwhile.
    bool const mayWriteNow = database_ != nullptr && forWriting && sqlite3_db_readonly(database_, "main") == 1 &&
                             ::access(path_.c_str(), W_OK) == 0;
    if (mayWriteNow) disconnect();
    if (database_ != nullptr) {
        return forWriting && sqlite3_db_readonly(database_, "main") == 1 ? errorAccessDenied : 0;
    }
    struct stat file;
    // When the file is gone, so are all keys that were opened in it.
    if (::stat(path_.c_str(), &file) != 0 || !isAt(path_, file)) return errorKeyDeleted;
    if (!S_ISREG(file.st_mode)) return errorNotRegistryFile;

    DWORD const status = open(forWriting);
    if (status != 0) disconnect();
    return status;
}

DWORD RegistryStore::open(bool forWriting) {
    if (!libsqlite3.open()) return libsqlite3.missing();
    // SQLite must not make the file: one that has gone must not come back under its name. It opens the file for reading
    // when it may not write to it. The registry's lock keeps threads apart, so SQLite needs no mutex.
    int const flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    int const result = sqlite3_open_v2(path_.c_str(), &database_, flags, nullptr);
    if (result != SQLITE_OK) return statusOf(database_, result);
    sqlite3_busy_handler(
        database_, [](void* store, int) { return static_cast<RegistryStore*>(store)->wait() ? 1 : 0; }, this);

    // The log is somebody else's until the file turns out to be a sound registry: do not write it back on closing.
    sqlite3_db_config(database_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    // Somebody else may have made the file. What its schema says must not run any code.
    for (int const what :
         {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA}) {
        sqlite3_db_config(database_, what, 0, nullptr);
    }
    bool empty = false;
    if (DWORD const status = recognise(empty)) return status;
    if (empty) {
        if (!forWriting) return errorFileNotFound;
        if (DWORD const status = initialise()) return status;
    } else if (DWORD const status = check()) {
        return status;
    }
    if (DWORD const status = keepLog()) return status;
    sqlite3_db_config(database_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
    return forWriting && sqlite3_db_readonly(database_, "main") == 1 ? errorAccessDenied : 0;
}

DWORD RegistryStore::recognise(bool& empty) {
    std::int64_t pages = 0, id = 0, version = 0;
    DWORD status = askNumber(database_, "PRAGMA page_count", pages);
    if (status == 0) status = askNumber(database_, "PRAGMA application_id", id);
    if (status == 0) status = askNumber(database_, "PRAGMA user_version", version);
    if (status != 0) return status;
    empty = pages == 0;
    return empty || (id == applicationId && version == format) ? 0 : errorNotRegistryFile;
}

/// Checks that the file is sound in its structure, and no shorter than it says. A file may be shorter while its log has the
/// missing pages.
DWORD RegistryStore::check() {
    std::int64_t pages = 0, pageSize = 0;
    DWORD status = askNumber(database_, "PRAGMA page_count", pages);
    if (status == 0) status = askNumber(database_, "PRAGMA page_size", pageSize);
    if (status != 0) return status;
    struct stat file, log;
    bool const logged =
        ::stat(sqlite3_filename_wal(sqlite3_db_filename(database_, "main")), &log) == 0 && log.st_size != 0;
    if (!logged && ::stat(path_.c_str(), &file) == 0 && file.st_size < pages * pageSize) return errorBadDatabase;

    bool row = false;
    Statement statement{database_, "PRAGMA quick_check(1)"};
    status = statement.step(row);
    if (status != 0) return status;
    std::string_view const found{row ? static_cast<char const*>(statement.bytes(0)) : "", row ? statement.size(0) : 0};
    return found == "ok" ? 0 : errorBadDatabase;
}

DWORD RegistryStore::initialise() {
    Transaction const transaction{database_};
    if (transaction.status() != 0) return transaction.status();
    // All tables are made or none, so that a process that is killed leaves an empty file.
    std::int64_t tables = 0;
    if (DWORD const status = askNumber(database_, "SELECT count(*) FROM sqlite_schema", tables)) return status;
    if (tables != 0) {  // another process has made the tables first
        bool empty = false;
        return recognise(empty);
    }
    for (char const* sql : {
             "CREATE TABLE keys(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id > 0),"
             " parent INTEGER NOT NULL CHECK(parent < id), folded BLOB NOT NULL, name TEXT NOT NULL,"
             " UNIQUE(parent, folded))",
             "CREATE TABLE data(key INTEGER NOT NULL, folded BLOB NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,"
             " bytes BLOB NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID",
             "PRAGMA application_id = 0x6F726E72",
             "PRAGMA user_version = 1",
         }) {
        if (DWORD const status = run(database_, sql)) return status;
    }
    return transaction.commit();
}

/// Turns the write-ahead log on. The log stays beside the file when the file is closed: by then another file may have got
/// the name, and closing must not delete that file's log. The last to close the file empties the log, because what it says is
/// in the file then: played over a copy that somebody puts in the file's place, it would undo that or damage it.
DWORD RegistryStore::keepLog() {
    if (sqlite3_db_readonly(database_, "main") == 1) return 0;
    DWORD status = errorBusy;
    // SQLite does not always call the busy handler for this statement.
    do {
        status = run(database_, "PRAGMA journal_mode = WAL");
    } while (status == errorBusy && wait());
    // With a write-ahead log a power failure may then take the last calls, but does not damage the file.
    if (status == 0) status = run(database_, "PRAGMA synchronous = NORMAL");
    if (status == 0) status = run(database_, "PRAGMA journal_size_limit = 0");
    int persist = 1;
    sqlite3_file_control(database_, "main", SQLITE_FCNTL_PERSIST_WAL, &persist);
    return status;
}

/// Changes an existing key in one transaction: either the whole body is done or nothing.
template <typename Body>
DWORD RegistryStore::change(Key key, Body body) {
    Transaction const transaction{database_};
    DWORD status = transaction.status();
    if (status == 0) status = exists(key);
    if (status == 0) status = body();
    return status == 0 ? transaction.commit() : status;
}

DWORD RegistryStore::exists(Key key) {
    if (key < 0) return 0;
    bool row = false;
    Statement statement{database_, "SELECT 1 FROM keys WHERE id = ?"};
    if (DWORD const status = statement.bind(key).step(row)) return status;
    return row ? 0 : errorKeyDeleted;
}

/// Follows a path as far as its keys exist. `depth` is the number of keys that were found.
DWORD RegistryStore::descend(Names const& names, Key& key, std::size_t& depth) {
    for (depth = 0; depth < names.size(); ++depth) {
        bool row = false;
        std::u16string const name = folded(names[depth]);
        // Roots have no row, so a key below one has the root's negative number for a parent. A row with such a number
        // itself is damage, and is never found.
        Statement statement{database_, "SELECT id FROM keys WHERE parent = ? AND folded = ? AND id > 0"};
        if (DWORD const status = statement.bind(key).bind(name).step(row)) return status;
        if (!row) return 0;
        key = statement.number(0);
    }
    return 0;
}

DWORD RegistryStore::find(Key from, Names const& names, Key& key) {
    std::size_t depth = 0;
    key = from;
    if (DWORD const status = exists(from)) return status;
    if (DWORD const status = descend(names, key, depth)) return status;
    return depth == names.size() ? 0 : errorFileNotFound;
}

DWORD RegistryStore::make(Key from, Names const& names, Key& key) {
    // Most keys are there already, and a look does not keep other processes from writing.
    DWORD const status = find(from, names, key);
    if (status != errorFileNotFound) return status;
    return change(from, [&]() -> DWORD {
        std::size_t depth = 0;
        key = from;  // other processes may have made or deleted some of the keys meanwhile
        if (DWORD const found = descend(names, key, depth)) return found;
        for (; depth < names.size(); ++depth) {
            std::u16string const name = folded(names[depth]);
            Statement insert{database_, "INSERT INTO keys(parent, folded, name) VALUES(?, ?, ?)"};
            if (DWORD const made = insert.bind(key).bind(name).bindText(names[depth]).run()) return made;
            key = sqlite3_last_insert_rowid(database_);
        }
        return 0;
    });
}

DWORD RegistryStore::remove(Key from, Names const& names) {
    return change(from, [&]() -> DWORD {
        std::size_t depth = 0;
        Key key = from;
        if (DWORD const status = descend(names, key, depth)) return status;
        if (depth < names.size()) return errorFileNotFound;
        if (key < 0) return errorAccessDenied;  // a root
        // UNION takes each key once, and roots are left out. So the walk ends even if another program wrote a circle.
        std::string const below =
            "WITH RECURSIVE below(id) AS (VALUES(?) UNION"
            " SELECT keys.id FROM keys, below WHERE parent = below.id AND keys.id > 0)";
        // The values go first, because they are found by the keys.
        for (char const* sql : {" DELETE FROM data WHERE key IN below", " DELETE FROM keys WHERE id IN below"}) {
            if (DWORD const status = Statement{database_, (below + sql).c_str()}.bind(key).run()) return status;
        }
        return 0;
    });
}

DWORD RegistryStore::read(Key key, std::u16string const& name, DWORD& type, void* data, DWORD& size) {
    std::u16string const sought = folded(name);
    bool row = false;
    Statement statement{database_, "SELECT type, bytes FROM data WHERE key = ? AND folded = ?"};
    if (DWORD const status = statement.bind(key).bind(sought).step(row)) return status;
    if (!row) {
        DWORD const status = exists(key);
        return status != 0 ? status : errorFileNotFound;
    }
    type = static_cast<DWORD>(statement.number(0));
    void const* const bytes = statement.bytes(1);
    // The caller learns the size even if the room is too small.
    DWORD const room = std::exchange(size, statement.size(1));
    if (bytes == nullptr && size != 0) return errorNotEnoughMemory;
    if (data == nullptr) return 0;
    if (size > room) return errorMoreData;
    if (size != 0) std::memcpy(data, bytes, size);
    return 0;
}

DWORD RegistryStore::write(Key key, std::u16string const& name, DWORD type, void const* data, DWORD size) {
    std::u16string const sought = folded(name);
    return change(key, [&] {
        Statement statement{database_,
                            "INSERT INTO data(key, folded, name, type, bytes) VALUES(?, ?, ?, ?, ?)"
                            " ON CONFLICT DO UPDATE SET type = excluded.type, bytes = excluded.bytes"};
        return statement.bind(key).bind(sought).bindText(name).bind(std::int64_t{type}).bind(data, size).run();
    });
}

DWORD RegistryStore::removeValue(Key key, std::u16string const& name) {
    std::u16string const sought = folded(name);
    return change(key, [&]() -> DWORD {
        Statement statement{database_, "DELETE FROM data WHERE key = ? AND folded = ?"};
        if (DWORD const status = statement.bind(key).bind(sought).run()) return status;
        // Nothing deleted is a failure here. Callers for whom it is none look at the status.
        return sqlite3_changes(database_) != 0 ? 0 : errorFileNotFound;
    });
}

DWORD RegistryStore::listKeys(Key key, Names& names) {
    return list(key, "SELECT folded, name FROM keys WHERE parent = ? AND id > 0", names);
}

DWORD RegistryStore::listValues(Key key, Names& names) {
    return list(key, "SELECT folded, name FROM data WHERE key = ?", names);
}

DWORD RegistryStore::list(Key key, char const* sql, Names& names) {
    if (DWORD const status = exists(key)) return status;
    Statement statement{database_, sql};
    statement.bind(key);
    for (bool row = false;;) {
        if (DWORD const status = statement.step(row)) return status;
        if (!row) return 0;
        // SQLite keeps no unpaired surrogates in a text. Where the name has lost one, its upper case, which is kept as
        // bytes, still names the same thing.
        std::u16string upper = statement.units(0), name = statement.text(1);
        names.push_back(folded(name) == upper ? std::move(name) : std::move(upper));
    }
}

}
