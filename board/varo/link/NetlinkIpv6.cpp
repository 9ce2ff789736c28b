#include "board/varo/link/Netlink.h"
#include "board/varo/link/netlinkObjects.h"

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

#include <cstring>

namespace varo {

namespace {

/// Below that of the routes that the kernel makes of router advertisements, 1024.
constexpr std::uint32_t metricByHand = 512;

NetworkAddress networkAddress(const Ipv6Address& address, unsigned length) {
    return buildAddress(AF_INET6, address.bytes, length);
}

std::optional<Ipv6Address> valueOf(const nl_addr* address) {
    Ipv6Address value;
    if (address == nullptr || nl_addr_get_len(address) != value.bytes.size()) {
        return std::nullopt;
    }
    std::memcpy(value.bytes.data(), nl_addr_get_binary_addr(address), value.bytes.size());
    return value;
}

AddressObject addressObject(int index, const Ipv6Prefix& prefix) {
    return buildInterfaceAddress(index, networkAddress(prefix.address, prefix.length));
}

RouteObject routeByHand(int index, const Ipv6Address& gateway) {
    RouteObject object = buildDefaultRoute(index, networkAddress(gateway, longestIpv6Prefix));
    rtnl_route_set_priority(object.get(), metricByHand);
    return object;
}

/// No advertised prefix makes an address with this length (RFC 4862), and none set by hand ends.
bool isLeased(rtnl_addr* address) {
    return rtnl_addr_get_prefixlen(address) == static_cast<int>(longestIpv6Prefix) &&
           (rtnl_addr_get_flags(address) & IFA_F_PERMANENT) == 0;
}

}  // namespace

std::vector<Netlink::AddressInUse> Netlink::ipv6Addresses(int index) {
    std::vector<AddressInUse> result;
    forEachAddress(socket.get(), AF_INET6, index, [&](rtnl_addr* address) {
        if (const auto value = valueOf(rtnl_addr_get_local(address))) {
            result.push_back({{*value, static_cast<unsigned>(rtnl_addr_get_prefixlen(address))},
                              isLeased(address)});
        }
    });
    return result;
}

int Netlink::putIpv6Address(int index, const Ipv6Prefix& prefix, std::uint32_t valid,
                            std::uint32_t preferred) {
    const AddressObject object = addressObject(index, prefix);
    rtnl_addr_set_valid_lifetime(object.get(), valid);
    rtnl_addr_set_preferred_lifetime(object.get(), preferred);
    return requestAddition(object.get());
}

int Netlink::removeIpv6Address(int index, const Ipv6Prefix& prefix) {
    return requestRemoval(addressObject(index, prefix).get());
}

std::optional<Ipv6Address> Netlink::ipv6Gateway(int index) {
    std::optional<Ipv6Address> best;
    std::uint32_t bestMetric = 0;
    forEachDefaultRoute(socket.get(), AF_INET6, [&](rtnl_route* route, rtnl_nexthop* hop) {
        const auto gateway = valueOf(rtnl_route_nh_get_gateway(hop));
        const std::uint32_t metric = rtnl_route_get_priority(route);
        if (gateway && rtnl_route_nh_get_ifindex(hop) == index && (!best || metric < bestMetric)) {
            best = gateway;
            bestMetric = metric;
        }
    });
    return best;
}

int Netlink::putIpv6Gateway(int index, const Ipv6Address& gateway, bool isNeighbour) {
    const RouteObject object = routeByHand(index, gateway);
    if (isNeighbour) {
        rtnl_route_nh_set_flags(rtnl_route_nexthop_n(object.get(), 0), RTNH_F_ONLINK);
    }
    return requestAddition(object.get(), NLM_F_REPLACE);
}

int Netlink::removeIpv6Gateway(int index, const Ipv6Address& gateway) {
    return requestRemoval(routeByHand(index, gateway).get());
}

}  // namespace varo
