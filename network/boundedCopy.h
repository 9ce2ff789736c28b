#pragma once

#include <cstddef>
#include <cstring>

/// Copies the text up to its terminator or `limit` characters, and terminates the copy. The
/// destination holds limit + 1 bytes; a source that is not terminated must hold `limit` characters.
inline void copyBounded(char* destination, const char* source, std::size_t limit) {
    const std::size_t length = strnlen(source, limit);
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}

/// The same, filling a field whole but for its terminator.
template <std::size_t size>
void copyBounded(char (&field)[size], const char* source) {
    copyBounded(field, source, size - 1);
}
