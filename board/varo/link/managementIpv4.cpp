#include "board/varo/link/managementIpv4.h"

#include "board/varo/store/Column.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace varo {

namespace {

std::string reason(int error) { return std::generic_category().message(error); }

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
    if (const int error = netlink.putAddress(index, prefix, lifetime); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot add the address {} to {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

bool removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix) {
    const int error = netlink.removeAddress(index, prefix);
    if (error != 0 && error != EADDRNOTAVAIL) {
        throw Failure(systemFailed, fmt::format("cannot remove the address {} from {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
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
    if (error == 0) {
        return;
    }
    const auto routes = netlink.defaultRoutes(index);
    const auto isSame = [&](const auto& route) { return route.gateway == gateway; };
    if (error == EEXIST && std::any_of(routes.begin(), routes.end(), isSame)) {
        return;
    }
    throw Failure(systemFailed, fmt::format("cannot add the default route via {}: {}",
                                            ipv4Text(gateway), reason(error)));
}

void removeGateway(Netlink& netlink, const Netlink::DefaultRoute& route) {
    if (const int error = netlink.removeDefaultRoute(route); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot remove the default route via {}: {}",
                                                ipv4Text(route.gateway), reason(error)));
    }
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
        Library::instance().log(
            LOG_ERR, fmt::format("cannot take the interface {} up: {}", name, reason(error)));
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

}  // namespace varo
