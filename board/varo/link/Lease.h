#pragma once

#include "board/varo/link/ipv4Prefix.h"
#include "board/varo/link/ipv6Prefix.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varo {

/// What a DHCP server has granted (RFC 2131, RFC 2132). Addresses in host byte order, 0 is none.
struct Lease {
    Ipv4Prefix prefix;
    std::uint32_t router = 0;
    std::uint32_t primaryServer = 0;  ///< name servers
    std::uint32_t secondaryServer = 0;
    std::string domain;
    std::uint32_t seconds = 0;  ///< how long it holds; 0xffffffff for good
    std::uint32_t server = 0;   ///< who has granted it
};

enum class DhcpEvent {
    deconfig,   ///< there is no lease, or no longer one
    bound,      ///< a lease was granted
    renew,      ///< the lease was extended
    nak,        ///< the server has refused
    leasefail,  ///< no server has answered
};

struct DhcpReport {
    DhcpEvent event = DhcpEvent::deconfig;
    Lease lease;                       ///< with bound and renew
    std::vector<std::string> leftOut;  ///< values that cannot be used, and why
};

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
