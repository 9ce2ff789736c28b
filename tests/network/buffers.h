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

/// A record of which every byte is known.
template <class Record>
Record filled(int value) {
    Record record;
    std::memset(&record, value, sizeof record);
    return record;
}

/// Whether two records are the same, behind the ends of their texts too.
template <class Record>
bool areSame(const Record& left, const Record& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/// A record whose bytes tell whether it was written to.
template <class Record>
Record untouched() {
    return filled<Record>(0x5a);
}
template <class Record>
bool isUntouched(const Record& record) {
    return areSame(record, untouched<Record>());
}
