#include "board/varo/link/Ipv6Keeper.h"

#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>

namespace varo {

namespace {

void log(int level, const std::string& text) { Library::instance().log(level, text); }

void learnResolver(Library::Change& change, const Lease6& lease) {
    varoLib_s_dns6 dns{};
    copyInto(dns.domain, lease.domain);
    copyInto(dns.ipv6_pri, lease.primaryServer);
    copyInto(dns.ipv6_sec, lease.secondaryServer);
    dns6Setting().store(change, fromDhcp, dns);
}

bool contains(const std::vector<Ipv6Address>& addresses, const Ipv6Address& address) {
    return std::find(addresses.begin(), addresses.end(), address) != addresses.end();
}

}  // namespace

Ipv6Keeper::Ipv6Keeper(const Configuration& configuration)
    : InterfaceKeeper({configuration.managementInterface, "varo ipv6", "DHCPv6 client"}) {}

Ipv6Keeper::~Ipv6Keeper() { end(); }

std::uint64_t Ipv6Keeper::usable(Netlink& netlink, const std::optional<Netlink::Link>& link) {
    if (!link || !link->isUp || !link->hasCarrier) {
        wasUsable = false;
        return 0;
    }
    // An interruption may have been too short to be seen.
    if (!wasUsable || usedIndex != link->index || hasLostAddresses(netlink, link->index)) {
        ++comings;
        granted.clear();
    }
    wasUsable = true;
    usedIndex = link->index;
    return comings;
}

bool Ipv6Keeper::hasLostAddresses(Netlink& netlink, int index) const {
    if (granted.empty()) {
        return false;
    }
    const auto addresses = netlink.ipv6Addresses(index);
    return std::any_of(granted.begin(), granted.end(), [&](const Ipv6Address& each) {
        return std::none_of(addresses.begin(), addresses.end(),
                            [&](const auto& address) { return address.prefix.address == each; });
    });
}

void Ipv6Keeper::lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool) {
    if (!link || !link->isUp) {
        return;
    }
    const auto change = Library::instance().change();
    const Ipv6Settings settings = change.store().session().read(ipv6Setting().group());
    applySettings(netlink, names.interface, link->index, settings);
}

InterfaceKeeper::Report Ipv6Keeper::read(std::uint64_t start, const std::string& message) {
    const Dhcp6Report report = dhclient.read(message);
    return {report.event == Dhcp6Event::granted,
            [this, start, report](Library::Change& change) { applyReport(change, start, report); }};
}

void Ipv6Keeper::applyReport(Library::Change& change, std::uint64_t start,
                             const Dhcp6Report& report) {
    for (const std::string& value : report.leftOut) {
        log(LOG_WARNING, fmt::format("left out of the DHCPv6 lease: {}", value));
    }
    if (report.ended) {
        endLease(change, *report.ended);
    }
    if (report.event == Dhcp6Event::granted) {
        applyLease(change, start, report.lease);
    }
}

void Ipv6Keeper::applyLease(Library::Change& change, std::uint64_t start, const Lease6& lease) {
    if (grantHolder != start) {
        granted.clear();
    }
    grantHolder = start;
    const bool isFirst = !contains(granted, lease.address);
    if (isFirst) {
        granted.push_back(lease.address);
    }
    log(isFirst ? LOG_NOTICE : LOG_DEBUG,
        fmt::format("DHCPv6 lease: {} for {} s", ipv6Text(lease.address), lease.valid));

    guarded(names.client.c_str(), [&] { learnResolver(change, lease); });
    Netlink netlink;
    const int index = requiredLink(netlink, names.interface).index;
    const Ipv6Settings settings = change.store().session().read(ipv6Setting().group());
    const auto byHand = storedPrefix(settings);
    if (!byHand || byHand->address != lease.address) {
        putLeasedAddress(netlink, names.interface, index, lease);
    }
    // What a client before this one was granted, maybe one of a former process.
    for (const auto& address : netlink.ipv6Addresses(index)) {
        if (address.isLeased && !contains(granted, address.prefix.address)) {
            netlink.removeIpv6Address(index, address.prefix);
        }
    }
}

void Ipv6Keeper::endLease(Library::Change& change, const Ipv6Address& address) {
    log(LOG_WARNING, fmt::format("the DHCPv6 lease of {} has ended", ipv6Text(address)));
    std::erase(granted, address);
    if (granted.empty()) {
        guarded(names.client.c_str(), [&] { learnResolver(change, {}); });
    }
    Netlink netlink;
    // It may have gone with the interface, or with its own lifetime.
    const auto link = netlink.link(names.interface);
    if (!link) {
        return;
    }
    for (const auto& each : netlink.ipv6Addresses(link->index)) {
        if (each.isLeased && each.prefix.address == address) {
            netlink.removeIpv6Address(link->index, each.prefix);
        }
    }
}

}  // namespace varo
