#include "mngctl/wire/json.h"

namespace mngctl {

namespace {

class Describer : public FieldVisitor {
public:
    Describer() { open.push_back(&described); }

    Json take() { return std::move(described); }

    void flag(std::string_view name, bool_t& /*value*/) override { add(name, "on|off"); }
    void number(std::string_view name, int& /*value*/) override { add(name, "integer"); }
    void number(std::string_view name, unsigned& /*value*/) override { add(name, "unsigned"); }
    void address(std::string_view name, unsigned& /*value*/) override { add(name, "IPv4"); }
    void mac(std::string_view name, std::span<unsigned char, 6>) override { add(name, "MAC"); }

    void fixedText(std::string_view name, std::span<char> characters) override {
        add(name, "text")["maximum"] = characters.size() - 1;
    }

    void text(std::string_view name, char*& /*value*/, std::size_t maximum) override {
        Json& field = add(name, "text");
        if (maximum != unlimited) {
            field["maximum"] = maximum;
        }
    }

protected:
    void namedNumber(std::string_view name, int&, std::span<const Choice> choices) override {
        std::string names;
        for (const Choice& choice : choices) {
            names += (names.empty() ? "" : "|") + std::string(choice.name);
        }
        add(name, names);
    }

    void statusNumber(std::string_view name, int& /*value*/) override { add(name, "status"); }

    void openRecord(std::string_view name) override { openFields(add(name, "record")); }

    void openList(std::string_view name, std::size_t count) override {
        Json& field = add(name, "list");
        field["count"] = count;
        openFields(field);
    }

    void openItem(std::size_t index) override {
        // All items have the same fields: the first describes them.
        if (index > 0) {
            discarded = Json::array();
        }
        open.push_back(index == 0 ? open.back() : &discarded);
    }

    void close() override { open.pop_back(); }

private:
    Json& add(std::string_view name, std::string type) {
        Json& fields = *open.back();
        fields.push_back(Json{{"name", std::string(name)}, {"type", std::move(type)}});
        return fields.back();
    }

    void openFields(Json& field) {
        field["fields"] = Json::array();
        open.push_back(&field["fields"]);
    }

    Json described = Json::array();
    std::vector<Json*> open;
    Json discarded;  ///< takes the descriptions of a list's second and further items
};

}  // namespace

Json describeJson(const Visit& visit) {
    Describer describer;
    visit(describer);
    return describer.take();
}

}  // namespace mngctl
