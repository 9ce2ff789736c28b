#include "board/varo/store/StoreFile.h"

#include "board/support/wholeFile.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <syslog.h>

namespace varo {

namespace {

namespace fs = std::filesystem;

/// How long a call waits for another process, a person at the sqlite3 shell for example.
constexpr int busyTimeoutMs = 1000;

/// What is wrong with a file that has to be set aside.
class Damage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::uintmax_t sizeOrZero(const fs::path& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    return error ? 0 : size;
}

/// Takes back an empty file that could not be made into a store, on a full disk for example.
class NewFile {
public:
    explicit NewFile(const fs::path& path) : file(path), made(!fs::exists(path)) {}
    ~NewFile() {
        std::error_code ignored;
        if (made && fs::exists(file, ignored) && sizeOrZero(file) == 0) {
            fs::remove(file, ignored);
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool isNew() const { return made; }

private:
    const fs::path& file;
    const bool made;
};

void checkVersion(sqlite::Database& database, std::int64_t version, const fs::path& file,
                  const Schema& schema) {
    if (version > schema.version()) {
        throw Failure(
            newerFile,
            fmt::format("{} has version {}, this release knows versions up to {}: install "
                        "the newer release again, or move the file away to start from "
                        "factory values",
                        file.string(), version, schema.version()));
    }
    if (version < 0 ||
        (version == 0 && database.queryInteger("SELECT count(*) FROM sqlite_schema") > 0)) {
        throw Failure(
            storageFailed,
            fmt::format("{} is a database, but no record store: move it away to start from "
                        "factory values",
                        file.string()));
    }
}

void checkContent(sqlite::Database& database) {
    if (const std::string result = database.queryText("PRAGMA integrity_check(1)");
        result != "ok") {
        throw Damage(result);
    }
    // In another encoding, SQLite would convert the texts, which need not be UTF-8.
    if (const std::string encoding = database.queryText("PRAGMA encoding"); encoding != "UTF-8") {
        throw Damage("its text encoding is " + encoding);
    }
}

bool lacksTable(sqlite::Database& database, const Schema& schema) {
    for (const Table* table : schema.tables) {
        if (database.queryInteger(fmt::format(
                "SELECT count(*) FROM sqlite_schema WHERE name = '{}'", table->name())) == 0) {
            return true;
        }
    }
    return false;
}

/// Brings a file to the schema, and leaves it as it was when that fails.
void upgrade(sqlite::Database& database, const fs::path& file, const Schema& schema,
             const Log& log) {
    database.execute("BEGIN IMMEDIATE");
    try {
        // Another process may have been first.
        const std::int64_t version = database.queryInteger("PRAGMA user_version");
        checkVersion(database, version, file, schema);
        if (version > 0) {
            for (std::int64_t step = version; step < schema.version(); ++step) {
                database.execute(schema.steps[static_cast<std::size_t>(step - 1)]);
            }
        }
        for (const Table* table : schema.tables) {
            database.execute(table->createSql());
        }
        database.execute(fmt::format("PRAGMA user_version = {}", schema.version()));
        database.execute("COMMIT");
        if (version == 0) {
            log(LOG_INFO, fmt::format("made {}", file.string()));
        } else if (version < schema.version()) {
            log(LOG_INFO, fmt::format("upgraded {} from version {} to {}", file.string(), version,
                                      schema.version()));
        }
    } catch (...) {
        // SQLite has ended the transaction by itself after some errors.
        if (sqlite3_get_autocommit(database.get()) == 0) {
            sqlite3_exec(database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        }
        throw;
    }
}

/// Throws Damage, Failure, sqlite::Error.
sqlite::Database openIntact(const fs::path& file, const Schema& schema, const Log& log) {
    // SQLite removes a log that has no file to belong to; it may hold the last values.
    if (sizeOrZero(file) == 0 && sizeOrZero(file.string() + "-wal") > 0) {
        throw Damage("it is empty or missing, but its write-ahead log is there");
    }

    const NewFile newFile(file);
    const bool emptied = fs::is_regular_file(file) && sizeOrZero(file) == 0;
    sqlite::Database database(file);
    // The records include community names, which are as good as passwords.
    if (newFile.isNew() && ::chmod(file.c_str(), S_IRUSR | S_IWUSR) != 0) {
        throw Failure(storageFailed, fmt::format("cannot protect {}: {}", file.string(),
                                                 std::generic_category().message(errno)));
    }
    database.keepLogOnClose(true);
    sqlite3_busy_timeout(database.get(), busyTimeoutMs);

    const std::int64_t version = database.queryInteger("PRAGMA user_version");
    checkVersion(database, version, file, schema);
    checkContent(database);

    // With the write-ahead log synchronised at each commit, what a call has acknowledged survives
    // the loss of power, and people can look at the file while the library writes.
    if (const std::string mode = database.queryText("PRAGMA journal_mode = WAL"); mode != "wal") {
        throw Failure(storageFailed, fmt::format("{}: no write-ahead log on this file system ({})",
                                                 file.string(), mode));
    }
    database.execute("PRAGMA synchronous = FULL");
    if (version < schema.version() || lacksTable(database, schema)) {
        upgrade(database, file, schema, log);
    }
    database.keepLogOnClose(false);
    if (emptied) {
        log(LOG_ERR, fmt::format("{} was empty: factory values are used", file.string()));
    }
    return database;
}

/// Sees to it that the file is damaged, rather than the access to it.
sqlite::Database openOrDamage(const fs::path& file, const Schema& schema, const Log& log) {
    try {
        return openIntact(file, schema, log);
    } catch (const sqlite::Error& error) {
        if (error.meansDamage()) {
            throw Damage(error.what());
        }
        throw failureOf(error, fmt::format("cannot open {}", file.string()));
    } catch (const fs::filesystem_error& error) {
        throw Failure(storageFailed,
                      fmt::format("cannot open {}: {}", file.string(), error.code().message()));
    }
}

}  // namespace

sqlite::Database openStoreFile(const fs::path& file, const Schema& schema, const Log& log) {
    try {
        return openOrDamage(file, schema, log);
    } catch (const Damage& damage) {
        try {
            const fs::path name = support::setAside(file);
            log(LOG_ERR, fmt::format("{} is damaged ({}): it is kept as {}, and factory values are "
                                     "used",
                                     file.string(), damage.what(), name.string()));
        } catch (const std::system_error& error) {
            throw Failure(storageFailed,
                          fmt::format("{} is damaged ({}) and cannot be set aside: {}",
                                      file.string(), damage.what(), error.what()));
        }
    }
    try {
        return openOrDamage(file, schema, log);
    } catch (const Damage& damage) {
        throw Failure(storageFailed,
                      fmt::format("the new {} is damaged: {}", file.string(), damage.what()));
    }
}

Failure failureOf(const sqlite::Error& error, const std::string& doing) {
    const bool busy = error.result() == SQLITE_BUSY || error.result() == SQLITE_LOCKED;
    return {busy ? storageBusy : storageFailed, fmt::format("{}: {}", doing, error.what())};
}

}  // namespace varo
