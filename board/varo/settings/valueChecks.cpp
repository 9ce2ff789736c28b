#include "board/varo/settings/valueChecks.h"

#include "board/varo/varoCodes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace varo {

namespace {

constexpr unsigned char deleteCharacter = 0x7f;

bool isVisible(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > ' ' && byte < deleteCharacter;
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' || byte == deleteCharacter;
}

void checkLength(std::string_view name, std::string_view text, std::size_t longest) {
    if (text.size() > longest) {
        throw Failure(invalidValue, fmt::format("{}: {} characters are more than {}", name,
                                                text.size(), longest));
    }
}

}  // namespace

void checkRange(std::string_view name, std::int64_t value, std::int64_t lowest,
                std::int64_t highest) {
    if (value < lowest || value > highest) {
        throw Failure(invalidValue,
                      fmt::format("{}: {} is not in {} to {}", name, value, lowest, highest));
    }
}

void checkSwitch(std::string_view name, std::int64_t value) { checkRange(name, value, 0, 1); }

void checkPort(std::int64_t value) { checkRange("port", value, 1, lastPort); }

std::string_view textIn(std::string_view name, const char* field, std::size_t size) {
    const std::size_t length = strnlen(field, size);
    if (length == size) {
        throw Failure(
            invalidValue,
            fmt::format("{}: the text is not terminated within its {} bytes", name, size));
    }
    return {field, length};
}

void checkWord(std::string_view name, std::string_view text, std::size_t longest) {
    if (text.empty()) {
        throw Failure(invalidValue, fmt::format("{}: it is empty", name));
    }
    checkLength(name, text, longest);
    if (!std::all_of(text.begin(), text.end(), isVisible)) {
        throw Failure(invalidValue,
                      fmt::format("{}: a blank or a character that is not visible ASCII", name));
    }
}

void checkLine(std::string_view name, std::string_view text, std::size_t longest) {
    checkLength(name, text, longest);
    if (std::any_of(text.begin(), text.end(), isControl)) {
        throw Failure(invalidValue, fmt::format("{}: a control character", name));
    }
}

void copyInto(char* field, std::size_t size, std::string_view text) {
    std::memset(field, 0, size);
    text.copy(field, size - 1);
}

}  // namespace varo
