#include "board/varo/link/addressing.h"

#include "board/varo/settings/groups.h"
#include "board/varo/store/Column.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace varo {

namespace {

std::string reason(int error) { return std::generic_category().message(error); }

void putAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                std::uint32_t lifetime) {
    if (const int error = netlink.putAddress(index, prefix, lifetime); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot add the address {} to {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

/// Stores what a change by hand has made true. While the DHCP client is on, it is the client's
/// lease that is in force after a restart.
void storeAddress(Library::Change& change, Netlink& netlink, int index) {
    auto session = change.store().session();
    if (session.read(dhcpGroup()).dhcpEnabled == 0) {
        session.write(ipv4Group(), singleRow, kernelSettings(netlink, index));
    }
}

bool isManagementInterface(const Library::Change& change, const std::string& name) {
    return !name.empty() && name == change.configuration().managementInterface;
}

}  // namespace

Netlink::Link requiredLink(Netlink& netlink, const std::string& name, int level) {
    const auto link = netlink.link(name);
    if (!link) {
        throw Failure(noSuchInterface, fmt::format("there is no interface \"{}\"", name), level);
    }
    return *link;
}

std::string interfaceName(const varoLib_s_interface& record) {
    const std::size_t length = strnlen(record.name, sizeof record.name);
    if (length == sizeof record.name) {
        throw Failure(invalidValue, "the interface name is not terminated within its field");
    }
    return {record.name, length};
}

int managementIndex(Netlink& netlink, const Configuration& configuration) {
    if (configuration.managementInterface.empty()) {
        return 0;
    }
    return requiredLink(netlink, configuration.managementInterface).index;
}

void makeOnlyAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                     std::uint32_t lifetime) {
    // The new one first, for the kernel may refuse it.
    putAddress(netlink, name, index, prefix, lifetime);
    for (const Ipv4Prefix& other : netlink.addresses(index)) {
        if (other == prefix) {
            continue;
        }
        // Secondary addresses may have gone with the primary one of their network.
        const int error = netlink.removeAddress(index, other);
        if (error != 0 && error != EADDRNOTAVAIL) {
            throw Failure(systemFailed, fmt::format("cannot remove the address {} from {}: {}",
                                                    prefixText(other), name, reason(error)));
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

/// On the management interface the address becomes the only one, and is stored. Other interfaces
/// get it beside those that they have, and nothing is stored.
int varoAttachIpToIntf(varoLib_s_interface* interface) {
    return varo::answer(__func__, [&] {
        const varoLib_s_interface& record = varo::required(interface);
        const std::string name = varo::interfaceName(record);
        const varo::Ipv4Prefix prefix = varo::checkedPrefix(record.ipAddr, record.netmask);
        auto change = varo::Library::instance().change();
        varo::Netlink netlink;
        const int index = varo::requiredLink(netlink, name).index;
        if (varo::isManagementInterface(change, name)) {
            varo::makeOnlyAddress(netlink, name, index, prefix);
            varo::storeAddress(change, netlink, index);
        } else {
            varo::putAddress(netlink, name, index, prefix, varo::Netlink::forever);
        }
    });
}

int varoDettachIpFromIntf(varoLib_s_interface* interface) {
    return varo::answer(__func__, [&] {
        const varoLib_s_interface& record = varo::required(interface);
        const std::string name = varo::interfaceName(record);
        const varo::Ipv4Prefix prefix = varo::checkedPrefix(record.ipAddr, record.netmask);
        auto change = varo::Library::instance().change();
        varo::Netlink netlink;
        const int index = varo::requiredLink(netlink, name).index;
        const int error = netlink.removeAddress(index, prefix);
        if (error == EADDRNOTAVAIL) {
            throw varo::Failure(varo::notThere, fmt::format("{} has no address {}", name,
                                                            varo::prefixText(prefix)));
        }
        if (error != 0) {
            throw varo::Failure(varo::systemFailed,
                                fmt::format("cannot remove the address {} from {}: {}",
                                            varo::prefixText(prefix), name, varo::reason(error)));
        }
        if (varo::isManagementInterface(change, name)) {
            varo::storeAddress(change, netlink, index);
        }
    });
}

int varoGetIfcMAC(const char* name, unsigned char* mac) {
    return varo::answer(__func__, [&] {
        const std::string wanted = &varo::required(name);
        unsigned char* const bytes = &varo::required(mac);
        varo::Netlink netlink;
        const auto link = varo::requiredLink(netlink, wanted, LOG_DEBUG);
        if (!link.hasMac) {
            throw varo::Failure(varo::notThere,
                                fmt::format("the interface {} has no MAC address", wanted));
        }
        std::memcpy(bytes, link.mac.data(), link.mac.size());
    });
}
