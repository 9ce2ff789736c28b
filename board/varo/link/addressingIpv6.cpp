#include "board/varo/link/addressingIpv6.h"

#include "board/varo/link/addressing.h"
#include "board/varo/link/reportText.h"
#include "board/varo/settings/checks.h"
#include "board/varo/settings/groups.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

namespace varo {

namespace {

/// Between two addresses of a list.
constexpr char separator = ' ';

/// The kernel counts in clock ticks, and a lease that never ends must still be known as one.
constexpr std::uint32_t longestLifetime = 0x7fffffff;

std::string reason(int error) { return std::generic_category().message(error); }

/// The interface to act on; nothing where none is configured, and settings are kept only. Throws
/// Failure (noSuchInterface).
std::optional<Netlink::Link> managementLink(Netlink& netlink, const Configuration& configuration) {
    const std::string& name = configuration.managementInterface;
    if (name.empty()) {
        return std::nullopt;
    }
    return requiredLink(netlink, name);
}

void removeRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway) {
    const int error = netlink.removeIpv6Gateway(index, gateway);
    // It goes with the interface's other routes when that is taken down.
    if (error != 0 && error != ESRCH) {
        throw Failure(systemFailed, fmt::format("cannot remove the default route via {} by {}: {}",
                                                ipv6Text(gateway), name, reason(error)));
    }
}

void putRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway,
              bool isNeighbour) {
    if (const int error = netlink.putIpv6Gateway(index, gateway, isNeighbour); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot set the default route via {} by {}: {}",
                                                ipv6Text(gateway), name, reason(error)));
    }
}

void checkIsAnother(Netlink& netlink, int index, const Ipv6Address& gateway) {
    for (const auto& address : netlink.ipv6Addresses(index)) {
        if (address.prefix.address == gateway) {
            throw Failure(invalidValue, fmt::format("the gateway {} is the board's own address",
                                                    ipv6Text(gateway)));
        }
    }
}

/// The addresses as one text; those that do not fit are counted.
std::string listText(const std::vector<Netlink::AddressInUse>& addresses, std::size_t longest,
                     std::size_t& leftOut) {
    std::string text;
    for (const auto& address : addresses) {
        const std::string next = prefixText(address.prefix);
        if (text.size() + 1 + next.size() > longest) {
            ++leftOut;
            continue;
        }
        if (!text.empty()) {
            text += separator;
        }
        text += next;
    }
    return text;
}

/// What the kernel has; an interface that is not there has nothing.
void readInForce(varoLib_s_ipv6& record, const Configuration& configuration,
                 const Ipv6Settings& settings) {
    Netlink netlink;
    const auto link = netlink.link(configuration.managementInterface);
    if (!link) {
        return;
    }
    const auto addresses = netlink.ipv6Addresses(link->index);
    const auto byHand = storedPrefix(settings);
    auto configured = std::find_if(addresses.begin(), addresses.end(), [&](const auto& each) {
        return byHand && each.prefix == *byHand;
    });
    if (configured == addresses.end()) {
        configured = std::find_if(addresses.begin(), addresses.end(),
                                  [](const auto& each) { return each.isLeased; });
    }
    if (configured != addresses.end()) {
        copyInto(record.ipv6Addr, ipv6Text(configured->prefix.address));
        record.prefixLen = configured->prefix.length;
    }
    std::size_t leftOut = 0;
    copyInto(record.ipv6AddrList, listText(addresses, sizeof record.ipv6AddrList - 1, leftOut));
    if (leftOut != 0) {
        Library::instance().log(
            LOG_WARNING, fmt::format("{} of {} IPv6 addresses have no room in the list", leftOut,
                                     addresses.size()));
    }
    if (const auto gateway = netlink.ipv6Gateway(link->index)) {
        copyInto(record.ipv6Gw, ipv6Text(*gateway));
    }
}

/// What is stored, where there is no interface to read from.
void readStored(varoLib_s_ipv6& record, const Ipv6Settings& settings) {
    if (const auto prefix = storedPrefix(settings)) {
        copyInto(record.ipv6Addr, ipv6Text(prefix->address));
        record.prefixLen = prefix->length;
        copyInto(record.ipv6AddrList, prefixText(*prefix));
    }
    if (const auto gateway = storedGateway(settings)) {
        copyInto(record.ipv6Gw, ipv6Text(*gateway));
    }
}

}  // namespace

void putAddressByHand(Netlink& netlink, const std::string& name, int index,
                      const Ipv6Prefix& prefix) {
    for (const auto& each : netlink.ipv6Addresses(index)) {
        // The kernel has no other way to give an address another network.
        if (each.prefix.address == prefix.address && each.prefix.length != prefix.length) {
            removeAddress(netlink, name, index, each.prefix);
        }
    }
    const int error = netlink.putIpv6Address(index, prefix, Netlink::forever, Netlink::forever);
    if (error != 0) {
        throw Failure(systemFailed, fmt::format("cannot add the address {} to {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

void removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix) {
    const int error = netlink.removeIpv6Address(index, prefix);
    if (error != 0 && error != EADDRNOTAVAIL) {
        throw Failure(systemFailed, fmt::format("cannot remove the address {} from {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

void putLeasedAddress(Netlink& netlink, const std::string& name, int index, const Lease6& lease) {
    const Ipv6Prefix prefix{lease.address, longestIpv6Prefix};
    const int error = netlink.putIpv6Address(index, prefix, std::min(lease.valid, longestLifetime),
                                             std::min(lease.preferred, longestLifetime));
    if (error != 0) {
        throw Failure(systemFailed, fmt::format("cannot add the address {} to {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
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

/// The address takes the place of the one that was set by hand before; the interface's others stay.
int varoSetIpv6Addr(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        const varoLib_s_ipv6& record = varo::required(ipv6);
        const varo::Ipv6Prefix prefix =
            varo::checkedPrefix(varo::textIn("address", record.ipv6Addr), record.prefixLen);
        const auto change = varo::Library::instance().change();
        varo::Ipv6Settings settings = change.store().session().read(varo::ipv6Group());
        varo::Netlink netlink;
        if (const auto link = varo::managementLink(netlink, change.configuration())) {
            const std::string& name = change.configuration().managementInterface;
            // The new one first, for the kernel may refuse it.
            varo::putAddressByHand(netlink, name, link->index, prefix);
            const auto before = varo::storedPrefix(settings);
            if (before && before->address != prefix.address) {
                varo::removeAddress(netlink, name, link->index, *before);
            }
        }
        varo::copyInto(settings.address, varo::ipv6Text(prefix.address));
        settings.prefixLength = prefix.length;
        change.store().session().write(varo::ipv6Group(), varo::singleRow, settings);
    });
}

int varoRemoveIpv6Addr() {
    return varo::answer(__func__, [&] {
        const auto change = varo::Library::instance().change();
        varo::Ipv6Settings settings = change.store().session().read(varo::ipv6Group());
        const auto prefix = varo::storedPrefix(settings);
        if (!prefix) {
            throw varo::Failure(varo::notThere, "no IPv6 address is set by hand");
        }
        varo::Netlink netlink;
        if (const auto link = varo::managementLink(netlink, change.configuration())) {
            varo::removeAddress(netlink, change.configuration().managementInterface, link->index,
                                *prefix);
        }
        varo::copyInto(settings.address, "");
        settings.prefixLength = 0;
        change.store().session().write(varo::ipv6Group(), varo::singleRow, settings);
    });
}

/// The gateway takes the place of the one that was set by hand before, and goes before those that
/// routers advertise.
int varoSetIpv6Gw(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        const varoLib_s_ipv6& record = varo::required(ipv6);
        const varo::Ipv6Address gateway =
            varo::checkedIpv6Gateway(varo::textIn("gateway", record.ipv6Gw));
        const auto change = varo::Library::instance().change();
        varo::Ipv6Settings settings = change.store().session().read(varo::ipv6Group());
        varo::Netlink netlink;
        if (const auto link = varo::managementLink(netlink, change.configuration())) {
            varo::checkIsAnother(netlink, link->index, gateway);
            varo::putRoute(netlink, change.configuration().managementInterface, link->index,
                           gateway, false);
        }
        varo::copyInto(settings.gateway, varo::ipv6Text(gateway));
        change.store().session().write(varo::ipv6Group(), varo::singleRow, settings);
    });
}

int varoRemoveIpv6Gw() {
    return varo::answer(__func__, [&] {
        const auto change = varo::Library::instance().change();
        varo::Ipv6Settings settings = change.store().session().read(varo::ipv6Group());
        const auto gateway = varo::storedGateway(settings);
        if (!gateway) {
            throw varo::Failure(varo::notThere, "no IPv6 gateway is set by hand");
        }
        varo::Netlink netlink;
        if (const auto link = varo::managementLink(netlink, change.configuration())) {
            varo::removeRoute(netlink, change.configuration().managementInterface, link->index,
                              *gateway);
        }
        varo::copyInto(settings.gateway, "");
        change.store().session().write(varo::ipv6Group(), varo::singleRow, settings);
    });
}

/// The address is the one set by hand, or else the one that a DHCPv6 server has granted, as long as
/// the interface has it.
int varoGetIpv6(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        varoLib_s_ipv6& record = varo::required(ipv6);
        const auto opened = varo::Library::instance().opened();
        const varo::Ipv6Settings settings = opened->store.session().read(varo::ipv6Group());
        varoLib_s_ipv6 read{};
        if (opened->configuration.managementInterface.empty()) {
            varo::readStored(read, settings);
        } else {
            varo::readInForce(read, opened->configuration, settings);
        }
        record = read;
    });
}
