#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace fake {

/// The interface "ont0" and what the bridge keeps for it. Addresses in host byte order.
struct OntInterface {
    bool exists = true;
    std::optional<std::uint32_t> address;
    std::uint32_t netmask = 0;
    short flags = 0;
    std::array<unsigned char, 6> mac{2, 0, 0, 0, 0, 1};

    std::array<unsigned char, 6> systemMac{2, 0, 0, 0xab, 0xcd, 0xef};
    unsigned int vlanId = 4000;
};

}  // namespace fake
