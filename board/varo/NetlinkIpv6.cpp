#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

#include <cstring>

#include "board/varo/Netlink.h"
#include "board/varo/netlinkObjects.h"

namespace varo {

namespace {

/// Below that of the routes that the kernel makes of router advertisements, 1024.
constexpr std::uint32_t metricByHand = 512;

NetworkAddress networkAddress(const Ipv6Address& address, unsigned length) {
    NetworkAddress result = checkedObject(
        NetworkAddress(nl_addr_build(AF_INET6, address.bytes.data(), address.bytes.size())));
    nl_addr_set_prefixlen(result.get(), static_cast<int>(length));
    return result;
}

std::optional<Ipv6Address> valueOf(const nl_addr* address) {
    Ipv6Address value;
    if (address == nullptr || nl_addr_get_len(address) != value.bytes.size())
        return std::nullopt;
    std::memcpy(value.bytes.data(), nl_addr_get_binary_addr(address), value.bytes.size());
    return value;
}

AddressObject addressObject(int index, const Ipv6Prefix& prefix) {
    AddressObject object = checkedObject(AddressObject(rtnl_addr_alloc()));
    rtnl_addr_set_ifindex(object.get(), index);
    const NetworkAddress local = networkAddress(prefix.address, prefix.length);
    rtnl_addr_set_local(object.get(), local.get());
    return object;
}

RouteObject routeObject(int index, const Ipv6Address& gateway, unsigned flags) {
    RouteObject object = checkedObject(RouteObject(rtnl_route_alloc()));
    rtnl_route_set_family(object.get(), AF_INET6);
    rtnl_route_set_table(object.get(), RT_TABLE_MAIN);
    rtnl_route_set_type(object.get(), RTN_UNICAST);
    rtnl_route_set_scope(object.get(), RT_SCOPE_UNIVERSE);
    rtnl_route_set_priority(object.get(), metricByHand);
    const NetworkAddress everything = networkAddress({}, 0);
    rtnl_route_set_dst(object.get(), everything.get());
    rtnl_nexthop* const hop = checkedObject(rtnl_route_nh_alloc());
    rtnl_route_add_nexthop(object.get(), hop);  // takes it over
    const NetworkAddress router = networkAddress(gateway, longestIpv6Prefix);
    rtnl_route_nh_set_gateway(hop, router.get());
    rtnl_route_nh_set_ifindex(hop, index);
    rtnl_route_nh_set_flags(hop, flags);
    return object;
}

/// No advertised prefix makes an address with this length (RFC 4862), and none set by hand ends.
bool isLeased(rtnl_addr* address) {
    return rtnl_addr_get_prefixlen(address) == static_cast<int>(longestIpv6Prefix) &&
           (rtnl_addr_get_flags(address) & IFA_F_PERMANENT) == 0;
}

}  // namespace

std::vector<Netlink::AddressInUse> Netlink::ipv6Addresses(int index) {
    nl_cache* filled = nullptr;
    if (const int error = rtnl_addr_alloc_cache(socket.get(), &filled); error < 0)
        failNetlink("read the addresses", error);
    const NetlinkCache cache(filled);
    std::vector<AddressInUse> result;
    for (nl_object* each = nl_cache_get_first(cache.get()); each != nullptr;
         each = nl_cache_get_next(each)) {
        // The objects of this cache are addresses; its type is erased.
        auto* const address = reinterpret_cast<rtnl_addr*>(each);
        if (rtnl_addr_get_family(address) != AF_INET6 || rtnl_addr_get_ifindex(address) != index)
            continue;
        if (const auto value = valueOf(rtnl_addr_get_local(address)))
            result.push_back({{*value, static_cast<unsigned>(rtnl_addr_get_prefixlen(address))},
                              isLeased(address)});
    }
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
    nl_cache* filled = nullptr;
    if (const int error = rtnl_route_alloc_cache(socket.get(), AF_INET6, 0, &filled); error < 0)
        failNetlink("read the routes", error);
    const NetlinkCache cache(filled);
    std::optional<Ipv6Address> best;
    std::uint32_t bestMetric = 0;
    for (nl_object* each = nl_cache_get_first(cache.get()); each != nullptr;
         each = nl_cache_get_next(each)) {
        auto* const route = reinterpret_cast<rtnl_route*>(each);
        if (!isDefaultRoute(route))
            continue;
        rtnl_nexthop* const hop = rtnl_route_nexthop_n(route, 0);
        const auto gateway = valueOf(rtnl_route_nh_get_gateway(hop));
        const std::uint32_t metric = rtnl_route_get_priority(route);
        if (gateway && rtnl_route_nh_get_ifindex(hop) == index && (!best || metric < bestMetric)) {
            best = gateway;
            bestMetric = metric;
        }
    }
    return best;
}

int Netlink::putIpv6Gateway(int index, const Ipv6Address& gateway, bool isNeighbour) {
    const RouteObject object = routeObject(index, gateway, isNeighbour ? RTNH_F_ONLINK : 0);
    nl_msg* message = nullptr;
    if (const int error =
            rtnl_route_build_add_request(object.get(), NLM_F_CREATE | NLM_F_REPLACE, &message);
        error < 0)
        failNetlink("ask for a route", error);
    return request(message);
}

int Netlink::removeIpv6Gateway(int index, const Ipv6Address& gateway) {
    const RouteObject object = routeObject(index, gateway, 0);
    // Whoever has added it.
    rtnl_route_set_protocol(object.get(), RTPROT_UNSPEC);
    nl_msg* message = nullptr;
    if (const int error = rtnl_route_build_del_request(object.get(), 0, &message); error < 0)
        failNetlink("ask for a route to be removed", error);
    return request(message);
}

}  // namespace varo
