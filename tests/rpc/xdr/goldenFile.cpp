#include "goldenFile.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace {

/// "name[3] 'a'" is element 3 of the array "name".
struct Element {
    std::string_view array;
    std::string_view index;
};

std::vector<std::uint32_t> toUnits(const Bytes& bytes) {
    std::vector<std::uint32_t> units;
    for (std::size_t i = 0; i + BYTES_PER_XDR_UNIT <= bytes.size(); i += BYTES_PER_XDR_UNIT) {
        std::uint32_t unit = 0;
        for (std::size_t j = 0; j < BYTES_PER_XDR_UNIT; ++j) {
            unit = unit << 8 | bytes[i + j];
        }
        units.push_back(unit);
    }
    return units;
}

/// Of the meaning of a unit that carries a character.
Element elementOf(std::string_view meaning) {
    const std::string_view subscripted = meaning.substr(0, meaning.find(' '));
    const std::size_t bracket = subscripted.rfind('[');
    return {subscripted.substr(0, bracket),
            subscripted.substr(bracket + 1, subscripted.size() - bracket - 2)};
}

bool isElement(std::string_view meaning) {
    const std::string_view subscripted = meaning.substr(0, meaning.find(' '));
    return subscripted.ends_with(']');
}

/// The end of the run of equal units of one array that begins at `start`.
std::size_t runEnd(const std::vector<std::uint32_t>& units, const std::vector<Unit>& meanings,
                   std::size_t start) {
    std::size_t end = start + 1;
    if (isElement(meanings[start].meaning)) {
        while (end < units.size() && units[end] == units[start] &&
               isElement(meanings[end].meaning) &&
               elementOf(meanings[end].meaning).array == elementOf(meanings[start].meaning).array) {
            ++end;
        }
    }
    return end;
}

std::size_t parseNumber(std::string_view digits, int base) {
    std::size_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty()) {
        throw std::runtime_error(fmt::format("not a number: '{}'", digits));
    }
    return number;
}

}  // namespace

std::filesystem::path goldenFile(const WireType& type) {
    return std::filesystem::path(GOLDEN_DIRECTORY) / (std::string(type.name) + ".xdr");
}

std::string goldenText(const Record& record, const Bytes& bytes) {
    const std::vector<std::uint32_t> units = toUnits(bytes);
    std::vector<Unit> meanings = record.units();
    meanings.resize(std::max(meanings.size(), units.size()), {0, "unexpected"});

    std::string text = fmt::format("# {}: {} unit{}, {} bytes\n", record.type().name, units.size(),
                                   units.size() == 1 ? "" : "s", bytes.size());
    for (std::size_t i = 0; i < units.size();) {
        const std::size_t end = runEnd(units, meanings, i);
        if (end - i > 1) {
            const Element first = elementOf(meanings[i].meaning);
            const Element last = elementOf(meanings[end - 1].meaning);
            const std::string_view shown = meanings[i].meaning;
            const std::size_t space = shown.find(' ');
            text += fmt::format("{:08x} {:<6} {}[{}..{}]{}\n", units[i],
                                fmt::format("x{}", end - i), first.array, first.index, last.index,
                                space == shown.npos ? "" : shown.substr(space));
        } else {
            text += fmt::format("{:08x} {:<6} {}\n", units[i], "", meanings[i].meaning);
        }
        i = end;
    }
    return text;
}

Bytes goldenBytes(const std::string& text) {
    Bytes bytes;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::istringstream words(line);
        std::string unit;
        std::string factor;
        words >> unit >> factor;
        const std::size_t value = parseNumber(unit, 16);
        if (unit.size() != 8) {
            throw std::runtime_error(fmt::format("not a unit: '{}'", unit));
        }
        // What a unit carries begins in column 16; a factor stands before it.
        const bool repeated = line.find_first_not_of(' ', 8) < 16;
        const std::size_t count =
            repeated ? parseNumber(std::string_view(factor).substr(1), 10) : 1;
        for (std::size_t i = 0; i < count; ++i) {
            appendUnit(bytes, static_cast<std::uint32_t>(value));
        }
    }
    return bytes;
}
