#include "Record.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

namespace {

char* copyText(const std::string& text) {
    char* const copy = strdup(text.c_str());
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    return copy;
}

std::string quoted(std::string_view characters) {
    std::string shown;
    for (const char character : characters) {
        shown += std::isprint(static_cast<unsigned char>(character)) != 0 ? character : '.';
    }
    return shown;
}

void addCharacters(std::vector<Unit>& units, const Leaf& leaf, std::span<const char> characters) {
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const char character = characters[i];
        std::string meaning = leaf.path + "[" + std::to_string(i) + "]";
        if (std::isprint(static_cast<unsigned char>(character)) != 0) {
            meaning += std::string(" '") + character + "'";
        }
        units.push_back(
            {static_cast<std::uint32_t>(static_cast<std::int32_t>(character)), std::move(meaning)});
    }
}

void addText(std::vector<Unit>& units, const Leaf& leaf, const char* pointer) {
    if (pointer == nullptr) {
        throw std::logic_error(leaf.path + " is null");
    }
    const std::string_view text = pointer;
    units.push_back({static_cast<std::uint32_t>(text.size()), leaf.path + " length"});
    for (std::size_t i = 0; i < text.size(); i += BYTES_PER_XDR_UNIT) {
        const std::string_view part = text.substr(i, BYTES_PER_XDR_UNIT);
        std::uint32_t value = 0;
        for (std::size_t j = 0; j < BYTES_PER_XDR_UNIT; ++j) {
            value = value << 8 | (j < part.size() ? static_cast<unsigned char>(part[j]) : 0U);
        }
        units.push_back({value, leaf.path + " \"" + quoted(part) + "\""});
    }
}

}  // namespace

Record::Record(const WireType& type)
    : recordType(type), memory(std::make_unique<unsigned char[]>(type.size)) {}

Record::~Record() {
    for (const Leaf& leaf : recordType.leaves) {
        if (leaf.kind == LeafKind::text) {
            std::free(text(leaf));
        }
    }
}

void Record::randomize(std::mt19937& random) {
    std::uniform_int_distribution<std::uint32_t> words;
    std::uniform_int_distribution<unsigned int> values(0, UCHAR_MAX);
    std::uniform_int_distribution<unsigned int> lengths(0, 40);
    for (const Leaf& leaf : recordType.leaves) {
        switch (leaf.kind) {
            case LeafKind::word:
                setWord(leaf, words(random));
                break;
            case LeafKind::truth:
                setWord(leaf, values(random) % 2 == 0 ? values(random) % 3 : words(random));
                break;
            case LeafKind::octet:
                memory[leaf.offset] = static_cast<unsigned char>(values(random));
                break;
            case LeafKind::characters:
                for (char& character : characters(leaf)) {
                    character = static_cast<char>(static_cast<unsigned char>(values(random)));
                }
                break;
            case LeafKind::text: {
                std::string text(lengths(random), ' ');
                for (char& character : text) {
                    character = static_cast<char>(static_cast<unsigned char>(values(random)));
                    character = character == '\0' ? ' ' : character;
                }
                setText(leaf, copyText(text));
                break;
            }
        }
    }
}

void Record::setEncoded(const Bytes& encoded) {
    std::size_t place = 0;
    const auto unit = [&] {
        std::uint32_t value = 0;
        for (int i = 0; i < BYTES_PER_XDR_UNIT; ++i) {
            value = value << 8 | encoded.at(place++);
        }
        return value;
    };
    for (const Leaf& leaf : recordType.leaves) {
        switch (leaf.kind) {
            case LeafKind::word:
                setWord(leaf, unit());
                break;
            case LeafKind::truth:
                setWord(leaf, unit() != 0 ? 5 : 0);
                break;
            case LeafKind::octet:
                memory[leaf.offset] = static_cast<unsigned char>(unit());
                break;
            case LeafKind::characters:
                for (char& character : characters(leaf)) {
                    character = static_cast<char>(static_cast<unsigned char>(unit()));
                }
                break;
            case LeafKind::text: {
                std::string text(unit(), ' ');
                for (char& character : text) {
                    character = static_cast<char>(encoded.at(place++));
                }
                setText(leaf, copyText(text));
                place +=
                    (BYTES_PER_XDR_UNIT - text.size() % BYTES_PER_XDR_UNIT) % BYTES_PER_XDR_UNIT;
                break;
            }
        }
    }
    if (place != encoded.size()) {
        throw std::out_of_range(std::string("not the size of ") + recordType.name);
    }
}

void Record::emptyTexts() {
    for (const Leaf& leaf : recordType.leaves) {
        if (leaf.kind == LeafKind::text) {
            setText(leaf, copyText(""));
        }
    }
}

std::uint32_t Record::word(const Leaf& leaf) const {
    std::uint32_t value;
    std::memcpy(&value, memory.get() + leaf.offset, sizeof value);
    return value;
}

void Record::setWord(const Leaf& leaf, std::uint32_t value) {
    std::memcpy(memory.get() + leaf.offset, &value, sizeof value);
}

char* Record::text(const Leaf& leaf) const {
    char* text;
    std::memcpy(&text, memory.get() + leaf.offset, sizeof text);
    return text;
}

void Record::setText(const Leaf& leaf, char* text) {
    std::free(this->text(leaf));
    std::memcpy(memory.get() + leaf.offset, &text, sizeof text);
}

std::span<char> Record::characters(const Leaf& leaf) {
    return {reinterpret_cast<char*>(memory.get() + leaf.offset), leaf.size};
}

std::span<const char> Record::characters(const Leaf& leaf) const {
    return {reinterpret_cast<const char*>(memory.get() + leaf.offset), leaf.size};
}

bool Record::holdsText() const {
    return std::ranges::any_of(recordType.leaves, [this](const Leaf& leaf) {
        return leaf.kind == LeafKind::text && text(leaf) != nullptr;
    });
}

std::vector<Unit> Record::units() const {
    std::vector<Unit> units;
    for (const Leaf& leaf : recordType.leaves) {
        switch (leaf.kind) {
            case LeafKind::word:
                units.push_back({word(leaf), leaf.path});
                break;
            case LeafKind::truth:
                units.push_back({word(leaf) != 0 ? 1U : 0U, leaf.path});
                break;
            case LeafKind::octet:
                units.push_back({memory[leaf.offset], leaf.path});
                break;
            case LeafKind::characters:
                addCharacters(units, leaf, characters(leaf));
                break;
            case LeafKind::text:
                addText(units, leaf, text(leaf));
                break;
        }
    }
    return units;
}

Bytes Record::encoded() const { return toBytes(units()); }

Bytes toBytes(std::span<const Unit> units) {
    Bytes bytes;
    bytes.reserve(units.size() * BYTES_PER_XDR_UNIT);
    for (const Unit& unit : units) {
        appendUnit(bytes, unit.value);
    }
    return bytes;
}

void appendUnit(Bytes& bytes, std::uint32_t unit) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<unsigned char>(unit >> shift));
    }
}
