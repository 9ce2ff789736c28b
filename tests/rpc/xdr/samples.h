#pragma once

#include "Record.h"

#include <cstring>
#include <initializer_list>
#include <memory>
#include <string_view>

/// Contents from which a golden file is made: neighbouring fields differ, so that swapped ones
/// show.
struct Sample {
    std::string_view type;
    Bytes contents;  ///< the value, with texts that live as long as the program
};

template <class Type>
Sample sample(std::string_view type, const Type& value) {
    Sample made{type, Bytes(sizeof(Type))};
    std::memcpy(made.contents.data(), &value, sizeof value);
    return made;
}

/// A record's text. Nobody writes to it or frees it: records are made with copies of it.
inline char* text(const char* literal) { return const_cast<char*>(literal); }

/// An address in dotted form, as the 32-bit value that the wire carries.
constexpr unsigned int address(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
    return a << 24 | b << 16 | c << 8 | d;
}

std::vector<Sample> samplesOfAddressing();
std::vector<Sample> samplesOfManagement();
std::vector<Sample> samplesOfTime();

/// A record of the type with the sample's contents. Throws std::out_of_range without a sample.
std::unique_ptr<Record> sampleOf(const WireType& type);
