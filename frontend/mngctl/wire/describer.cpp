#include "mngctl/wire/json.h"

#include <fmt/format.h>

namespace mngctl {

Json& Describer::add(std::string_view name, std::string type) {
    Json& fields = *open.back();
    fields.push_back(Json{{"name", std::string(name)}, {"type", std::move(type)}});
    return fields.back();
}

void Describer::flag(std::string_view name, bool_t& /*value*/) { add(name, "on|off"); }

void Describer::number(std::string_view name, int& /*value*/) { add(name, "integer"); }

void Describer::number(std::string_view name, unsigned& /*value*/) { add(name, "unsigned"); }

void Describer::address(std::string_view name, unsigned& /*value*/) { add(name, "IPv4"); }

void Describer::mac(std::string_view name, std::span<unsigned char, 6> /*octets*/) {
    add(name, "MAC");
}

void Describer::fixedText(std::string_view name, std::span<char> characters) {
    add(name, "text")["maximum"] = characters.size() - 1;
}

void Describer::text(std::string_view name, char*& /*value*/, std::size_t maximum) {
    Json& field = add(name, "text");
    if (maximum != unlimited) {
        field["maximum"] = maximum;
    }
}

void Describer::namedNumber(std::string_view name, int& /*value*/,
                            std::span<const Choice> choices) {
    std::string names;
    for (const Choice& choice : choices) {
        names += (names.empty() ? "" : "|") + std::string(choice.name);
    }
    add(name, names);
}

void Describer::statusNumber(std::string_view name, int& /*value*/) { add(name, "status"); }

void Describer::openRecord(std::string_view name) {
    Json& field = add(name, "record");
    field["fields"] = Json::array();
    open.push_back(&field["fields"]);
}

void Describer::openList(std::string_view name, std::size_t count) {
    Json& field = add(name, "list");
    field["count"] = count;
    field["fields"] = Json::array();
    open.push_back(&field["fields"]);
}

void Describer::openItem(std::size_t index) {
    // All items have the same fields: the first describes them.
    if (index > 0) {
        discarded = Json::array();
    }
    open.push_back(index == 0 ? open.back() : &discarded);
}

}  // namespace mngctl
