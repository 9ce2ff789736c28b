#include "mngctl/wire/json.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

class JsonWriter : public FieldVisitor {
public:
    JsonWriter() { open.push_back(&object); }

    Json take() { return std::move(object); }

    void flag(std::string_view name, bool_t& value) override { at(name) = value != 0; }
    void number(std::string_view name, int& value) override { at(name) = value; }
    void number(std::string_view name, unsigned& value) override { at(name) = value; }
    void address(std::string_view name, unsigned& value) override { at(name) = formatIpv4(value); }

    void mac(std::string_view name, std::span<unsigned char, 6> octets) override {
        at(name) = formatMac(octets);
    }

    void fixedText(std::string_view name, std::span<char> characters) override {
        const std::size_t length = ::strnlen(characters.data(), characters.size());
        at(name) = validUtf8({characters.data(), length});
    }

    void text(std::string_view name, char*& value, std::size_t /*maximum*/) override {
        at(name) = validUtf8(value == nullptr ? "" : value);
    }

protected:
    void namedNumber(std::string_view name, int& value, std::span<const Choice> choices) override {
        const auto found = std::ranges::find(choices, value, &Choice::value);
        if (found == choices.end()) {
            at(name) = value;
        } else {
            at(name) = found->name;
        }
    }

    void openRecord(std::string_view name) override { push(at(name) = Json::object()); }

    void openList(std::string_view name, std::size_t /*count*/) override {
        push(at(name) = Json::array());
    }

    void openItem(std::size_t /*index*/) override {
        open.back()->push_back(Json::object());
        push(open.back()->back());
    }

    void close() override { open.pop_back(); }

private:
    Json& at(std::string_view name) { return (*open.back())[std::string(name)]; }
    void push(Json& child) { open.push_back(&child); }

    Json object = Json::object();
    std::vector<Json*> open;
};

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

Json writeJson(const Visit& visit) {
    JsonWriter writer;
    visit(writer);
    return writer.take();
}

std::string toLines(const Json& value) {
    std::string lines;
    addLines(lines, "", value);
    return lines;
}

std::string toText(const Json& value) {
    return value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace mngctl
