#include "board/varo/store/Column.h"

#include <fmt/format.h>

#include <cstring>

namespace varo::detail {

namespace {

std::string_view storedText(const sqlite::Statement& statement, int column) {
    if (statement.type(column) != SQLITE_TEXT) {
        throw BadValue("what is stored is not a text");
    }
    const std::string_view text = statement.text(column);
    if (text.find('\0') != std::string_view::npos) {
        throw BadValue("the stored text contains a zero byte");
    }
    return text;
}

}  // namespace

void bindText(sqlite::Statement& statement, int parameter, const char* field, std::size_t size) {
    const std::size_t length = strnlen(field, size);
    if (length == size) {
        throw BadValue(fmt::format("the text is not terminated within its {} bytes", size));
    }
    statement.bind(parameter, std::string_view(field, length));
}

void fetchText(const sqlite::Statement& statement, int column, char* field, std::size_t size) {
    const std::string_view text = storedText(statement, column);
    if (text.size() >= size) {
        throw BadValue(fmt::format("the stored text is longer than {} bytes", size - 1));
    }
    text.copy(field, text.size());
    std::memset(field + text.size(), 0, size - text.size());
}

std::string textNote(std::size_t size) { return fmt::format("at most {} bytes", size - 1); }

std::int64_t fetchInteger(const sqlite::Statement& statement, int column, std::int64_t lowest,
                          std::int64_t highest) {
    if (statement.type(column) != SQLITE_INTEGER) {
        throw BadValue("what is stored is not an integer");
    }
    const std::int64_t value = statement.integer(column);
    if (value < lowest || value > highest) {
        throw BadValue(fmt::format("the stored {} is not in {} to {}", value, lowest, highest));
    }
    return value;
}

void bindIpv4(sqlite::Statement& statement, int parameter, std::uint32_t address) {
    // The text has to live until the statement has run, which is beyond this call.
    statement.bindCopy(parameter, address == 0 ? std::string() : ipv4Text(address));
}

std::uint32_t fetchIpv4(const sqlite::Statement& statement, int column) {
    const std::string_view text = storedText(statement, column);
    if (text.empty()) {
        return 0;
    }
    const auto address = parsedIpv4(text);
    if (!address) {
        throw BadValue("the stored text is not a dotted IPv4 address");
    }
    return *address;
}

}  // namespace varo::detail
