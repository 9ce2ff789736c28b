#include "mngctl/outcome.h"
#include "mngctl/wire/json.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace mngctl {

namespace {

class JsonReader : public FieldVisitor {
public:
    /// Keeps both by reference.
    JsonReader(const Json& source, Texts& recordsTexts) : texts(recordsTexts) { push(&source, ""); }

    /// To be called after the last field: finds the names that no field has.
    void finish() { close(); }

    void flag(std::string_view name, bool_t& value) override {
        read(name, [&](const Json& node) {
            value =
                parseFlag(node.is_string() ? node.get<std::string>() : node.dump()) ? TRUE : FALSE;
        });
    }

    void number(std::string_view name, int& value) override {
        read(name, [&](const Json& node) { value = whole(node, parseInt); });
    }

    void number(std::string_view name, unsigned& value) override {
        read(name, [&](const Json& node) { value = whole(node, parseUnsigned); });
    }

    void address(std::string_view name, unsigned& value) override {
        read(name, [&](const Json& node) { value = whole(node, parseIpv4OrNumber); });
    }

    void mac(std::string_view name, std::span<unsigned char, 6> octets) override {
        read(name, [&](const Json& node) {
            std::ranges::copy(parseMac(textOf(node, unlimited)), octets.begin());
        });
    }

    void fixedText(std::string_view name, std::span<char> characters) override {
        read(name, [&](const Json& node) {
            std::ranges::copy(textOf(node, characters.size() - 1), characters.begin());
        });
    }

    void text(std::string_view name, char*& value, std::size_t maximum) override {
        value = texts.emplace_back().data();
        read(name,
             [&](const Json& node) { value = texts.emplace_back(textOf(node, maximum)).data(); });
    }

protected:
    void namedNumber(std::string_view name, int& value, std::span<const Choice> choices) override {
        read(name, [&](const Json& node) {
            value = parseChoice(node.is_string() ? node.get<std::string>() : node.dump(), choices);
        });
    }

    void openRecord(std::string_view name) override {
        const Json* const node = find(name);
        if (node != nullptr && !node->is_object()) {
            fail(name, "expected an object with fields");
        }
        push(node, fmt::format("{}{}.", open.back().path, name));
    }

    void openList(std::string_view name, std::size_t count) override {
        const Json* const node = find(name);
        if (node != nullptr && !node->is_array()) {
            fail(name, "expected an array");
        }
        if (node != nullptr && node->size() > count) {
            fail(name, fmt::format("holds {} items, where the board has room for {}", node->size(),
                                   count));
        }
        push(node, fmt::format("{}{}", open.back().path, name));
    }

    void openItem(std::size_t index) override {
        const Level& level = open.back();
        const Json* node = nullptr;
        if (level.node != nullptr && index < level.node->size()) {
            node = &(*level.node)[index];
        }
        if (node != nullptr && !node->is_object()) {
            fail(fmt::format("[{}]", index), "expected an object with fields");
        }
        push(node, fmt::format("{}[{}].", level.path, index));
    }

    void close() override {
        const Level& level = open.back();
        if (level.node != nullptr && level.node->is_object()) {
            for (const auto& [name, value] : level.node->items()) {
                if (level.known.contains(name)) {
                    continue;
                }
                const std::vector<std::string> known(level.known.begin(), level.known.end());
                throw UsageError(fmt::format("{}{}: there is no such field; expected {}",
                                             level.path, printable(name), joinNames(known)));
            }
        }
        open.pop_back();
    }

private:
    struct Level {
        const Json* node;  ///< null where the record is left out
        std::string path;  ///< with a final dot, or empty
        std::set<std::string, std::less<>> known;
    };

    void push(const Json* node, std::string path) {
        open.push_back(Level{node, std::move(path), {}});
    }

    const Json* find(std::string_view name) {
        Level& level = open.back();
        level.known.emplace(name);
        if (level.node == nullptr) {
            return nullptr;
        }
        const auto found = level.node->find(std::string(name));
        return found == level.node->end() ? nullptr : &*found;
    }

    [[noreturn]] void fail(std::string_view name, const std::string& reason) const {
        throw UsageError(fmt::format("{}{}: {}", open.back().path, name, reason));
    }

    template <class Parse>
    void read(std::string_view name, const Parse& parse) {
        const Json* const node = find(name);
        if (node == nullptr) {
            return;
        }
        try {
            parse(*node);
        } catch (const UsageError& error) {
            fail(name, error.what());
        }
    }

    template <class Integer>
    Integer whole(const Json& node, Integer (*parseText)(std::string_view)) const {
        // A number's own text is held to the same rules as a text from the command line.
        return parseText(node.is_string() ? node.get<std::string>() : node.dump());
    }

    const std::string& textOf(const Json& node, std::size_t maximum) const {
        if (!node.is_string()) {
            throw UsageError("expected a text");
        }
        const auto& text = node.get_ref<const std::string&>();
        if (text.find('\0') != std::string::npos) {
            throw UsageError("a text cannot hold a zero character");
        }
        if (text.size() > maximum) {
            throw UsageError(
                fmt::format("a text of {} bytes is too long: the board takes at most {}",
                            text.size(), maximum));
        }
        return text;
    }

    std::vector<Level> open;
    Texts& texts;
};

}  // namespace

void readJson(const Json& source, Texts& texts, const Visit& visit) {
    JsonReader reader(source, texts);
    visit(reader);
    reader.finish();
}

}  // namespace mngctl
