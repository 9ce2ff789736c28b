#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// A thin layer over SQLite: handles that close themselves, results that throw.
namespace varo::sqlite {

/// A failed call of SQLite.
class Error : public std::runtime_error {
public:
    Error(int result, const std::string& text) : std::runtime_error(text), extended(result) {}

    /// The result code without its extension (SQLITE_BUSY, SQLITE_CORRUPT, ...).
    int result() const { return extended & 0xff; }
    /// The content of the file is at fault, not the access to it.
    bool meansDamage() const { return result() == SQLITE_CORRUPT || result() == SQLITE_NOTADB; }

private:
    int extended;
};

/// A prepared statement. Texts are bytes: neither SQLite nor this class looks at their encoding.
class Statement {
public:
    Statement(sqlite3* database, const std::string& sql);

    void bind(int parameter, std::int64_t value);
    /// The bytes must live until the statement is reset.
    void bind(int parameter, std::string_view text);
    void bindCopy(int parameter, std::string_view text);
    /// Runs to the next row; false at the end.
    bool step();
    /// Ends a run: gives up the lock on the file and forgets the bound values.
    void reset() noexcept;

    /// SQLITE_INTEGER, SQLITE_TEXT, ...
    int type(int column) const;
    std::int64_t integer(int column) const;
    /// Valid until the next step or reset.
    std::string_view text(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> handle;

    void check(int result) const;
};

/// One run of a statement that is kept: resets it in the end.
class Run {
public:
    explicit Run(Statement& kept) : statement(kept) {}
    ~Run() { statement.reset(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

private:
    Statement& statement;
};

/// A connection, to be used by one thread at a time.
class Database {
public:
    /// Opens the file for reading and writing, and creates it when there is none.
    explicit Database(const std::filesystem::path& file);

    sqlite3* get() const { return handle.get(); }
    void execute(const std::string& sql);
    std::int64_t queryInteger(const std::string& sql);
    std::string queryText(const std::string& sql);
    /// Leaves the write-ahead log beside the file when the connection closes, instead of moving its
    /// content into the file: for files that are not to be written.
    void keepLogOnClose(bool keep);

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Close> handle;
};

}  // namespace varo::sqlite
