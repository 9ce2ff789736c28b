#include "board/varo/link/Ipv6Keeper.h"
#include "board/varo/link/addressingIpv6.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/settings/appliers.h"
#include "board/varo/settings/groups.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

namespace varo {

namespace {

/// What an update is made with.
constexpr std::uint32_t updateSelector = 2;

/// What the client has brought goes with it.
void forgetLeases(Library::Change& change) {
    change.store().session().write(dns6Group(), fromDhcp, dns6Group().factory());
    const std::string& name = change.configuration().managementInterface;
    if (!name.empty()) {
        Netlink netlink;
        if (const auto link = netlink.link(name)) {
            removeLeasedAddresses(netlink, name, link->index);
        }
    }
    applyResolver(change.store(), change.configuration());
}

}  // namespace

void applyIpv6(RecordStore& store, const Configuration& configuration, Keepers& keepers) {
    const std::string& name = configuration.managementInterface;
    if (name.empty()) {
        return;
    }
    const auto [settings, dhcp] = [&] {
        auto session = store.session();
        return std::pair(session.read(ipv6Group()), session.read(dhcp6Group()));
    }();
    const auto command = commandOf(dhclient, configuration.dhcp6Client, configuration, dhcp);
    if (keepers.ipv6) {
        keepers.ipv6->want(command);
        return;
    }
    // It watches before the interface is looked for, so that none can come unseen.
    auto made = std::make_shared<Ipv6Keeper>(configuration);
    made->want(command);
    Netlink netlink;
    const auto link = netlink.link(name);
    made->start(netlink, link);
    keepers.ipv6 = std::move(made);
    if (!link) {
        return;
    }
    try {
        applySettings(netlink, name, link->index, settings);
    } catch (const Failure& failure) {
        throw Failure(applyFailed,
                      fmt::format("the IPv6 settings of {} are stored, but not in force: {}", name,
                                  failure.what()));
    }
}

}  // namespace varo

int varoGetDhcp6(varoLib_s_dhcp6* dhcp) {
    return varo::answer(__func__, [&] {
        varoLib_s_dhcp6& record = varo::required(dhcp);
        const auto opened = varo::Library::instance().opened();
        record = opened->store.session().read(varo::dhcp6Group());
    });
}

int varoUpdateDhcp6(varoLib_s_dhcp6* dhcp) {
    return varo::answer(__func__, [&] {
        const varoLib_s_dhcp6& record = varo::required(dhcp);
        if (record.updateSelector != varo::updateSelector) {
            throw varo::Failure(varo::invalidValue,
                                fmt::format("there is no update {}", record.updateSelector));
        }
        std::shared_ptr<varo::Ipv6Keeper> keeper;
        std::uint64_t wish = 0;
        {
            auto change = varo::Library::instance().change();
            change.store().session().write(varo::dhcp6Group(), varo::singleRow, record);
            varo::applyIpv6(change.store(), change.configuration(), change.keepers());
            keeper = change.keepers().ipv6;
            if (keeper) {
                wish = keeper->wish();
            }
            if (record.dhcpEnabled == 0) {
                varo::forgetLeases(change);
            }
        }
        if (keeper && !keeper->awaitSettled(wish)) {
            throw varo::Failure(varo::applyFailed, "the DHCPv6 client before does not end");
        }
    });
}
