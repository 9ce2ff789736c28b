#include "board/varo/link/Ipv4Keeper.h"

#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>

namespace varo {

namespace {

void log(int level, const std::string& text) { Library::instance().log(level, text); }

/// Makes these the resolver values that were learnt.
void learnResolver(Library::Change& change, const varoLib_s_dns& dns) {
    dnsSetting().store(change, fromDhcp, dns);
}

varoLib_s_dns resolverOf(const Lease& lease) {
    varoLib_s_dns dns{};
    lease.domain.copy(dns.domain, sizeof dns.domain - 1);
    dns.ip_pri = lease.primaryServer;
    dns.ip_sec = lease.secondaryServer;
    return dns;
}

}  // namespace

Ipv4Keeper::Ipv4Keeper(const Configuration& configuration)
    : InterfaceKeeper({configuration.managementInterface, "varo ipv4", "DHCP client"}) {}

Ipv4Keeper::~Ipv4Keeper() { end(); }

std::uint64_t Ipv4Keeper::usable(Netlink&, const std::optional<Netlink::Link>& link) {
    return link ? static_cast<std::uint64_t>(link->index) : 0;
}

void Ipv4Keeper::lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool isNew) {
    if (isNew && !link) {
        log(LOG_WARNING, fmt::format("the interface {} is gone", names.interface));
    }
    if (isNew && link) {
        log(LOG_NOTICE, fmt::format("the interface {} is there", names.interface));
    }
    // One that was taken down by hand stays so; taken up again, it has lost its routes.
    if (link && (isNew || link->isUp)) {
        auto change = Library::instance().change();
        if (isNew) {
            bringUp(netlink, names.interface, link->index);
        }
        applyAgain(change, netlink, *link);
    }
}

void Ipv4Keeper::applyAgain(Library::Change& change, Netlink& netlink, const Netlink::Link& link) {
    const auto [settings, isDhcpOn] = [&] {
        auto session = change.store().session();
        return std::pair(session.read(ipv4Setting().group()),
                         session.read(dhcpSetting().group()).dhcpEnabled != 0);
    }();
    if (!isDhcpOn) {
        applySettings(netlink, names.interface, link.index, settings);
        return;
    }
    const auto addresses = netlink.addresses(link.index);
    if (lease && std::find(addresses.begin(), addresses.end(), lease->prefix) != addresses.end()) {
        makeOnlyGateway(netlink, link.index, gatewayOf(change));
    }
}

InterfaceKeeper::Report Ipv4Keeper::read(std::uint64_t start, const std::string& message) {
    const DhcpReport report = udhcpc.read(message);
    const bool isLease = report.event == DhcpEvent::bound || report.event == DhcpEvent::renew;
    return {isLease,
            [this, start, report](Library::Change& change) { applyReport(change, start, report); }};
}

void Ipv4Keeper::applyReport(Library::Change& change, std::uint64_t start,
                             const DhcpReport& report) {
    switch (report.event) {
        case DhcpEvent::bound:
        case DhcpEvent::renew:
            serverResponds();
            applyLease(change, start, report);
            break;
        case DhcpEvent::deconfig:
            // Every client begins with it. Until it has reported a lease, the address that is there
            // stays: it keeps the board in reach, and the kernel ends it with its own lease.
            if (lease && leaseHolder == start) {
                loseLease(change);
            }
            break;
        case DhcpEvent::nak:
            log(LOG_NOTICE, "the DHCP server has refused the request");
            break;
        case DhcpEvent::leasefail:
            serverIsSilent(change);
            break;
    }
}

void Ipv4Keeper::applyLease(Library::Change& change, std::uint64_t start,
                            const DhcpReport& report) {
    const bool isFirst = !lease || lease->prefix != report.lease.prefix;
    lease = report.lease;
    leaseHolder = start;
    for (const std::string& value : report.leftOut) {
        log(LOG_WARNING, fmt::format("left out of the DHCP lease: {}", value));
    }
    log(isFirst ? LOG_NOTICE : LOG_DEBUG,
        fmt::format("DHCP lease from {}: {} via {} for {} s", ipv4Text(lease->server),
                    prefixText(lease->prefix),
                    lease->router == 0 ? "no router" : ipv4Text(lease->router), lease->seconds));

    // Name servers are of use even if the address is refused, and the other way round.
    guarded(names.client.c_str(), [&] { learnResolver(change, resolverOf(*lease)); });
    Netlink netlink;
    const int index = requiredLink(netlink, names.interface).index;
    makeOnlyAddress(netlink, names.interface, index, lease->prefix, lease->seconds);
    makeOnlyGateway(netlink, index, gatewayOf(change));
}

void Ipv4Keeper::loseLease(Library::Change& change) {
    const Ipv4Prefix prefix = lease->prefix;
    lease.reset();
    log(LOG_WARNING, fmt::format("the DHCP lease of {} is lost", prefixText(prefix)));
    guarded(names.client.c_str(), [&] { learnResolver(change, {}); });
    Netlink netlink;
    // It may have gone with the interface, or with its own lifetime.
    if (const auto link = netlink.link(names.interface)) {
        netlink.removeAddress(link->index, prefix);
    }
}

void Ipv4Keeper::serverIsSilent(Library::Change& change) {
    if (!alarm.exchange(true)) {
        log(LOG_WARNING,
            fmt::format("alarm: the DHCP server does not respond on {}", names.interface));
    }
    Netlink netlink;
    const auto link = netlink.link(names.interface);
    // With the address of an earlier lease, what came with it has ended as well.
    if (!link || netlink.addresses(link->index).empty()) {
        lease.reset();
        learnResolver(change, {});
    }
}

void Ipv4Keeper::serverResponds() {
    if (takeAlarmBack()) {
        log(LOG_NOTICE, fmt::format("alarm over: the DHCP server responds on {}", names.interface));
    }
}

/// A router of the lease goes before a gateway that was set by hand.
std::uint32_t Ipv4Keeper::gatewayOf(Library::Change& change) const {
    if (lease && lease->router != 0) {
        return lease->router;
    }
    return change.store().session().read(ipv4Setting().group()).gateway;
}

}  // namespace varo
