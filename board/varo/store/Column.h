#pragma once

#include "board/support/addresses.h"
#include "board/varo/store/Sqlite.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace varo {

using support::ipv4Text;
using support::parsedIpv4;

/// How a column is declared in the table of its group.
struct ColumnDefinition {
    std::string name;
    std::string type;  ///< INTEGER or TEXT
    std::string note;  ///< for people: kept as a comment in the table's definition
};

/// One column of a group: where the value lies in the record, and how it is stored.
template <class Record>
struct Column {
    ColumnDefinition definition;
    /// Binds the record's value to a parameter; throws BadValue.
    std::function<void(sqlite::Statement&, int parameter, const Record&)> bind;
    /// Sets the record's value from a column of the current row; throws BadValue.
    std::function<void(const sqlite::Statement&, int column, Record&)> fetch;
};

/// One column or several: what the functions below return is put together to a group.
template <class Record>
struct Columns : std::vector<Column<Record>> {
    using std::vector<Column<Record>>::vector;
    Columns(Column<Record> single) { this->push_back(std::move(single)); }
};

/// A value that the record, or the column, cannot hold.
class BadValue : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

namespace detail {

/// Throws BadValue when there is no terminator within the field.
void bindText(sqlite::Statement& statement, int parameter, const char* field, std::size_t size);
/// Clears the rest of the field.
void fetchText(const sqlite::Statement& statement, int column, char* field, std::size_t size);
std::string textNote(std::size_t size);

std::int64_t fetchInteger(const sqlite::Statement& statement, int column, std::int64_t lowest,
                          std::int64_t highest);

/// Address in host byte order, stored as dotted text; 0 is stored as an empty text.
void bindIpv4(sqlite::Statement& statement, int parameter, std::uint32_t address);
std::uint32_t fetchIpv4(const sqlite::Statement& statement, int column);

}  // namespace detail

/// A zero-terminated text. It is stored as TEXT, whatever its bytes are.
template <class Record, std::size_t size>
Column<Record> column(std::string name, char (Record::*member)[size]) {
    return {{std::move(name), "TEXT", detail::textNote(size)},
            [member](sqlite::Statement& statement, int parameter, const Record& record) {
                detail::bindText(statement, parameter, record.*member, size);
            },
            [member](const sqlite::Statement& statement, int column, Record& record) {
                detail::fetchText(statement, column, record.*member, size);
            }};
}

/// A whole number. Every value of its type can be stored.
template <class Record, class Integer>
    requires std::is_integral_v<Integer>
Column<Record> column(std::string name, Integer Record::* member) {
    using Limits = std::numeric_limits<Integer>;
    static_assert(std::in_range<std::int64_t>(Limits::max()), "SQLite's integers have 64 bits");
    return {{std::move(name), "INTEGER", {}},
            [member](sqlite::Statement& statement, int parameter, const Record& record) {
                statement.bind(parameter, std::int64_t{record.*member});
            },
            [member](const sqlite::Statement& statement, int column, Record& record) {
                record.*member = static_cast<Integer>(
                    detail::fetchInteger(statement, column, Limits::min(), Limits::max()));
            }};
}

/// An IPv4 address in host byte order, stored as dotted text; 0, no address, as an empty text.
template <class Record>
Column<Record> ipv4Column(std::string name, std::uint32_t Record::* member) {
    return {{std::move(name), "TEXT", "IPv4 address in dotted form, empty for none"},
            [member](sqlite::Statement& statement, int parameter, const Record& record) {
                detail::bindIpv4(statement, parameter, record.*member);
            },
            [member](const sqlite::Statement& statement, int column, Record& record) {
                record.*member = detail::fetchIpv4(statement, column);
            }};
}

/// An array of sub-records, as numbered columns: prefix, number of the entry from 1 on, "_", name
/// of the column. All entries lie in the one row of their record, and so change in one step with
/// it.
template <class Record, class Entry, std::size_t size>
Columns<Record> entries(const std::string& prefix, Entry (Record::*member)[size],
                        std::initializer_list<Column<Entry>> entryColumns) {
    Columns<Record> all;
    for (std::size_t index = 0; index < size; ++index) {
        for (const Column<Entry>& each : entryColumns) {
            ColumnDefinition definition = each.definition;
            definition.name = prefix + std::to_string(index + 1) + "_" + definition.name;
            all.push_back({std::move(definition),
                           [member, index, bind = each.bind](sqlite::Statement& statement,
                                                             int parameter, const Record& record) {
                               bind(statement, parameter, (record.*member)[index]);
                           },
                           [member, index, fetch = each.fetch](const sqlite::Statement& statement,
                                                               int column, Record& record) {
                               fetch(statement, column, (record.*member)[index]);
                           }});
        }
    }
    return all;
}

}  // namespace varo
