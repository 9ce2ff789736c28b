#include "board/varo/link/Ipv4Keeper.h"
#include "board/varo/link/addressing.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/settings/appliers.h"
#include "board/varo/settings/groups.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

namespace varo {

namespace {

/// What an update is made with.
constexpr std::uint32_t updateSelector = 2;

/// Puts the stored address and gateway into force.
void applyStored(Netlink& netlink, const std::string& name, const Netlink::Link& link,
                 const Ipv4Settings& settings) {
    try {
        applySettings(netlink, name, link.index, settings);
    } catch (const Failure& failure) {
        throw Failure(applyFailed,
                      fmt::format("the settings of {} are stored, but not in force: {}", name,
                                  failure.what()));
    }
}

/// The address and gateway that the client has set, or that it has not changed yet, stay on the
/// interface for good and become what is stored.
Ipv4Settings frozen(Netlink& netlink, const std::string& name, int index) {
    const Ipv4Settings settings = kernelSettings(netlink, index);
    if (settings.address != 0) {
        makeOnlyAddress(netlink, name, index,
                        {settings.address, prefixLength(settings.netmask).value_or(32)});
    }
    return settings;
}

void switchOff(Library::Change& change) {
    const std::string& name = change.configuration().managementInterface;
    if (name.empty()) {
        return;
    }
    Netlink netlink;
    const auto link = netlink.link(name);
    const Ipv4Settings settings = link ? frozen(netlink, name, link->index) : Ipv4Settings{};
    change.store().session().write(ipv4Group(), singleRow, settings);
}

void forgetLearntResolver(Library::Change& change) {
    change.store().session().write(dnsGroup(), fromDhcp, dnsGroup().factory());
    applyResolver(change.store(), change.configuration());
}

/// Stores the record, and what a switch changes besides it. What is stored makes sense after each
/// step, should the process end in between. Returns true when the client was switched off.
bool store(Library::Change& change, const varoLib_s_dhcp& dhcp) {
    const bool wasOn = change.store().session().read(dhcpGroup()).dhcpEnabled != 0;
    const bool isOn = dhcp.dhcpEnabled != 0;
    if (wasOn && !isOn) {
        switchOff(change);
    }
    change.store().session().write(dhcpGroup(), singleRow, dhcp);
    if (!wasOn && isOn) {
        change.store().session().write(ipv4Group(), singleRow, ipv4Group().factory());
    }
    return wasOn && !isOn;
}

}  // namespace

void applyIpv4(RecordStore& store, const Configuration& configuration, Keepers& keepers) {
    if (configuration.managementInterface.empty()) {
        return;
    }
    const auto [settings, dhcp] = [&] {
        auto session = store.session();
        return std::pair(session.read(ipv4Group()), session.read(dhcpGroup()));
    }();
    const auto command = commandOf(udhcpc, configuration.dhcpClient, configuration, dhcp);
    if (keepers.ipv4) {
        keepers.ipv4->want(command);
        return;
    }
    // It watches before the interface is looked for, so that none can come unseen.
    auto made = std::make_shared<Ipv4Keeper>(configuration);
    made->want(command);
    const std::string& name = configuration.managementInterface;
    Netlink netlink;
    const auto link = netlink.link(name);
    made->start(netlink, link);
    keepers.ipv4 = std::move(made);
    if (!link) {
        Library::instance().log(
            LOG_WARNING,
            fmt::format("there is no interface {} yet; it is put into operation when it comes",
                        name));
        return;
    }
    if (!link->isUp) {
        bringUp(netlink, name, link->index);
    }
    if (dhcp.dhcpEnabled == 0) {
        applyStored(netlink, name, *link, settings);
    }
}

}  // namespace varo

int varoGetDhcp(varoLib_s_dhcp* dhcp) {
    return varo::answer(__func__, [&] {
        varoLib_s_dhcp& record = varo::required(dhcp);
        const auto opened = varo::Library::instance().opened();
        record = opened->store.session().read(varo::dhcpGroup());
    });
}

int varoUpdateDhcp(varoLib_s_dhcp* dhcp) {
    return varo::answer(__func__, [&] {
        const varoLib_s_dhcp& record = varo::required(dhcp);
        if (record.updateSelector != varo::updateSelector) {
            throw varo::Failure(varo::invalidValue,
                                fmt::format("there is no update {}", record.updateSelector));
        }
        std::shared_ptr<varo::Ipv4Keeper> keeper;
        std::uint64_t wish = 0;
        {
            auto change = varo::Library::instance().change();
            const bool isSwitchedOff = varo::store(change, record);
            varo::applyIpv4(change.store(), change.configuration(), change.keepers());
            keeper = change.keepers().ipv4;
            if (keeper) {
                wish = keeper->wish();
            }
            if (isSwitchedOff) {
                varo::forgetLearntResolver(change);
            }
        }
        if (keeper && !keeper->awaitSettled(wish)) {
            throw varo::Failure(varo::applyFailed, "the DHCP client before does not end");
        }
    });
}

int varoDhcpRetreatAlrServNotResponding() {
    return varo::answer(__func__, [&] {
        const auto change = varo::Library::instance().change();
        const auto& keeper = change.keepers().ipv4;
        if (keeper && keeper->takeAlarmBack()) {
            varo::Library::instance().log(LOG_NOTICE,
                                          "alarm taken back: the DHCP server does not respond");
        }
    });
}
