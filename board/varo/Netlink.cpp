#include "board/varo/Netlink.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "board/varo/netlinkObjects.h"

namespace varo {

namespace {

NetworkAddress networkAddress(std::uint32_t address, unsigned length) {
    const std::uint32_t bytes = htonl(address);
    NetworkAddress result =
        checkedObject(NetworkAddress(nl_addr_build(AF_INET, &bytes, sizeof bytes)));
    nl_addr_set_prefixlen(result.get(), static_cast<int>(length));
    return result;
}

std::uint32_t valueOf(const nl_addr* address) {
    std::uint32_t bytes = 0;
    if (address == nullptr || nl_addr_get_len(address) != sizeof bytes)
        return 0;
    std::memcpy(&bytes, nl_addr_get_binary_addr(address), sizeof bytes);
    return ntohl(bytes);
}

AddressObject addressObject(int index, const Ipv4Prefix& prefix) {
    AddressObject object = checkedObject(AddressObject(rtnl_addr_alloc()));
    rtnl_addr_set_ifindex(object.get(), index);
    const NetworkAddress local = networkAddress(prefix.address, prefix.length);
    rtnl_addr_set_local(object.get(), local.get());
    return object;
}

RouteObject routeObject(std::uint32_t gateway, int index) {
    RouteObject object = checkedObject(RouteObject(rtnl_route_alloc()));
    rtnl_route_set_family(object.get(), AF_INET);
    rtnl_route_set_table(object.get(), RT_TABLE_MAIN);
    rtnl_route_set_type(object.get(), RTN_UNICAST);
    rtnl_route_set_scope(object.get(), RT_SCOPE_UNIVERSE);
    const NetworkAddress everything = networkAddress(0, 0);
    rtnl_route_set_dst(object.get(), everything.get());
    rtnl_nexthop* const hop = checkedObject(rtnl_route_nh_alloc());
    rtnl_route_add_nexthop(object.get(), hop);  // takes it over
    const NetworkAddress router = networkAddress(gateway, 32);
    rtnl_route_nh_set_gateway(hop, router.get());
    if (index != 0)
        rtnl_route_nh_set_ifindex(hop, index);
    return object;
}

// The library's own error numbers lose the kernel's: an unreachable network becomes a "failure".

int onError(sockaddr_nl*, nlmsgerr* answer, void* result) {
    *static_cast<int*>(result) = -answer->error;
    return NL_STOP;
}

int onAcknowledged(nl_msg*, void*) { return NL_STOP; }

}  // namespace

void Netlink::Close::operator()(nl_sock* opened) const { nl_socket_free(opened); }

Netlink::Netlink() : socket(checkedObject(nl_socket_alloc())) {
    if (const int error = nl_connect(socket.get(), NETLINK_ROUTE); error < 0)
        failNetlink("talk to the kernel about interfaces", error);
}

int Netlink::request(nl_msg* built) {
    const NetlinkMessage message(built);
    const NetlinkCallbacks callbacks = checkedObject(NetlinkCallbacks(nl_cb_alloc(NL_CB_DEFAULT)));
    int result = 0;
    nl_cb_err(callbacks.get(), NL_CB_CUSTOM, onError, &result);
    nl_cb_set(callbacks.get(), NL_CB_ACK, NL_CB_CUSTOM, onAcknowledged, nullptr);
    int error = nl_send_auto(socket.get(), message.get());
    if (error >= 0)
        error = nl_recvmsgs(socket.get(), callbacks.get());
    if (error < 0 && result == 0)
        failNetlink("talk to the kernel about interfaces", error);
    return result;
}

std::optional<Netlink::Link> Netlink::link(const std::string& name) {
    // Asked for nothing, the kernel would answer with anything.
    if (name.empty() || name.size() >= IFNAMSIZ)
        return std::nullopt;
    rtnl_link* found = nullptr;
    const int error = rtnl_link_get_kernel(socket.get(), 0, name.c_str(), &found);
    const LinkObject object(found);
    if (error == -NLE_NODEV || error == -NLE_OBJ_NOTFOUND)
        return std::nullopt;
    if (error < 0)
        failNetlink("read the interface", error);
    Link link{.index = rtnl_link_get_ifindex(object.get()),
              .isUp = (rtnl_link_get_flags(object.get()) & IFF_UP) != 0,
              .hasCarrier = (rtnl_link_get_flags(object.get()) & IFF_RUNNING) != 0};
    const nl_addr* const mac = rtnl_link_get_addr(object.get());
    if (mac != nullptr && nl_addr_get_len(mac) == link.mac.size()) {
        std::memcpy(link.mac.data(), nl_addr_get_binary_addr(mac), link.mac.size());
        link.hasMac = true;
    }
    return link;
}

int Netlink::bringUp(int index) {
    const LinkObject now = checkedObject(LinkObject(rtnl_link_alloc()));
    const LinkObject change = checkedObject(LinkObject(rtnl_link_alloc()));
    rtnl_link_set_ifindex(now.get(), index);
    rtnl_link_set_flags(change.get(), IFF_UP);
    nl_msg* message = nullptr;
    if (const int error = rtnl_link_build_change_request(now.get(), change.get(), 0, &message);
        error < 0)
        failNetlink("ask for an interface to be brought up", error);
    return request(message);
}

std::vector<Ipv4Prefix> Netlink::addresses(int index) {
    nl_cache* filled = nullptr;
    if (const int error = rtnl_addr_alloc_cache(socket.get(), &filled); error < 0)
        failNetlink("read the addresses", error);
    const NetlinkCache cache(filled);
    std::vector<Ipv4Prefix> result;
    for (nl_object* each = nl_cache_get_first(cache.get()); each != nullptr;
         each = nl_cache_get_next(each)) {
        // The objects of this cache are addresses; its type is erased.
        auto* const address = reinterpret_cast<rtnl_addr*>(each);
        if (rtnl_addr_get_family(address) == AF_INET && rtnl_addr_get_ifindex(address) == index)
            result.push_back({valueOf(rtnl_addr_get_local(address)),
                              static_cast<unsigned>(rtnl_addr_get_prefixlen(address))});
    }
    return result;
}

int Netlink::requestAddition(rtnl_addr* address) {
    nl_msg* message = nullptr;
    if (const int error =
            rtnl_addr_build_add_request(address, NLM_F_CREATE | NLM_F_REPLACE, &message);
        error < 0)
        failNetlink("ask for an address", error);
    return request(message);
}

int Netlink::requestRemoval(rtnl_addr* address) {
    nl_msg* message = nullptr;
    if (const int error = rtnl_addr_build_delete_request(address, 0, &message); error < 0)
        failNetlink("ask for an address to be removed", error);
    return request(message);
}

int Netlink::putAddress(int index, const Ipv4Prefix& prefix, std::uint32_t lifetime) {
    const AddressObject object = addressObject(index, prefix);
    const std::uint32_t mask = prefixMask(prefix.length);
    if (prefix.length < 31) {
        const NetworkAddress broadcast = networkAddress(prefix.address | ~mask, 32);
        rtnl_addr_set_broadcast(object.get(), broadcast.get());
    }
    rtnl_addr_set_valid_lifetime(object.get(), lifetime);
    rtnl_addr_set_preferred_lifetime(object.get(), lifetime);
    return requestAddition(object.get());
}

int Netlink::removeAddress(int index, const Ipv4Prefix& prefix) {
    return requestRemoval(addressObject(index, prefix).get());
}

std::vector<Netlink::DefaultRoute> Netlink::defaultRoutes(int index) {
    nl_cache* filled = nullptr;
    if (const int error = rtnl_route_alloc_cache(socket.get(), AF_INET, 0, &filled); error < 0)
        failNetlink("read the routes", error);
    const NetlinkCache cache(filled);
    std::vector<DefaultRoute> result;
    for (nl_object* each = nl_cache_get_first(cache.get()); each != nullptr;
         each = nl_cache_get_next(each)) {
        auto* const route = reinterpret_cast<rtnl_route*>(each);
        if (!isDefaultRoute(route))
            continue;
        rtnl_nexthop* const hop = rtnl_route_nexthop_n(route, 0);
        const DefaultRoute found{valueOf(rtnl_route_nh_get_gateway(hop)),
                                 rtnl_route_nh_get_ifindex(hop), rtnl_route_get_priority(route)};
        if (found.gateway != 0 && (index == 0 || found.interface == index))
            result.push_back(found);
    }
    std::stable_sort(
        result.begin(), result.end(),
        [](const DefaultRoute& one, const DefaultRoute& two) { return one.metric < two.metric; });
    return result;
}

int Netlink::addDefaultRoute(std::uint32_t gateway, int index) {
    const RouteObject object = routeObject(gateway, index);
    nl_msg* message = nullptr;
    if (const int error =
            rtnl_route_build_add_request(object.get(), NLM_F_CREATE | NLM_F_EXCL, &message);
        error < 0)
        failNetlink("ask for a route", error);
    return request(message);
}

int Netlink::removeDefaultRoute(const DefaultRoute& route) {
    const RouteObject object = routeObject(route.gateway, route.interface);
    // Whoever has added it.
    rtnl_route_set_protocol(object.get(), RTPROT_UNSPEC);
    rtnl_route_set_priority(object.get(), route.metric);
    nl_msg* message = nullptr;
    if (const int error = rtnl_route_build_del_request(object.get(), 0, &message); error < 0)
        failNetlink("ask for a route to be removed", error);
    return request(message);
}

}  // namespace varo
