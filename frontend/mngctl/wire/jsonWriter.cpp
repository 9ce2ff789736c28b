#include "mngctl/wire/json.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

void JsonWriter::flag(std::string_view name, bool_t& value) { at(name) = value != 0; }

void JsonWriter::number(std::string_view name, int& value) { at(name) = value; }

void JsonWriter::number(std::string_view name, unsigned& value) { at(name) = value; }

void JsonWriter::address(std::string_view name, unsigned& value) { at(name) = formatIpv4(value); }

void JsonWriter::mac(std::string_view name, std::span<unsigned char, 6> octets) {
    at(name) = formatMac(octets);
}

void JsonWriter::fixedText(std::string_view name, std::span<char> characters) {
    const std::size_t length = ::strnlen(characters.data(), characters.size());
    at(name) = validUtf8({characters.data(), length});
}

void JsonWriter::text(std::string_view name, char*& value, std::size_t /*maximum*/) {
    at(name) = validUtf8(value == nullptr ? "" : value);
}

void JsonWriter::namedNumber(std::string_view name, int& value, std::span<const Choice> choices) {
    const auto found = std::ranges::find(choices, value, &Choice::value);
    if (found == choices.end()) {
        at(name) = value;
    } else {
        at(name) = found->name;
    }
}

void JsonWriter::openRecord(std::string_view name) {
    Json& child = at(name);
    child = Json::object();
    open.push_back(&child);
}

void JsonWriter::openList(std::string_view name, std::size_t /*count*/) {
    Json& child = at(name);
    child = Json::array();
    open.push_back(&child);
}

void JsonWriter::openItem(std::size_t /*index*/) {
    open.back()->push_back(Json::object());
    open.push_back(&open.back()->back());
}

namespace {

void addLines(std::string& lines, const std::string& path, const Json& value) {
    if (value.is_object()) {
        for (const auto& [name, child] : value.items()) {
            addLines(lines, path.empty() ? name : fmt::format("{}.{}", path, name), child);
        }
    } else if (value.is_array()) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            addLines(lines, fmt::format("{}[{}]", path, i), value[i]);
        }
    } else {
        std::string shown;
        if (value.is_string()) {
            shown = printable(value.get_ref<const std::string&>());
        } else if (value.is_boolean()) {
            shown = value.get<bool>() ? "on" : "off";
        } else {
            shown = value.dump();
        }
        lines += shown.empty() ? path + ":\n" : fmt::format("{}: {}\n", path, shown);
    }
}

}  // namespace

std::string toLines(const Json& value) {
    std::string lines;
    addLines(lines, "", value);
    return lines;
}

std::string toText(const Json& value) {
    return value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace mngctl
