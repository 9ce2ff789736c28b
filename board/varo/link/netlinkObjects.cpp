#include "board/varo/link/netlinkObjects.h"

namespace varo {

namespace {

/// True for a unicast route of the main table to everywhere, by way of at least one next hop.
bool isDefaultRoute(rtnl_route* route) {
    const nl_addr* const destination = rtnl_route_get_dst(route);
    return rtnl_route_get_table(route) == RT_TABLE_MAIN &&
           rtnl_route_get_type(route) == RTN_UNICAST && rtnl_route_get_nnexthops(route) > 0 &&
           (destination == nullptr || nl_addr_get_prefixlen(destination) == 0);
}

/// The objects of a cache are of one kind; their type is erased.
template <class Object, class Visit>
void forEachObject(nl_cache* filled, const Visit& visit) {
    const NetlinkCache cache(filled);
    for (nl_object* each = nl_cache_get_first(filled); each != nullptr;
         each = nl_cache_get_next(each)) {
        visit(reinterpret_cast<Object*>(each));
    }
}

}  // namespace

NetworkAddress buildAddress(int family, std::span<const unsigned char> bytes, unsigned length) {
    NetworkAddress result =
        checkedObject(NetworkAddress(nl_addr_build(family, bytes.data(), bytes.size())));
    nl_addr_set_prefixlen(result.get(), static_cast<int>(length));
    return result;
}

AddressObject buildInterfaceAddress(int index, const NetworkAddress& local) {
    AddressObject object = checkedObject(AddressObject(rtnl_addr_alloc()));
    rtnl_addr_set_ifindex(object.get(), index);
    rtnl_addr_set_local(object.get(), local.get());
    return object;
}

RouteObject buildDefaultRoute(int index, const NetworkAddress& gateway) {
    const int family = nl_addr_get_family(gateway.get());
    RouteObject object = checkedObject(RouteObject(rtnl_route_alloc()));
    rtnl_route_set_family(object.get(), static_cast<std::uint8_t>(family));
    rtnl_route_set_table(object.get(), RT_TABLE_MAIN);
    rtnl_route_set_type(object.get(), RTN_UNICAST);
    rtnl_route_set_scope(object.get(), RT_SCOPE_UNIVERSE);
    constexpr unsigned char zeros[16] = {};
    const NetworkAddress everything =
        buildAddress(family, std::span(zeros).first(nl_addr_get_len(gateway.get())), 0);
    rtnl_route_set_dst(object.get(), everything.get());
    rtnl_nexthop* const hop = checkedObject(rtnl_route_nh_alloc());
    rtnl_route_add_nexthop(object.get(), hop);  // takes it over
    rtnl_route_nh_set_gateway(hop, gateway.get());
    if (index != 0) {
        rtnl_route_nh_set_ifindex(hop, index);
    }
    return object;
}

void forEachAddress(nl_sock* socket, int family, int index,
                    const std::function<void(rtnl_addr*)>& visit) {
    nl_cache* filled = nullptr;
    if (const int error = rtnl_addr_alloc_cache(socket, &filled); error < 0) {
        failNetlink("read the addresses", error);
    }
    forEachObject<rtnl_addr>(filled, [&](rtnl_addr* address) {
        if (rtnl_addr_get_family(address) == family && rtnl_addr_get_ifindex(address) == index) {
            visit(address);
        }
    });
}

void forEachDefaultRoute(nl_sock* socket, int family,
                         const std::function<void(rtnl_route*, rtnl_nexthop*)>& visit) {
    nl_cache* filled = nullptr;
    if (const int error = rtnl_route_alloc_cache(socket, family, 0, &filled); error < 0) {
        failNetlink("read the routes", error);
    }
    forEachObject<rtnl_route>(filled, [&](rtnl_route* route) {
        if (isDefaultRoute(route)) {
            visit(route, rtnl_route_nexthop_n(route, 0));
        }
    });
}

}  // namespace varo
