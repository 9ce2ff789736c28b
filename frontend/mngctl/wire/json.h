#pragma once

#include "mngctl/wire/fields.h"

#include <nlohmann/json.hpp>

#include <deque>
#include <functional>

namespace mngctl {

/// Fields keep their order.
using Json = nlohmann::ordered_json;

/// Shows a visitor the fields of a record.
using Visit = std::function<void(FieldVisitor&)>;

/// Makes a JSON object of a record: IPv4 and MAC addresses become text, a bool a bool, an
/// enumeration's value its name or, without one, its number. Texts become valid UTF-8.
Json writeJson(const Visit& visit);

/// Owns the texts that a record points to.
using Texts = std::deque<std::string>;

/// Fills a record from a JSON object of the same form. A value may also be a text that is parsed
/// as on the command line. What is left out becomes 0, off or empty. Throws UsageError, naming the
/// field, for a value out of range and for a name that the record does not have.
void readJson(const Json& source, Texts& texts, const Visit& visit);

/// Describes a record's fields as an array of {"name", "type"}, with "fields" for a record or a
/// list of records, and "count" for the latter. An operation's outcome is of type "status".
Json describeJson(const Visit& visit);

/// The record as JSON.
template <class Record>
Json toJson(Record& record) {
    return writeJson([&record](FieldVisitor& visitor) { fields(visitor, record); });
}

/// One `name: value` line for each value, nested names with dots and indices:
/// `servers[0].priority`.
std::string toLines(const Json& value);

/// A JSON text that any input can be made into.
std::string toText(const Json& value);

}  // namespace mngctl
