#include "board/varo/store/Group.h"

#include <fmt/format.h>

namespace varo {

std::string Table::createSql() const {
    struct Line {
        std::string definition;
        std::string note;
    };
    std::vector<Line> lines;
    if (rows == Rows::single) {
        lines.push_back({fmt::format("id INTEGER PRIMARY KEY CHECK (id = {})", singleRow), {}});
    } else {
        lines.push_back(
            {"source INTEGER PRIMARY KEY", "whose values: 1 DHCP client, 2 management front ends"});
    }
    for (const ColumnDefinition& column : columns) {
        lines.push_back({fmt::format("{} {} NOT NULL", column.name, column.type), column.note});
    }

    // SQLite keeps this text with its comments: `.schema` shows it to people.
    std::string sql = fmt::format("CREATE TABLE IF NOT EXISTS {} (\n", tableName);
    for (const Line& line : lines) {
        const char* comma = &line == &lines.back() ? "" : ",";
        const std::string comment = line.note.empty() ? "" : "  -- " + line.note;
        sql += fmt::format("    {}{}{}\n", line.definition, comma, comment);
    }
    return sql + ") STRICT";
}

std::string Table::selectSql() const {
    std::string list;
    for (const ColumnDefinition& column : columns) {
        list += (list.empty() ? "" : ", ") + column.name;
    }
    return fmt::format("SELECT {} FROM {} WHERE {} = ?1", list, tableName, key());
}

std::string Table::upsertSql() const {
    std::string names = key();
    std::string values = "?1";
    std::string set;
    std::string differs;
    int parameter = 2;
    for (const ColumnDefinition& column : columns) {
        names += ", " + column.name;
        values += fmt::format(", ?{}", parameter++);
        set += fmt::format("{}{} = excluded.{}", set.empty() ? "" : ", ", column.name, column.name);
        differs += fmt::format("{}{}.{} IS NOT excluded.{}", differs.empty() ? "" : " OR ",
                               tableName, column.name, column.name);
    }
    return fmt::format("INSERT INTO {} ({}) VALUES ({}) ON CONFLICT ({}) DO UPDATE SET {} WHERE {}",
                       tableName, names, values, key(), set, differs);
}

}  // namespace varo
