#include "exported/Telling.h"

#include <fmt/core.h>

std::uint32_t Telling::number(unsigned int output) const {
    return 0x80000000 | generation << 16 | output;
}

bool Telling::flag(unsigned int output) const { return (generation + output) % 2 != 0; }

unsigned char Telling::octet(unsigned int output) const {
    return static_cast<unsigned char>(0x80 + 16 * generation + output);
}

std::string Telling::text(unsigned int output, std::size_t length) const {
    const std::string part = fmt::format("{}.{} ", generation, output);
    std::string whole;
    while (whole.size() < length) {
        whole += part;
    }
    whole.resize(length);
    return whole;
}
