#pragma once

#include "board/varo/varoCodes.h"

#include <fmt/format.h>
#include <netlink/cache.h>
#include <netlink/netlink.h>
#include <netlink/route/addr.h>
#include <netlink/route/link.h>
#include <netlink/route/nexthop.h>
#include <netlink/route/route.h>

#include <functional>
#include <memory>
#include <new>
#include <span>

namespace varo {

// Owners of libnl's objects.

template <class Object, void (*release)(Object*)>
struct NetlinkRelease {
    void operator()(Object* object) const { release(object); }
};
template <class Object, void (*release)(Object*)>
using NetlinkOwned = std::unique_ptr<Object, NetlinkRelease<Object, release>>;

using NetlinkCache = NetlinkOwned<nl_cache, nl_cache_free>;
using NetlinkMessage = NetlinkOwned<nl_msg, nlmsg_free>;
using NetlinkCallbacks = NetlinkOwned<nl_cb, nl_cb_put>;
using NetworkAddress = NetlinkOwned<nl_addr, nl_addr_put>;
using LinkObject = NetlinkOwned<rtnl_link, rtnl_link_put>;
using AddressObject = NetlinkOwned<rtnl_addr, rtnl_addr_put>;
using RouteObject = NetlinkOwned<rtnl_route, rtnl_route_put>;

[[noreturn]] inline void failNetlink(const char* doing, int libraryError) {
    throw Failure(systemFailed, fmt::format("cannot {}: {}", doing, nl_geterror(libraryError)));
}

/// libnl answers null only when memory is out.
template <class Pointer>
Pointer checkedObject(Pointer pointer) {
    if (!pointer) {
        throw std::bad_alloc();
    }
    return pointer;
}

/// An address in network byte order with the length of its prefix, in bits.
NetworkAddress buildAddress(int family, std::span<const unsigned char> bytes, unsigned length);

/// An address of an interface.
AddressObject buildInterfaceAddress(int index, const NetworkAddress& local);

/// A unicast route of the main table to everywhere. Index 0 leaves the interface to the kernel.
RouteObject buildDefaultRoute(int index, const NetworkAddress& gateway);

/// Visits the addresses of an interface in the kernel's order. Throws Failure (systemFailed).
void forEachAddress(nl_sock* socket, int family, int index,
                    const std::function<void(rtnl_addr*)>& visit);

/// Visits the unicast routes of the main table to everywhere, each with its first next hop. Throws
/// Failure (systemFailed).
void forEachDefaultRoute(nl_sock* socket, int family,
                         const std::function<void(rtnl_route*, rtnl_nexthop*)>& visit);

}  // namespace varo
