#pragma once

#include "exported/Telling.h"
#include "network/rpc/wireRecords.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Units of the wire (RFC 4506), in host byte order.
using Units = std::vector<std::uint32_t>;

/// The units as bytes in network byte order, and back. A rest of less than a unit is dropped.
std::vector<char> toBytes(const Units& units);
Units toUnits(const std::vector<char>& bytes);

/// How the second sequence differs from the first, in words; empty if it does not.
std::string difference(const Units& expected, const Units& actual);

/// An argument, put together from what travels rather than by a filter.
class Argument {
public:
    Argument& number(std::uint32_t value);
    Argument& number(int value) { return number(static_cast<std::uint32_t>(value)); }
    Argument& numbers(auto... values) { return (number(values), ...); }
    /// A text of any length.
    Argument& text(std::string_view text);
    /// A fixed character array, cleared behind the text.
    Argument& characters(std::string_view text, std::size_t size);

    const Units& units() const { return travelling; }
    bool hasText() const { return holdsText; }

private:
    Units travelling{};
    bool holdsText = false;
};

/// A result whose values are those that a faked exported function fills in, in the order of its
/// outputs.
class Result {
public:
    explicit Result(Telling values) : telling(values) {}

    // The next outputs.
    Result& numbers(std::size_t count = 1);
    Result& flags(std::size_t count = 1);
    Result& octets(std::size_t count);
    /// A fixed character array of `size` characters, of which a text fills `filled` with its
    /// terminator.
    Result& characters(std::size_t size, std::size_t filled);
    Result& characters(std::size_t size) { return characters(size, size); }

    /// A record that the function fills whole: its fields in the order of the wire.
    template <class Record>
    Result& record() {
        add(static_cast<const Record*>(nullptr));
        return *this;
    }

    // What no output tells.
    Result& zeros(std::size_t count);
    Result& value(std::uint32_t value);

    const Units& units() const { return travelling; }

private:
#define RECORD(type, memorySize, wireSize, ...) void add(const type*);
#define ARGUMENT(type, memorySize, wireSize, ...)
#include "network/rpc/records.def"

    Telling telling;
    unsigned int output = 0;
    Units travelling{};
};
