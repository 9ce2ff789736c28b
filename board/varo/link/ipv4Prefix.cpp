#include "board/varo/link/ipv4Prefix.h"

#include "board/varo/store/Column.h"
#include "board/varo/varoCodes.h"

#include <fmt/format.h>

#include <bit>

namespace varo {

namespace {

/// Prefixes from here on have no addresses for the network and for broadcasts (RFC 3021).
constexpr unsigned pointToPoint = 31;

}  // namespace

std::string prefixText(const Ipv4Prefix& prefix) {
    return fmt::format("{}/{}", ipv4Text(prefix.address), prefix.length);
}

std::uint32_t prefixMask(unsigned length) {
    return length == 0 ? 0 : ~std::uint32_t{0} << (32 - length);
}

std::optional<unsigned> prefixLength(std::uint32_t mask) {
    const auto length = static_cast<unsigned>(std::countl_one(mask));
    if (prefixMask(length) != mask) {
        return std::nullopt;
    }
    return length;
}

bool isHostAddress(std::uint32_t address) {
    const std::uint32_t first = address >> 24;
    return first != 0 && first != 127 && first < 224;
}

Ipv4Prefix checkedPrefix(std::uint32_t address, std::uint32_t mask) {
    const auto length = prefixLength(mask);
    if (!length) {
        throw Failure(invalidValue, fmt::format("the mask {} has holes", ipv4Text(mask)));
    }
    if (*length == 0) {
        throw Failure(invalidValue, "the mask 0.0.0.0 leaves no network");
    }
    if (!isHostAddress(address)) {
        throw Failure(invalidValue,
                      fmt::format("{} is not the address of a host", ipv4Text(address)));
    }
    if (*length < pointToPoint) {
        if ((address & ~mask) == 0) {
            throw Failure(invalidValue, fmt::format("{} is the address of the network itself",
                                                    prefixText({address, *length})));
        }
        if ((address | mask) == ~std::uint32_t{0}) {
            throw Failure(invalidValue, fmt::format("{} is the broadcast address of its network",
                                                    prefixText({address, *length})));
        }
    }
    return {address, *length};
}

}  // namespace varo
