#include "board/varo/link/management.h"

#include "board/varo/link/reportText.h"
#include "board/varo/store/Column.h"
#include "board/varo/varoCodes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace varo {

namespace {

/// Throws Failure with the text, which ends with the kernel's reason, unless the error number is 0.
template <class... Parts>
void checkDone(int error, fmt::format_string<const Parts&..., std::string> text,
               const Parts&... parts) {
    if (error != 0) {
        throw Failure(systemFailed,
                      fmt::format(text, parts..., std::generic_category().message(error)));
    }
}

/// The error number; 0 for that of what may have gone by itself.
int unless(int gone, int error) { return error == gone ? 0 : error; }

/// The kernel counts in clock ticks, and a lease that never ends must still be known as one.
constexpr std::uint32_t longestLifetime = 0x7fffffff;

void put(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix,
         std::uint32_t valid, std::uint32_t preferred) {
    checkDone(netlink.putIpv6Address(index, prefix, valid, preferred),
              "cannot add the address {} to {}: {}", prefixText(prefix), name);
}

}  // namespace

Netlink::Link requiredLink(Netlink& netlink, const std::string& name, int level) {
    const auto link = netlink.link(name);
    if (!link) {
        throw Failure(noSuchInterface, fmt::format("there is no interface \"{}\"", name), level);
    }
    return *link;
}

int managementIndex(Netlink& netlink, const Configuration& configuration) {
    if (configuration.managementInterface.empty()) {
        return 0;
    }
    return requiredLink(netlink, configuration.managementInterface).index;
}

void putAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                std::uint32_t lifetime) {
    checkDone(netlink.putAddress(index, prefix, lifetime), "cannot add the address {} to {}: {}",
              prefixText(prefix), name);
}

bool removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix) {
    const int error = netlink.removeAddress(index, prefix);
    checkDone(unless(EADDRNOTAVAIL, error), "cannot remove the address {} from {}: {}",
              prefixText(prefix), name);
    return error == 0;
}

void makeOnlyAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                     std::uint32_t lifetime) {
    // The new one first, for the kernel may refuse it.
    putAddress(netlink, name, index, prefix, lifetime);
    for (const Ipv4Prefix& other : netlink.addresses(index)) {
        if (other != prefix) {
            // Secondary addresses may have gone with the primary one of their network.
            removeAddress(netlink, name, index, other);
        }
    }
    // So may the new one.
    const auto left = netlink.addresses(index);
    if (std::find(left.begin(), left.end(), prefix) == left.end()) {
        putAddress(netlink, name, index, prefix, lifetime);
    }
}

void addGateway(Netlink& netlink, int index, std::uint32_t gateway) {
    const int error = netlink.addDefaultRoute(gateway, index);
    const auto isThere = [&] {
        const auto routes = netlink.defaultRoutes(index);
        return std::ranges::count(routes, gateway, &Netlink::DefaultRoute::gateway) != 0;
    };
    if (error != EEXIST || !isThere()) {
        checkDone(error, "cannot add the default route via {}: {}", ipv4Text(gateway));
    }
}

void removeGateway(Netlink& netlink, const Netlink::DefaultRoute& route) {
    checkDone(netlink.removeDefaultRoute(route), "cannot remove the default route via {}: {}",
              ipv4Text(route.gateway));
}

void makeOnlyGateway(Netlink& netlink, int index, std::uint32_t gateway) {
    bool isThere = gateway == 0;
    for (const Netlink::DefaultRoute& route : netlink.defaultRoutes(index)) {
        if (route.gateway == gateway) {
            isThere = true;
        } else {
            removeGateway(netlink, route);
        }
    }
    if (!isThere) {
        addGateway(netlink, index, gateway);
    }
}

void bringUp(Netlink& netlink, const std::string& name, int index) {
    if (const int error = netlink.bringUp(index); error != 0) {
        Library::instance().log(LOG_ERR, fmt::format("cannot take the interface {} up: {}", name,
                                                     std::generic_category().message(error)));
    }
}

Ipv4Settings kernelSettings(Netlink& netlink, int index) {
    Ipv4Settings settings{};
    if (const auto addresses = netlink.addresses(index); !addresses.empty()) {
        settings.address = addresses.front().address;
        settings.netmask = prefixMask(addresses.front().length);
    }
    if (const auto routes = netlink.defaultRoutes(index); !routes.empty()) {
        settings.gateway = routes.front().gateway;
    }
    return settings;
}

void applySettings(Netlink& netlink, const std::string& name, int index,
                   const Ipv4Settings& settings) {
    if (settings.address == 0) {
        return;
    }
    makeOnlyAddress(netlink, name, index, checkedPrefix(settings.address, settings.netmask));
    makeOnlyGateway(netlink, index, settings.gateway);
}

void putAddressByHand(Netlink& netlink, const std::string& name, int index,
                      const Ipv6Prefix& prefix) {
    for (const auto& each : netlink.ipv6Addresses(index)) {
        // The kernel has no other way to give an address another network.
        if (each.prefix.address == prefix.address && each.prefix.length != prefix.length) {
            removeAddress(netlink, name, index, each.prefix);
        }
    }
    put(netlink, name, index, prefix, Netlink::forever, Netlink::forever);
}

void removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix) {
    checkDone(unless(EADDRNOTAVAIL, netlink.removeIpv6Address(index, prefix)),
              "cannot remove the address {} from {}: {}", prefixText(prefix), name);
}

void putLeasedAddress(Netlink& netlink, const std::string& name, int index, const Lease6& lease) {
    const Ipv6Prefix prefix{lease.address, longestIpv6Prefix};
    put(netlink, name, index, prefix, std::min(lease.valid, longestLifetime),
        std::min(lease.preferred, longestLifetime));
}

void removeRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway) {
    // It goes with the interface's other routes when that is taken down.
    checkDone(unless(ESRCH, netlink.removeIpv6Gateway(index, gateway)),
              "cannot remove the default route via {} by {}: {}", ipv6Text(gateway), name);
}

void putRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway,
              bool isNeighbour) {
    checkDone(netlink.putIpv6Gateway(index, gateway, isNeighbour),
              "cannot set the default route via {} by {}: {}", ipv6Text(gateway), name);
}

void removeLeasedAddresses(Netlink& netlink, const std::string& name, int index) {
    for (const auto& each : netlink.ipv6Addresses(index)) {
        if (each.isLeased) {
            removeAddress(netlink, name, index, each.prefix);
        }
    }
}

void applySettings(Netlink& netlink, const std::string& name, int index,
                   const Ipv6Settings& settings) {
    const auto prefix = storedPrefix(settings);
    if (prefix) {
        putAddressByHand(netlink, name, index, *prefix);
    }
    const auto gateway = storedGateway(settings);
    if (gateway) {
        putRoute(netlink, name, index, *gateway, true);
    }
    if ((!prefix && settings.address[0] != '\0') || (!gateway && settings.gateway[0] != '\0')) {
        throw Failure(invalidValue, fmt::format("{}/{}, gateway {}, are not IPv6 settings",
                                                quoted(settings.address), settings.prefixLength,
                                                quoted(settings.gateway)));
    }
}

}  // namespace varo
