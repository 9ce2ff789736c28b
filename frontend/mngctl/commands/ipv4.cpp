#include "mngctl/commands/ipv4.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>
#include <netinet/in.h>

#include <algorithm>
#include <bit>
#include <charconv>

namespace mngctl {

namespace {

bool isDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<unsigned> lengthOf(std::string_view text) {
    unsigned length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc{} || end != text.data() + text.size() || length > prefixLengthMaximum) {
        return std::nullopt;
    }
    return length;
}

/// Why the address cannot be that of a host, in any network; empty if it can.
std::string_view unusableAsHost(unsigned address) {
    if (address == INADDR_ANY) {
        return "the unspecified address";
    }
    if (address == INADDR_BROADCAST) {
        return "the broadcast address";
    }
    if (address >> 24 == 0) {
        return "an address of 0.0.0.0/8, which stands for no host";
    }
    if (address >> 24 == IN_LOOPBACKNET) {
        return "a loopback address";
    }
    if (IN_MULTICAST(address)) {
        return "a multicast address";
    }
    if (IN_BADCLASS(address)) {
        return "a reserved address";
    }
    return {};
}

}  // namespace

unsigned maskOfLength(unsigned length) {
    return length == 0 ? 0 : ~0U << (prefixLengthMaximum - length);
}

std::optional<unsigned> prefixLength(unsigned mask) {
    const auto length = static_cast<unsigned>(std::countl_one(mask));
    return maskOfLength(length) == mask ? std::optional(length) : std::nullopt;
}

unsigned parseMask(std::string_view text) {
    if (isDigits(text)) {
        if (const auto length = lengthOf(text)) {
            return maskOfLength(*length);
        }
        throw UsageError(
            fmt::format("expected a prefix length from 0 to 32, not '{}'", printable(text)));
    }
    unsigned mask = 0;
    try {
        mask = parseIpv4(text);
    } catch (const UsageError&) {
        throw UsageError(fmt::format(
            "expected a prefix length from 0 to 32 or a mask such as 255.255.255.0, not '{}'",
            printable(text)));
    }
    if (!prefixLength(mask)) {
        throw UsageError(fmt::format(
            "'{}' is no mask: expected ones followed by zeros, such as 255.255.255.0", text));
    }
    return mask;
}

Ipv4Network parseNetwork(std::string_view text) {
    const std::size_t slash = text.find('/');
    const unsigned address = parseIpv4(text.substr(0, slash));
    if (slash == std::string_view::npos) {
        return {address, maskOfLength(prefixLengthMaximum)};
    }
    return {address, parseMask(text.substr(slash + 1))};
}

Ipv4Network parseInterfaceAddress(std::string_view address, std::string_view mask) {
    const std::size_t slash = address.find('/');
    const bool hasPrefix = slash != std::string_view::npos;
    const std::string_view host = address.substr(0, slash);
    const unsigned value = parseHostAddress(host);
    if (!hasPrefix && mask.empty()) {
        throw UsageError(fmt::format(
            "'{}' lacks its network: expected ADDRESS/PREFIX such as {}/24, or ADDRESS MASK such "
            "as {} 255.255.255.0",
            address, address, address));
    }
    if (hasPrefix && !mask.empty()) {
        throw UsageError(fmt::format("the network is given twice, as '{}' and as '{}'",
                                     printable(address.substr(slash)), printable(mask)));
    }
    const std::string_view prefix = hasPrefix ? address.substr(slash + 1) : mask;
    const Ipv4Network network{value, parseMask(prefix)};
    if (network.mask == 0) {
        throw UsageError(fmt::format(
            "'{}' puts every address into the board's own network: expected a prefix length from "
            "1 to 32 or a mask such as 255.255.255.0",
            prefix));
    }
    checkIsHostIn(network, value, host);
    return network;
}

unsigned parseHostAddress(std::string_view text) {
    const unsigned address = parseIpv4(text);
    if (const auto reason = unusableAsHost(address); !reason.empty()) {
        throw UsageError(fmt::format(
            "'{}' is {}: expected the address of a host such as 192.0.2.10", text, reason));
    }
    return address;
}

void checkIsHostIn(const Ipv4Network& network, unsigned address, std::string_view text) {
    const unsigned first = network.first();
    const unsigned last = network.last();
    if (last - first < 2 || (address != first && address != last)) {
        return;
    }
    throw UsageError(fmt::format(
        "'{}' is the {} address of {}: expected that of a host in it, {} to {}", text,
        address == first ? "network" : "broadcast", formatNetwork(network.withoutHostBits()),
        formatIpv4(first + 1), formatIpv4(last - 1)));
}

std::string formatNetwork(const Ipv4Network& network) {
    const auto length = prefixLength(network.mask);
    return length
               ? fmt::format("{}/{}", formatIpv4(network.address), *length)
               : fmt::format("{} mask {}", formatIpv4(network.address), formatIpv4(network.mask));
}

}  // namespace mngctl
