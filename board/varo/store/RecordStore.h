#pragma once

#include "board/varo/store/schema.h"
#include "board/varo/varoConfiguration.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace varo {

/// The records, kept in one SQLite file. Every write is one transaction: it is on the disk when the
/// call returns, or has changed nothing. May be used by any threads at the same time.
class RecordStore {
public:
    /// Opens the file; see openStoreFile. Throws Failure.
    RecordStore(std::filesystem::path file, const Schema& schema, Log log);
    ~RecordStore();
    RecordStore(const RecordStore&) = delete;
    RecordStore& operator=(const RecordStore&) = delete;

    /// Moves the write-ahead log into the file and closes it, after the calls that are under way.
    /// Later ones fail with notOpen.
    void close();

    /// A call found the file damaged: it is to be opened anew, which sets it aside.
    bool isDamaged() const { return damaged; }

    /// Reads and writes of one caller with nobody else's in between. Lives in one thread and keeps
    /// the others waiting. All throw Failure.
    class Session {
    public:
        /// The stored record, or the factory one when the row was never written.
        template <class Record>
        Record read(const Group<Record>& group, int row = singleRow) {
            Record record = group.factory();
            store.readRow(group, row,
                          [&](const sqlite::Statement& select) { group.fetch(select, record); });
            return record;
        }

        template <class Record>
        void write(const Group<Record>& group, int row, const Record& record) {
            store.writeRow(group, row,
                           [&](sqlite::Statement& upsert) { group.bind(upsert, record); });
        }

    private:
        friend class RecordStore;
        explicit Session(RecordStore& opened) : store(opened), lock(opened.mutex) {}

        RecordStore& store;
        std::unique_lock<std::mutex> lock;
    };

    Session session() { return Session(*this); }

private:
    struct Statements {
        sqlite::Statement select;
        sqlite::Statement upsert;
    };

    const std::filesystem::path file;
    const Log log;
    std::atomic<bool> damaged{false};

    std::mutex mutex;  ///< protects what follows
    std::optional<sqlite::Database> database;
    std::unordered_map<const Table*, Statements> prepared;

    Statements& statementsOf(const Table& table);
    void readRow(const Table& table, int row,
                 const std::function<void(const sqlite::Statement&)>& fetch);
    void writeRow(const Table& table, int row, const std::function<void(sqlite::Statement&)>& bind);
    [[noreturn]] void fail(const char* doing, const Table& table, const sqlite::Error& error);
};

}  // namespace varo
