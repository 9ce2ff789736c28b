#include "board/varo/store/RecordStore.h"

#include "board/varo/store/StoreFile.h"
#include "board/varo/varoCodes.h"

#include <fmt/format.h>
#include <syslog.h>

namespace varo {

RecordStore::RecordStore(std::filesystem::path path, const Schema& schema, Log receiver)
    : file(std::move(path)), log(std::move(receiver)), database(openStoreFile(file, schema, log)) {
    for (const Table* table : schema.tables) {
        try {
            prepared.emplace(table, Statements{{database->get(), table->selectSql()},
                                               {database->get(), table->upsertSql()}});
        } catch (const sqlite::Error& error) {
            throw failureOf(error,
                            fmt::format("cannot use table {} of {}", table->name(), file.string()));
        }
    }
}

RecordStore::~RecordStore() { close(); }

void RecordStore::close() {
    const std::lock_guard lock(mutex);
    if (!database) {
        return;
    }
    prepared.clear();
    try {
        // Closing does the same, but not while another process has the file open.
        if (damaged) {
            database->keepLogOnClose(true);
        } else {
            database->execute("PRAGMA wal_checkpoint(TRUNCATE)");
        }
    } catch (const sqlite::Error& error) {
        // The values are safe in the log; the next opening takes them from there.
        log(LOG_WARNING, fmt::format("cannot move the write-ahead log into {}: {}", file.string(),
                                     error.what()));
    }
    database.reset();
}

RecordStore::Statements& RecordStore::statementsOf(const Table& table) {
    if (!database) {
        throw Failure(notOpen, "the library is closed");
    }
    const auto found = prepared.find(&table);
    if (found == prepared.end()) {
        throw Failure(internalError, fmt::format("group {} is not in the schema", table.name()));
    }
    return found->second;
}

void RecordStore::readRow(const Table& table, int row,
                          const std::function<void(const sqlite::Statement&)>& fetch) {
    sqlite::Statement& select = statementsOf(table).select;
    const sqlite::Run run(select);
    try {
        select.bind(1, std::int64_t{row});
        if (select.step()) {
            fetch(select);
        }
    } catch (const sqlite::Error& error) {
        fail("read", table, error);
    } catch (const BadValue& bad) {
        throw Failure(storageFailed, fmt::format("cannot read {} from {}: {}", table.name(),
                                                 file.string(), bad.what()));
    }
}

void RecordStore::writeRow(const Table& table, int row,
                           const std::function<void(sqlite::Statement&)>& bind) {
    sqlite::Statement& upsert = statementsOf(table).upsert;
    const sqlite::Run run(upsert);
    try {
        upsert.bind(1, std::int64_t{row});
        bind(upsert);
        upsert.step();
    } catch (const sqlite::Error& error) {
        fail("write", table, error);
    } catch (const BadValue& bad) {
        throw Failure(invalidValue, fmt::format("{}: {}", table.name(), bad.what()));
    }
}

void RecordStore::fail(const char* doing, const Table& table, const sqlite::Error& error) {
    if (error.meansDamage()) {
        damaged = true;
    }
    throw failureOf(error, fmt::format("cannot {} {} in {}", doing, table.name(), file.string()));
}

}  // namespace varo
