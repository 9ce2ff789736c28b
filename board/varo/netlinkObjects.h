#pragma once

#include <fmt/format.h>
#include <netlink/cache.h>
#include <netlink/netlink.h>
#include <netlink/route/addr.h>
#include <netlink/route/link.h>
#include <netlink/route/nexthop.h>
#include <netlink/route/route.h>

#include <memory>
#include <new>

#include "board/varo/Failure.h"

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
    if (!pointer)
        throw std::bad_alloc();
    return pointer;
}

/// True for a unicast route of the main table to everywhere, by way of at least one next hop.
inline bool isDefaultRoute(rtnl_route* route) {
    const nl_addr* const destination = rtnl_route_get_dst(route);
    return rtnl_route_get_table(route) == RT_TABLE_MAIN &&
           rtnl_route_get_type(route) == RTN_UNICAST && rtnl_route_get_nnexthops(route) > 0 &&
           (destination == nullptr || nl_addr_get_prefixlen(destination) == 0);
}

}  // namespace varo
