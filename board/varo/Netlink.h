#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "board/varo/ipv4.h"

struct nl_sock;
struct nl_msg;

namespace varo {

/// One conversation with the kernel about interfaces, IPv4 addresses and routes (rtnetlink(7)), in
/// the network namespace of the thread that opens it. For one thread at a time.
///
/// Reads throw Failure (systemFailed). Changes return 0 or the kernel's error number.
class Netlink {
public:
    Netlink();

    struct Link {
        int index = 0;
        bool isUp = false;  ///< administratively
        std::array<unsigned char, 6> mac{};
        bool hasMac = false;  ///< an Ethernet address
    };
    /// Nothing when there is no such interface.
    std::optional<Link> link(const std::string& name);
    int bringUp(int index);

    /// Lifetime of an address that stays until it is removed.
    static constexpr std::uint32_t forever = 0xffffffff;

    /// The addresses of an interface, its primary one first.
    std::vector<Ipv4Prefix> addresses(int index);
    /// Adds the address, or gives it this lifetime when it is there already. The kernel removes it
    /// when the lifetime, in seconds, has passed.
    int putAddress(int index, const Ipv4Prefix& prefix, std::uint32_t lifetime);
    int removeAddress(int index, const Ipv4Prefix& prefix);

    /// A default route of the main table.
    struct DefaultRoute {
        std::uint32_t gateway = 0;
        int interface = 0;  ///< index
        std::uint32_t metric = 0;
    };
    /// All default routes with a gateway that go through the interface, or through any with index
    /// 0; the one that the kernel prefers first.
    std::vector<DefaultRoute> defaultRoutes(int index);
    /// Index 0 lets the kernel find the interface.
    int addDefaultRoute(std::uint32_t gateway, int index);
    int removeDefaultRoute(const DefaultRoute& route);

private:
    struct Close {
        void operator()(nl_sock* socket) const;
    };
    std::unique_ptr<nl_sock, Close> socket;

    int request(nl_msg* message);
};

}  // namespace varo
