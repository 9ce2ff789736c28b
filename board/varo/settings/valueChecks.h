#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace varo {

// Checks of what callers hand over. They throw Failure (invalidValue), whose text names the value.

void checkRange(std::string_view name, std::int64_t value, std::int64_t lowest,
                std::int64_t highest);

/// 0 or 1.
void checkSwitch(std::string_view name, std::int64_t value);

inline constexpr std::int64_t lastPort = 65535;
/// Of TCP or UDP.
void checkPort(std::int64_t value);

/// The text of a field, which has to be terminated within it.
std::string_view textIn(std::string_view name, const char* field, std::size_t size);

template <std::size_t size>
std::string_view textIn(std::string_view name, const char (&field)[size]) {
    return textIn(name, &field[0], size);
}

/// 1 to `longest` visible ASCII characters, no blanks. The text of the failure leaves the value
/// out: it may be a secret.
void checkWord(std::string_view name, std::string_view text, std::size_t longest);

/// At most `longest` bytes, no control characters; may be empty.
void checkLine(std::string_view name, std::string_view text, std::size_t longest);

/// Copies a text that was checked to fit; the rest of the field is cleared.
void copyInto(char* field, std::size_t size, std::string_view text);

template <std::size_t size>
void copyInto(char (&field)[size], std::string_view text) {
    copyInto(&field[0], size, text);
}

}  // namespace varo
