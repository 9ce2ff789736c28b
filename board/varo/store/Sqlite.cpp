#include "board/varo/store/Sqlite.h"

#include <fmt/format.h>

#include <cstring>
#include <system_error>

namespace varo::sqlite {

namespace {

[[noreturn]] void fail(sqlite3* database, int result) {
    // Without a connection there is only the code; with one, SQLite knows the system's reason too.
    std::string text = database ? sqlite3_errmsg(database) : sqlite3_errstr(result);
    if (const int error = database ? sqlite3_system_errno(database) : 0; error != 0) {
        text += fmt::format(" ({})", std::generic_category().message(error));
    }
    throw Error(database ? sqlite3_extended_errcode(database) : result, text);
}

}  // namespace

Statement::Statement(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(database, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                          SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    handle.reset(prepared);
    if (result != SQLITE_OK) {
        fail(database, result);
    }
}

void Statement::check(int result) const {
    if (result != SQLITE_OK) {
        fail(sqlite3_db_handle(handle.get()), result);
    }
}

void Statement::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(handle.get(), parameter, value));
}

void Statement::bind(int parameter, std::string_view text) {
    check(sqlite3_bind_text64(handle.get(), parameter, text.data(), text.size(), SQLITE_STATIC,
                              SQLITE_UTF8));
}

void Statement::bindCopy(int parameter, std::string_view text) {
    check(sqlite3_bind_text64(handle.get(), parameter, text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8));
}

bool Statement::step() {
    const int result = sqlite3_step(handle.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        fail(sqlite3_db_handle(handle.get()), result);
    }
    return result == SQLITE_ROW;
}

void Statement::reset() noexcept {
    // The result repeats that of the last step, which has been dealt with.
    sqlite3_reset(handle.get());
    sqlite3_clear_bindings(handle.get());
}

int Statement::type(int column) const { return sqlite3_column_type(handle.get(), column); }

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(handle.get(), column);
}

std::string_view Statement::text(int column) const {
    const unsigned char* bytes = sqlite3_column_text(handle.get(), column);
    const int size = sqlite3_column_bytes(handle.get(), column);
    return bytes ? std::string_view(reinterpret_cast<const char*>(bytes),
                                    static_cast<std::size_t>(size))
                 : std::string_view();
}

Database::Database(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(file.c_str(), &opened,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    handle.reset(opened);
    if (result != SQLITE_OK) {
        fail(opened, result);
    }
}

void Database::execute(const std::string& sql) {
    const int result = sqlite3_exec(get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) {
        fail(get(), result);
    }
}

std::int64_t Database::queryInteger(const std::string& sql) {
    Statement statement(get(), sql);
    return statement.step() ? statement.integer(0) : 0;
}

std::string Database::queryText(const std::string& sql) {
    Statement statement(get(), sql);
    return statement.step() ? std::string(statement.text(0)) : std::string();
}

void Database::keepLogOnClose(bool keep) {
    const int result =
        sqlite3_db_config(get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
    if (result != SQLITE_OK) {
        fail(get(), result);
    }
}

}  // namespace varo::sqlite
