#include "board/varo/link/Ipv6Keeper.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/clientSwitch.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

namespace varo {

namespace {

/// What the client has brought goes with it.
void forgetLeases(const Library::Change& change) {
    change.store().session().write(dns6Setting().group(), fromDhcp,
                                   dns6Setting().group().factory());
    const std::string& name = change.configuration().managementInterface;
    if (!name.empty()) {
        Netlink netlink;
        if (const auto link = netlink.link(name)) {
            removeLeasedAddresses(netlink, name, link->index);
        }
    }
    dns6Setting().apply(change);
}

/// Puts the stored address and gateway into force, and the client beside them.
void apply(const Library::Change& change) {
    const std::string& name = change.configuration().managementInterface;
    if (name.empty()) {
        return;
    }
    const auto [settings, dhcp] = [&] {
        auto session = change.store().session();
        return std::pair(session.read(ipv6Setting().group()), session.read(dhcp6Setting().group()));
    }();
    keepWith(change, &Keepers::ipv6,
             commandOf(dhclient, change.configuration().dhcp6Client, change.configuration(), dhcp),
             [&, &settings = settings](Netlink& netlink, const auto& link) {
                 if (!link) {
                     return;
                 }
                 try {
                     applySettings(netlink, name, link->index, settings);
                 } catch (const Failure& failure) {
                     throw Failure(
                         applyFailed,
                         fmt::format("the IPv6 settings of {} are stored, but not in force: {}",
                                     name, failure.what()));
                 }
             });
}

void store(const Library::Change& change, const varoLib_s_dhcp6& dhcp) {
    dhcp6Setting().store(change, dhcp);
    if (dhcp.dhcpEnabled == 0) {
        forgetLeases(change);
    }
}

}  // namespace

const Setting<varoLib_s_dhcp6>& dhcp6Setting() {
    using Record = varoLib_s_dhcp6;
    static const auto& setting = *new Setting<Record>({
        .group = {"dhcp6",
                  Rows::single,
                  {.updateSelector = 0, .dhcpEnabled = 1},
                  {
                      column("enabled", &Record::dhcpEnabled),
                  }},
        .apply = [](const Library::Change& change, const auto&) { apply(change); },
    });
    return setting;
}

}  // namespace varo

int varoGetDhcp6(varoLib_s_dhcp6* dhcp) { return varo::dhcp6Setting().read(__func__, dhcp); }

int varoUpdateDhcp6(varoLib_s_dhcp6* dhcp) {
    return varo::updateClient(__func__, dhcp, &varo::Keepers::ipv6,
                              "the DHCPv6 client before does not end", varo::store);
}
