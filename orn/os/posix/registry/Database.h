/// Statements and transactions of an SQLite database. Their results are the error codes that a registry gives.
#pragma once

#include "orn/os/Registry.h"
#include "orn/os/posix/ServiceLibrary.h"
#include "orn/os/posix/registry/RegistryStore.h"

#include <sqlite3.h>

#include <cerrno>
#include <string>
#include <utility>

namespace ORN::os {

// clang-format off
#define ORN_LIBSQLITE3_FUNCTIONS(use) \
    use(sqlite3_bind_blob64) use(sqlite3_bind_int64) use(sqlite3_bind_text64) use(sqlite3_busy_handler) \
    use(sqlite3_changes) use(sqlite3_close) use(sqlite3_column_blob) use(sqlite3_column_bytes) \
    use(sqlite3_column_bytes16) use(sqlite3_column_int64) use(sqlite3_column_text16) use(sqlite3_db_config) \
    use(sqlite3_db_filename) use(sqlite3_db_readonly) use(sqlite3_file_control) use(sqlite3_filename_wal) \
    use(sqlite3_finalize) use(sqlite3_get_autocommit) use(sqlite3_last_insert_rowid) use(sqlite3_open_v2) \
    use(sqlite3_prepare_v2) use(sqlite3_step) use(sqlite3_system_errno)
// clang-format on
ORN_SERVICE_LIBRARY(libsqlite3, ORN_LIBSQLITE3_FUNCTIONS)

inline DWORD statusOf(sqlite3* database, int result) noexcept {
    switch (result & 0xFF) {
        case SQLITE_OK:
        case SQLITE_ROW:
        case SQLITE_DONE: return 0;
        case SQLITE_BUSY:
        case SQLITE_LOCKED: return errorBusy;
        case SQLITE_NOMEM: return errorNotEnoughMemory;
        case SQLITE_READONLY:
        case SQLITE_PERM: return errorAccessDenied;
        case SQLITE_FULL: return errorDiskFull;
        case SQLITE_TOOBIG: return errorInvalidParameter;
        case SQLITE_NOTADB: return errorNotRegistryFile;
        case SQLITE_ERROR:  // our statements are correct, so the tables must be wrong
        case SQLITE_CORRUPT: return errorBadDatabase;
        case SQLITE_CANTOPEN: {
            int const reason = database != nullptr ? sqlite3_system_errno(database) : 0;
            return reason == ENOENT || reason == ENOTDIR ? errorPathNotFound : errorAccessDenied;
        }
        default: return result == SQLITE_IOERR_NOMEM ? errorNotEnoughMemory : errorRegistryIo;
    }
}

/// One SQL statement. After a failure its functions do nothing, and the next step returns the error.
class Statement {
public:
    Statement(sqlite3* database, char const* sql) noexcept : database_{database} {
        result_ = sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr);
    }
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;

    /// Bind the parameters, in their order. The bound data must outlive the statement.
    /// @{
    Statement& bind(std::int64_t number) noexcept {
        return bound(result_ != SQLITE_OK ? result_ : sqlite3_bind_int64(statement_, ++parameter_, number));
    }
    Statement& bind(void const* bytes, std::size_t size) noexcept {
        void const* const place = size != 0 ? bytes : "";  // SQLite takes a null pointer for NULL
        return bound(result_ != SQLITE_OK ? result_
                                          : sqlite3_bind_blob64(statement_, ++parameter_, place, size, SQLITE_STATIC));
    }
    Statement& bind(std::u16string const& units) noexcept { return bind(units.data(), 2 * units.size()); }
    Statement& bindText(std::u16string const& text) noexcept {
        return bound(result_ != SQLITE_OK
                         ? result_
                         : sqlite3_bind_text64(statement_, ++parameter_, reinterpret_cast<char const*>(text.data()),
                                               2 * text.size(), SQLITE_STATIC, SQLITE_UTF16LE));
    }
    /// @}

    /// Goes to the next row, and says in `row` whether there is one.
    DWORD step(bool& row) noexcept {
        if (result_ == SQLITE_OK) result_ = sqlite3_step(statement_);
        row = result_ == SQLITE_ROW;
        return statusOf(database_, std::exchange(result_, row ? SQLITE_OK : result_));
    }
    DWORD run() noexcept {
        bool row;
        return step(row);
    }

    std::int64_t number(int column) const noexcept { return sqlite3_column_int64(statement_, column); }
    /// The columns of the current row. units() reads a blob as UTF-16.
    /// @{
    std::u16string units(int column) const {
        auto const* const first = static_cast<char16_t const*>(bytes(column));
        return {first, first + (first != nullptr ? size(column) / 2 : 0)};
    }
    std::u16string text(int column) const {
        auto const* const first = static_cast<char16_t const*>(sqlite3_column_text16(statement_, column));
        return {first, first + (first != nullptr ? sqlite3_column_bytes16(statement_, column) / 2 : 0)};
    }
    /// @}
    void const* bytes(int column) const noexcept { return sqlite3_column_blob(statement_, column); }
    DWORD size(int column) const noexcept { return static_cast<DWORD>(sqlite3_column_bytes(statement_, column)); }

private:
    Statement& bound(int result) noexcept {
        result_ = result;
        return *this;
    }

    sqlite3* database_;
    sqlite3_stmt* statement_ = nullptr;
    int result_, parameter_ = 0;
};

inline DWORD run(sqlite3* database, char const* sql) noexcept { return Statement{database, sql}.run(); }

inline DWORD askNumber(sqlite3* database, char const* sql, std::int64_t& number) noexcept {
    bool row = false;
    Statement statement{database, sql};
    if (DWORD const status = statement.step(row)) return status;
    number = row ? statement.number(0) : 0;
    return 0;
}

/// A transaction that writes. Unless it is committed, its end undoes it.
class Transaction {
public:
    explicit Transaction(sqlite3* database) noexcept : database_{database}, status_{run(database, "BEGIN IMMEDIATE")} {}
    ~Transaction() {
        if (status_ == 0 && sqlite3_get_autocommit(database_) == 0) run(database_, "ROLLBACK");
    }
    Transaction(Transaction const&) = delete;
    Transaction& operator=(Transaction const&) = delete;

    DWORD status() const noexcept { return status_; }  ///< 0 when the transaction has begun
    DWORD commit() const noexcept { return run(database_, "COMMIT"); }

private:
    sqlite3* database_;
    DWORD status_;
};

}
