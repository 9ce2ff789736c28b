#pragma once

#include "board/varo/store/Column.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace varo {

/// How many records a group holds.
enum class Rows {
    single,    ///< one
    bySource,  ///< one for each configuration source
};

/// Row of a group that holds one record.
inline constexpr int singleRow = 1;

/// The table of a record group: its SQL, derived from the columns.
class Table {
public:
    Table(std::string name, Rows kind) : tableName(std::move(name)), rows(kind) {}

    const std::string& name() const { return tableName; }
    /// Creates the table if there is none.
    std::string createSql() const;
    /// Parameter 1: the row's key. Result: the columns.
    std::string selectSql() const;
    /// Parameter 1: the row's key, then the columns. Writes nothing when nothing changes.
    std::string upsertSql() const;

protected:
    void define(ColumnDefinition definition) { columns.push_back(std::move(definition)); }

private:
    std::string tableName;
    Rows rows;
    std::vector<ColumnDefinition> columns;

    std::string key() const { return rows == Rows::single ? "id" : "source"; }
};

/// A record group: a table whose columns are bound to the members of a record. To add a group,
/// declare one and list it in the schema.
template <class Record>
class Group : public Table {
public:
    /// The factory record is what a row reads as that was never written.
    Group(std::string name, Rows kind, const Record& factory,
          std::initializer_list<Columns<Record>> columnLists)
        : Table(std::move(name), kind), factoryRecord(factory) {
        for (const Columns<Record>& list : columnLists) {
            for (const Column<Record>& each : list) {
                define(each.definition);
                columns.push_back(each);
            }
        }
    }

    const Record& factory() const { return factoryRecord; }

    /// Binds the record's values to the parameters of the upsert; throws BadValue.
    void bind(sqlite::Statement& upsert, const Record& record) const {
        int parameter = 2;
        for (const Column<Record>& each : columns) {
            named(each, [&] { each.bind(upsert, parameter++, record); });
        }
    }

    /// Sets the record from the current row of the select; throws BadValue.
    void fetch(const sqlite::Statement& select, Record& record) const {
        int index = 0;
        for (const Column<Record>& each : columns) {
            named(each, [&] { each.fetch(select, index++, record); });
        }
    }

private:
    Record factoryRecord;
    std::vector<Column<Record>> columns;

    /// Lets a bad value say which column it is.
    template <class Body>
    static void named(const Column<Record>& column, Body body) {
        try {
            body();
        } catch (const BadValue& bad) {
            throw BadValue(column.definition.name + ": " + bad.what());
        }
    }
};

}  // namespace varo
