#pragma once

#include "WireType.h"

#include <memory>
#include <random>
#include <span>

/// A unit of the wire and what it carries.
struct Unit {
    std::uint32_t value;
    std::string meaning;  ///< such as "name[3] 'a'"
};

/// A record of any wire type. Owns its texts.
class Record {
public:
    /// All zero, all texts null, as the RPC library hands it to a decoder.
    explicit Record(const WireType& type);
    ~Record();
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    void* data() { return memory.get(); }
    const WireType& type() const { return recordType; }
    std::span<const unsigned char> bytes() const { return {memory.get(), recordType.size}; }

    /// Random contents: characters of all values, bools of any value, texts of 0 to 40 characters.
    void randomize(std::mt19937& random);

    /// Sets all contents to what an encoded record carries, read without any filter. A bool that is
    /// on becomes another value than 1. Throws std::out_of_range when the bytes are too few or too
    /// many.
    void setEncoded(const Bytes& encoded);

    /// Sets every text to the empty one.
    void emptyTexts();

    std::uint32_t word(const Leaf& leaf) const;
    void setWord(const Leaf& leaf, std::uint32_t value);
    char* text(const Leaf& leaf) const;
    /// Takes over a text that was allocated with malloc, or null.
    void setText(const Leaf& leaf, char* text);
    std::span<char> characters(const Leaf& leaf);
    std::span<const char> characters(const Leaf& leaf) const;

    bool holdsText() const;

    /// What the record looks like on the wire, worked out without any filter: RFC 4506, with one
    /// unit a character, widened as the machine widens a char. Throws std::logic_error when a text
    /// is null.
    std::vector<Unit> units() const;
    Bytes encoded() const;

private:
    const WireType& recordType;
    std::unique_ptr<unsigned char[]> memory;
};

/// The units as bytes in network byte order.
Bytes toBytes(std::span<const Unit> units);
void appendUnit(Bytes& bytes, std::uint32_t unit);
