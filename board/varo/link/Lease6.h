#pragma once

#include "board/varo/link/ipv6Prefix.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varo {

/// What a DHCPv6 server has granted (RFC 8415, RFC 3646).
struct Lease6 {
    Ipv6Address address;
    std::uint32_t valid = 0;      ///< seconds; 0xffffffff for good
    std::uint32_t preferred = 0;  ///< seconds, at most those
    std::string primaryServer;    ///< name servers, canonical; empty for none
    std::string secondaryServer;
    std::string domain;
};

enum class Dhcp6Event {
    granted,  ///< an address was granted, or granted for longer
    ended,    ///< the lease has ended
    other,    ///< nothing that changes anything
};

struct Dhcp6Report {
    Dhcp6Event event = Dhcp6Event::other;
    Lease6 lease;                        ///< when granted
    std::optional<Ipv6Address> ended{};  ///< the address that is no longer granted
    std::vector<std::string> leftOut{};  ///< values that cannot be used, and why
};

}  // namespace varo
