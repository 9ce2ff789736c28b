#include "mngctl/wire/values.h"

#include "mngctl/outcome.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <optional>
#include <vector>

namespace mngctl {

namespace {

/// A whole number in decimal or, after 0x, in hexadecimal, if the text is one and fits.
std::optional<std::int64_t> wholeNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative) {
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size() ||
        value > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    const auto magnitude = static_cast<std::int64_t>(value);
    return negative ? -magnitude : magnitude;
}

template <class Integer>
Integer parseNumber(std::string_view text) {
    using Limits = std::numeric_limits<Integer>;
    const auto value = wholeNumber(text);
    if (!value || *value < Limits::min() || *value > std::int64_t{Limits::max()}) {
        throw UsageError(fmt::format("expected a whole number from {} to {}, not '{}'",
                                     Limits::min(), Limits::max(), printable(text)));
    }
    return static_cast<Integer>(*value);
}

std::optional<unsigned> dottedAddress(std::string_view text) {
    in_addr address{};
    const std::string terminated(text);
    // An embedded zero would end the text early and hide what follows it.
    if (terminated.find('\0') != std::string::npos ||
        ::inet_pton(AF_INET, terminated.c_str(), &address) != 1) {
        return std::nullopt;
    }
    return ntohl(address.s_addr);
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

/// Length of the valid UTF-8 sequence (RFC 3629) that the text begins with; 0 if there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        return 1;
    }
    // The second byte's range excludes overlong forms, surrogates and values past U+10FFFF.
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    }
    if (length == 0 || text.size() < length || byte(1) < low || byte(1) > high) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

}  // namespace

bool parseFlag(std::string_view text) {
    for (const std::string_view yes : {"on", "true", "yes", "1"}) {
        if (text == yes) {
            return true;
        }
    }
    for (const std::string_view no : {"off", "false", "no", "0"}) {
        if (text == no) {
            return false;
        }
    }
    throw UsageError(fmt::format("expected on or off, not '{}'", printable(text)));
}

int parseInt(std::string_view text) { return parseNumber<int>(text); }

unsigned parseUnsigned(std::string_view text) { return parseNumber<unsigned>(text); }

unsigned parseIpv4(std::string_view text) {
    if (const auto address = dottedAddress(text)) {
        return *address;
    }
    throw UsageError(
        fmt::format("expected an IPv4 address, four numbers from 0 to 255 with dots between such "
                    "as 192.0.2.1, not '{}'",
                    printable(text)));
}

unsigned parseIpv4OrNumber(std::string_view text) {
    if (const auto number = wholeNumber(text); number && *number >= 0) {
        return static_cast<unsigned>(*number);
    }
    return parseIpv4(text);
}

std::string parseIpv6(std::string_view text) {
    if (text.find('%') != std::string_view::npos) {
        throw UsageError(fmt::format(
            "'{}' names a zone, which the board cannot store: leave out the % and what follows it",
            printable(text)));
    }
    in6_addr address{};
    const std::string terminated(text);
    if (terminated.find('\0') != std::string::npos ||
        ::inet_pton(AF_INET6, terminated.c_str(), &address) != 1) {
        throw UsageError(
            fmt::format("expected an IPv6 address such as 2001:db8::1, not '{}'", printable(text)));
    }
    std::array<char, INET6_ADDRSTRLEN> canonical{};
    ::inet_ntop(AF_INET6, &address, canonical.data(), canonical.size());
    return canonical.data();
}

MacAddress parseMac(std::string_view text) {
    MacAddress octets{};
    bool valid = text.size() == 17;
    for (std::size_t i = 0; valid && i < octets.size(); ++i) {
        const int high = hexDigit(text[3 * i]);
        const int low = hexDigit(text[3 * i + 1]);
        valid = high >= 0 && low >= 0 && (i == 5 || text[3 * i + 2] == text[2]) &&
                (text[2] == ':' || text[2] == '-');
        octets[i] = static_cast<unsigned char>(high * 16 + low);
    }
    if (!valid) {
        throw UsageError(fmt::format("expected a MAC address such as 02:00:5e:10:00:01, not '{}'",
                                     printable(text)));
    }
    return octets;
}

int parseChoice(std::string_view text, std::span<const Choice> choices) {
    for (const Choice& choice : choices) {
        if (choice.name == text) {
            return choice.value;
        }
    }
    const auto number = wholeNumber(text);
    if (!number || *number < std::numeric_limits<int>::min() ||
        *number > std::numeric_limits<int>::max()) {
        throw UsageError(
            fmt::format("expected {}, or a number, not '{}'", joinNames(choices), printable(text)));
    }
    return static_cast<int>(*number);
}

std::string formatIpv4(unsigned address) {
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 0xFF, address >> 8 & 0xFF,
                       address & 0xFF);
}

std::string formatMac(std::span<const unsigned char, 6> octets) {
    return fmt::format("{:02x}", fmt::join(octets, ":"));
}

std::string joinNames(std::span<const std::string> names) {
    std::string joined;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) {
            joined += i + 1 == names.size() ? " or " : ", ";
        }
        joined += names[i];
    }
    return joined;
}

std::string joinNames(std::span<const Choice> choices) {
    std::vector<std::string> names;
    for (const Choice& choice : choices) {
        names.emplace_back(choice.name);
    }
    return joinNames(names);
}

std::string validUtf8(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) {
            text += fmt::format("\\x{:02x}", static_cast<unsigned char>(bytes.front()));
        } else {
            text += bytes.substr(0, length);
        }
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

std::string printable(std::string_view bytes) {
    std::string text;
    const std::string valid = validUtf8(bytes);
    for (std::size_t i = 0; i < valid.size(); ++i) {
        const auto c = static_cast<unsigned char>(valid[i]);
        // U+0080 to U+009F are control characters as well, C2 80 to C2 9F in UTF-8.
        const bool secondSet = c == 0xC2 && static_cast<unsigned char>(valid[i + 1]) < 0xA0;
        if (c == '\n') {
            text += "\\n";
        } else if (c == '\t') {
            text += "\\t";
        } else if (c < 0x20 || c == 0x7F) {
            text += fmt::format("\\x{:02x}", c);
        } else if (secondSet) {
            text += fmt::format("\\xc2\\x{:02x}", static_cast<unsigned char>(valid[++i]));
        } else {
            text += valid[i];
        }
    }
    return text;
}

}  // namespace mngctl
