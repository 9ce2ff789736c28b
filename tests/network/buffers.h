#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>

/// Fills a text field.
template <std::size_t size>
void put(char (&field)[size], const std::string& text) {
    ASSERT_LT(text.size(), size);
    std::memcpy(field, text.c_str(), text.size() + 1);
}

/// A buffer of the size that a caller must provide, behind which nothing may be written.
template <std::size_t size>
struct Buffer {
    Buffer() {
        std::memset(text, '#', sizeof text);
        std::memset(beyond, '#', sizeof beyond);
    }
    std::string content() const { return {text, strnlen(text, size)}; }
    bool isUntouched() const {
        return std::string(text, size) == std::string(size, '#') && isIntactBehind();
    }
    bool isIntactBehind() const { return std::string(beyond, 8) == std::string(8, '#'); }

    char text[size];
    char beyond[8];
};
