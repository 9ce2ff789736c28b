#pragma once

#include "board/varo/link/reportText.h"
#include "board/varo/settings/ipv6.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
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

/// Reads the message of a DHCPv6 client's event, with the names that ISC's dhclient-script(8) gets;
/// see dhcpEvent.h for its form. As with DHCP, an address that no host can have spoils the report,
/// bad values beside it are left out. Throws BadReport.
Dhcp6Report readReport6(std::string_view message);

}  // namespace varo
