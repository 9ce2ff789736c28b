#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace mngctl {

/// The name of a number, for an enumeration.
struct Choice {
    std::string_view name;
    int value;
};

using MacAddress = std::array<unsigned char, 6>;

// Text to value. Each throws UsageError with a sentence that says what was expected.

/// on, off, true, false, yes, no, 1 or 0.
bool parseFlag(std::string_view text);
/// A decimal number, or one in hexadecimal after 0x, from -2147483648 to 2147483647.
int parseInt(std::string_view text);
/// The same from 0 to 4294967295.
unsigned parseUnsigned(std::string_view text);
/// An IPv4 address with dots, in host byte order: four decimal numbers without leading zeros.
unsigned parseIpv4(std::string_view text);
/// The same, or the 32-bit value as a number.
unsigned parseIpv4OrNumber(std::string_view text);
/// An IPv6 address (RFC 4291) without a zone; answers its canonical text (RFC 5952).
std::string parseIpv6(std::string_view text);
/// Six pairs of hexadecimal digits with colons or hyphens between.
MacAddress parseMac(std::string_view text);
/// One of the names, or any number.
int parseChoice(std::string_view text, std::span<const Choice> choices);

// Value to text.

std::string formatIpv4(unsigned address);
std::string formatMac(std::span<const unsigned char, 6> octets);
/// The names with commas between and "or" before the last.
std::string joinNames(std::span<const std::string> names);
std::string joinNames(std::span<const Choice> choices);

/// A text of the board as valid UTF-8: each byte that is no part of it becomes \xNN.
std::string validUtf8(std::string_view bytes);
/// The same on one line and harmless to a terminal: control characters become \n, \t or \xNN.
std::string printable(std::string_view bytes);

}  // namespace mngctl
