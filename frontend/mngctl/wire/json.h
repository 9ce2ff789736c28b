#pragma once

#include "mngctl/wire/fields.h"

#include <nlohmann/json.hpp>

#include <deque>
#include <set>

namespace mngctl {

/// Fields keep their order.
using Json = nlohmann::ordered_json;

/// Makes a JSON object of a record: IPv4 and MAC addresses become text, a bool a bool, an
/// enumeration's value its name or, without one, its number. Texts become valid UTF-8.
class JsonWriter : public FieldVisitor {
public:
    JsonWriter() { open.push_back(&object); }

    Json take() { return std::move(object); }

    void flag(std::string_view name, bool_t& value) override;
    void number(std::string_view name, int& value) override;
    void number(std::string_view name, unsigned& value) override;
    void address(std::string_view name, unsigned& value) override;
    void mac(std::string_view name, std::span<unsigned char, 6> octets) override;
    void fixedText(std::string_view name, std::span<char> characters) override;
    void text(std::string_view name, char*& value, std::size_t maximum) override;

protected:
    void namedNumber(std::string_view name, int& value, std::span<const Choice> choices) override;
    void openRecord(std::string_view name) override;
    void openList(std::string_view name, std::size_t count) override;
    void openItem(std::size_t index) override;
    void close() override { open.pop_back(); }

private:
    Json& at(std::string_view name) { return (*open.back())[std::string(name)]; }

    Json object = Json::object();
    std::vector<Json*> open;
};

/// Fills a record from a JSON object of the same form. A value may also be a text that is parsed
/// as on the command line. What is left out becomes 0, off or empty. Throws UsageError, naming the
/// field, for a value out of range and for a name that the record does not have.
class JsonReader : public FieldVisitor {
public:
    /// `source` is kept by reference.
    explicit JsonReader(const Json& source);

    void flag(std::string_view name, bool_t& value) override;
    void number(std::string_view name, int& value) override;
    void number(std::string_view name, unsigned& value) override;
    void address(std::string_view name, unsigned& value) override;
    void mac(std::string_view name, std::span<unsigned char, 6> octets) override;
    void fixedText(std::string_view name, std::span<char> characters) override;
    /// The text belongs to the reader.
    void text(std::string_view name, char*& value, std::size_t maximum) override;
    /// To be called after the last field: finds the names that no field has.
    void finish() { close(); }

protected:
    void namedNumber(std::string_view name, int& value, std::span<const Choice> choices) override;
    void openRecord(std::string_view name) override;
    void openList(std::string_view name, std::size_t count) override;
    void openItem(std::size_t index) override;
    void close() override;

private:
    struct Level {
        const Json* node;  ///< null where the record is left out
        std::string path;  ///< with a final dot, or empty
        std::set<std::string, std::less<>> known;
    };

    const Json* find(std::string_view name);
    void push(const Json* node, std::string path);
    [[noreturn]] void fail(std::string_view name, const std::string& reason) const;
    template <class Parse>
    void read(std::string_view name, const Parse& parse);
    template <class Integer>
    Integer whole(const Json& node, Integer (*parseText)(std::string_view)) const;
    const std::string& textOf(const Json& node, std::size_t maximum) const;

    std::vector<Level> open;
    std::deque<std::string> texts;
};

/// Describes a record's fields as an array of {"name", "type"}, with "fields" for a record or a
/// list of records, and "count" for the latter. An operation's outcome is of type "status".
class Describer : public FieldVisitor {
public:
    Describer() { open.push_back(&described); }

    Json take() { return std::move(described); }

    void flag(std::string_view name, bool_t& value) override;
    void number(std::string_view name, int& value) override;
    void number(std::string_view name, unsigned& value) override;
    void address(std::string_view name, unsigned& value) override;
    void mac(std::string_view name, std::span<unsigned char, 6> octets) override;
    void fixedText(std::string_view name, std::span<char> characters) override;
    void text(std::string_view name, char*& value, std::size_t maximum) override;

protected:
    void namedNumber(std::string_view name, int& value, std::span<const Choice> choices) override;
    void statusNumber(std::string_view name, int& value) override;
    void openRecord(std::string_view name) override;
    void openList(std::string_view name, std::size_t count) override;
    void openItem(std::size_t index) override;
    void close() override { open.pop_back(); }

private:
    Json& add(std::string_view name, std::string type);

    Json described = Json::array();
    std::vector<Json*> open;
    Json discarded;  ///< takes the descriptions of a list's second and further items
};

/// The record as JSON.
template <class Record>
Json toJson(Record& record) {
    JsonWriter writer;
    fields(writer, record);
    return writer.take();
}

/// One `name: value` line for each value, nested names with dots and indices:
/// `servers[0].priority`.
std::string toLines(const Json& value);

/// A JSON text that any input can be made into.
std::string toText(const Json& value);

}  // namespace mngctl
