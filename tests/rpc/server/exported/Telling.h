#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// What the faked exported functions fill their outputs with. Values differ from output to output,
/// so that swapped ones show, and from generation to generation, so that a call's values show
/// against those of an earlier one.
struct Telling {
    unsigned int generation;

    /// A value for the output of that number; negative as a signed one.
    std::uint32_t number(unsigned int output) const;
    bool flag(unsigned int output) const;
    unsigned char octet(unsigned int output) const;
    /// A text of `length` characters.
    std::string text(unsigned int output, std::size_t length) const;
};
