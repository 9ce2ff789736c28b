#include "board/varo/link/Ipv4Keeper.h"

#include "board/varo/link/addressing.h"
#include "board/varo/settings/groups.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>

namespace varo {

Ipv4Keeper::Ipv4Keeper(const Configuration& configuration)
    : InterfaceKeeper({configuration.managementInterface, "varo ipv4", "DHCP client"}) {}

Ipv4Keeper::~Ipv4Keeper() { end(); }

std::uint64_t Ipv4Keeper::usable(Netlink&, const std::optional<Netlink::Link>& link) {
    return link ? static_cast<std::uint64_t>(link->index) : 0;
}

void Ipv4Keeper::lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool isNew) {
    if (isNew && !link) {
        Library::instance().log(LOG_WARNING,
                                fmt::format("the interface {} is gone", names.interface));
    }
    if (isNew && link) {
        Library::instance().log(LOG_NOTICE,
                                fmt::format("the interface {} is there", names.interface));
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
        return std::pair(session.read(ipv4Group()), session.read(dhcpGroup()).dhcpEnabled != 0);
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

}  // namespace varo
