#pragma once

#include <cstring>
#include <string>

/// Fills a text field; the rest of it is zero.
template <std::size_t size>
void setText(char (&field)[size], const std::string& text) {
    std::memset(field, 0, size);
    text.copy(field, size);
}
