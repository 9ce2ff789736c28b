#pragma once

#include "board/varo/link/ipv4Prefix.h"
#include "board/varo/link/ipv6Prefix.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct nl_sock;
struct nl_msg;
struct rtnl_addr;
struct rtnl_route;

namespace varo {

/// One conversation with the kernel about interfaces, addresses and routes (rtnetlink(7)), in the
/// network namespace of the thread that opens it. For one thread at a time.
///
/// Reads throw Failure (systemFailed). Changes return 0 or the kernel's error number.
class Netlink {
public:
    Netlink();

    struct Link {
        int index = 0;
        bool isUp = false;        ///< administratively
        bool hasCarrier = false;  ///< and packets pass
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

    // IPv6.

    struct AddressInUse {
        Ipv6Prefix prefix;
        /// Granted by a DHCPv6 server: it ends by itself, and says nothing of its network, unlike
        /// those that the kernel makes of what routers advertise.
        bool isLeased = false;
    };
    /// The addresses of an interface in the kernel's order.
    std::vector<AddressInUse> ipv6Addresses(int index);
    /// Adds the address, or gives it these lifetimes, in seconds, when it is there already; its
    /// prefix length then stays as it is.
    int putIpv6Address(int index, const Ipv6Prefix& prefix, std::uint32_t valid,
                       std::uint32_t preferred);
    int removeIpv6Address(int index, const Ipv6Prefix& prefix);

    /// Gateway of the default route by way of the interface that the kernel prefers.
    std::optional<Ipv6Address> ipv6Gateway(int index);
    /// The route of gateways that are set by hand, which goes before those that routers advertise.
    /// One by way of another gateway is replaced. Unless `isNeighbour` says that it is one, the
    /// kernel refuses a gateway that is in no network of the interface.
    int putIpv6Gateway(int index, const Ipv6Address& gateway, bool isNeighbour);
    int removeIpv6Gateway(int index, const Ipv6Address& gateway);

private:
    struct Close {
        void operator()(nl_sock* socket) const;
    };
    std::unique_ptr<nl_sock, Close> socket;

    /// Sends what `build` makes and returns the kernel's error number. Throws as the others.
    int request(const char* doing, const std::function<int(nl_msg**)>& build);
    int requestAddition(rtnl_addr* address);
    int requestRemoval(rtnl_addr* address);
    int requestAddition(rtnl_route* route, int flags);
    int requestRemoval(rtnl_route* route);
};

}  // namespace varo
