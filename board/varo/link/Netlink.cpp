#include "board/varo/link/Netlink.h"

#include "board/varo/link/netlinkObjects.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>

namespace varo {

namespace {

NetworkAddress networkAddress(std::uint32_t address, unsigned length) {
    const auto bytes = std::bit_cast<std::array<unsigned char, 4>>(htonl(address));
    return buildAddress(AF_INET, bytes, length);
}

std::uint32_t valueOf(const nl_addr* address) {
    std::uint32_t bytes = 0;
    if (address == nullptr || nl_addr_get_len(address) != sizeof bytes) {
        return 0;
    }
    std::memcpy(&bytes, nl_addr_get_binary_addr(address), sizeof bytes);
    return ntohl(bytes);
}

AddressObject addressObject(int index, const Ipv4Prefix& prefix) {
    return buildInterfaceAddress(index, networkAddress(prefix.address, prefix.length));
}

RouteObject routeObject(std::uint32_t gateway, int index) {
    return buildDefaultRoute(index, networkAddress(gateway, 32));
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
    if (const int error = nl_connect(socket.get(), NETLINK_ROUTE); error < 0) {
        failNetlink("talk to the kernel about interfaces", error);
    }
}

int Netlink::request(const char* doing, const std::function<int(nl_msg**)>& build) {
    nl_msg* built = nullptr;
    if (const int error = build(&built); error < 0) {
        failNetlink(doing, error);
    }
    const NetlinkMessage message(built);
    const NetlinkCallbacks callbacks = checkedObject(NetlinkCallbacks(nl_cb_alloc(NL_CB_DEFAULT)));
    int result = 0;
    nl_cb_err(callbacks.get(), NL_CB_CUSTOM, onError, &result);
    nl_cb_set(callbacks.get(), NL_CB_ACK, NL_CB_CUSTOM, onAcknowledged, nullptr);
    int error = nl_send_auto(socket.get(), message.get());
    if (error >= 0) {
        error = nl_recvmsgs(socket.get(), callbacks.get());
    }
    if (error < 0 && result == 0) {
        failNetlink("talk to the kernel about interfaces", error);
    }
    return result;
}

std::optional<Netlink::Link> Netlink::link(const std::string& name) {
    // Asked for nothing, the kernel would answer with anything.
    if (name.empty() || name.size() >= IFNAMSIZ) {
        return std::nullopt;
    }
    rtnl_link* found = nullptr;
    const int error = rtnl_link_get_kernel(socket.get(), 0, name.c_str(), &found);
    const LinkObject object(found);
    if (error == -NLE_NODEV || error == -NLE_OBJ_NOTFOUND) {
        return std::nullopt;
    }
    if (error < 0) {
        failNetlink("read the interface", error);
    }
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
    return request("ask for an interface to be brought up", [&](nl_msg** built) {
        return rtnl_link_build_change_request(now.get(), change.get(), 0, built);
    });
}

std::vector<Ipv4Prefix> Netlink::addresses(int index) {
    std::vector<Ipv4Prefix> result;
    forEachAddress(socket.get(), AF_INET, index, [&](rtnl_addr* address) {
        result.push_back({valueOf(rtnl_addr_get_local(address)),
                          static_cast<unsigned>(rtnl_addr_get_prefixlen(address))});
    });
    return result;
}

int Netlink::requestAddition(rtnl_addr* address) {
    return request("ask for an address", [&](nl_msg** built) {
        return rtnl_addr_build_add_request(address, NLM_F_CREATE | NLM_F_REPLACE, built);
    });
}

int Netlink::requestRemoval(rtnl_addr* address) {
    return request("ask for an address to be removed", [&](nl_msg** built) {
        return rtnl_addr_build_delete_request(address, 0, built);
    });
}

int Netlink::requestAddition(rtnl_route* route, int flags) {
    return request("ask for a route", [&](nl_msg** built) {
        return rtnl_route_build_add_request(route, NLM_F_CREATE | flags, built);
    });
}

int Netlink::requestRemoval(rtnl_route* route) {
    // Whoever has added it.
    rtnl_route_set_protocol(route, RTPROT_UNSPEC);
    return request("ask for a route to be removed",
                   [&](nl_msg** built) { return rtnl_route_build_del_request(route, 0, built); });
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
    std::vector<DefaultRoute> result;
    forEachDefaultRoute(socket.get(), AF_INET, [&](rtnl_route* route, rtnl_nexthop* hop) {
        const DefaultRoute found{valueOf(rtnl_route_nh_get_gateway(hop)),
                                 rtnl_route_nh_get_ifindex(hop), rtnl_route_get_priority(route)};
        if (found.gateway != 0 && (index == 0 || found.interface == index)) {
            result.push_back(found);
        }
    });
    std::stable_sort(
        result.begin(), result.end(),
        [](const DefaultRoute& one, const DefaultRoute& two) { return one.metric < two.metric; });
    return result;
}

int Netlink::addDefaultRoute(std::uint32_t gateway, int index) {
    return requestAddition(routeObject(gateway, index).get(), NLM_F_EXCL);
}

int Netlink::removeDefaultRoute(const DefaultRoute& route) {
    const RouteObject object = routeObject(route.gateway, route.interface);
    rtnl_route_set_priority(object.get(), route.metric);
    return requestRemoval(object.get());
}

}  // namespace varo
