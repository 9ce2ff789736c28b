#include "calls/Wire.h"

#include <fmt/core.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t unitSize = sizeof(std::uint32_t);

}  // namespace

std::vector<char> toBytes(const Units& units) {
    std::vector<char> bytes(units.size() * unitSize);
    char* place = bytes.data();
    for (const std::uint32_t unit : units) {
        const std::uint32_t ordered = htonl(unit);
        std::memcpy(place, &ordered, unitSize);
        place += unitSize;
    }
    return bytes;
}

Units toUnits(const std::vector<char>& bytes) {
    Units units(bytes.size() / unitSize);
    const char* place = bytes.data();
    for (std::uint32_t& unit : units) {
        std::memcpy(&unit, place, unitSize);
        unit = ntohl(unit);
        place += unitSize;
    }
    return units;
}

std::string difference(const Units& expected, const Units& actual) {
    const auto [left, right] = std::ranges::mismatch(expected, actual);
    if (left != expected.end() && right != actual.end()) {
        return fmt::format("unit {} is {:#x}, not {:#x}", left - expected.begin(), *right, *left);
    }
    if (expected.size() != actual.size()) {
        return fmt::format("{} units, not {}", actual.size(), expected.size());
    }
    return "";
}

Argument& Argument::number(std::uint32_t value) {
    travelling.push_back(value);
    return *this;
}

Argument& Argument::text(std::string_view text) {
    holdsText = true;
    number(static_cast<std::uint32_t>(text.size()));
    std::vector<char> padded(text.begin(), text.end());
    padded.resize((text.size() + unitSize - 1) / unitSize * unitSize);
    const Units units = toUnits(padded);
    travelling.insert(travelling.end(), units.begin(), units.end());
    return *this;
}

Argument& Argument::characters(std::string_view text, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        number(i < text.size() ? text[i] : 0);
    }
    return *this;
}

Result& Result::numbers(std::size_t count) {
    for (; count > 0; --count) {
        value(telling.number(++output));
    }
    return *this;
}

Result& Result::flags(std::size_t count) {
    for (; count > 0; --count) {
        value(telling.flag(++output));
    }
    return *this;
}

Result& Result::octets(std::size_t count) {
    for (; count > 0; --count) {
        value(telling.octet(++output));
    }
    return *this;
}

Result& Result::characters(std::size_t size, std::size_t filled) {
    for (const char character : telling.text(++output, filled - 1)) {
        value(static_cast<std::uint32_t>(character));
    }
    return zeros(size - filled + 1);
}

Result& Result::zeros(std::size_t count) {
    travelling.insert(travelling.end(), count, 0);
    return *this;
}

Result& Result::value(std::uint32_t value) {
    travelling.push_back(value);
    return *this;
}

#define RECORD(type, memorySize, wireSize, ...) \
    void Result::add(const type*) {             \
        using Record [[maybe_unused]] = type;   \
        __VA_ARGS__                             \
    }
#define ARGUMENT(type, memorySize, wireSize, ...)
#define FIELD(name, place) numbers();
#define FLAG(name, place) flags();
#define FIXED_TEXT(name, place) characters(sizeof(Record::name));
#define MAC(name, place) octets(sizeof(Record::name));
#define OCTETS(name, place) octets(sizeof(Record::name));
#define NESTED(name, place) record<decltype(Record::name)>();
#define LIST(name, place)                                                     \
    for (std::size_t i = 0; i < std::extent_v<decltype(Record::name)>; ++i) { \
        record<std::remove_extent_t<decltype(Record::name)>>();               \
    }
#include "network/rpc/records.def"
