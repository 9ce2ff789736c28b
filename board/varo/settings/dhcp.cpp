#include "board/varo/link/Ipv4Keeper.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/clientSwitch.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

namespace varo {

namespace {

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

void switchOff(const Library::Change& change) {
    const std::string& name = change.configuration().managementInterface;
    if (name.empty()) {
        return;
    }
    Netlink netlink;
    const auto link = netlink.link(name);
    const Ipv4Settings settings = link ? frozen(netlink, name, link->index) : Ipv4Settings{};
    change.store().session().write(ipv4Setting().group(), singleRow, settings);
}

/// Puts the interface into operation that nobody has looked after yet.
void begin(Netlink& netlink, const std::string& name, const std::optional<Netlink::Link>& link,
           const Ipv4Settings& settings, bool isDhcpOn) {
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
    if (!isDhcpOn) {
        applyStored(netlink, name, *link, settings);
    }
}

/// Puts the management interface's address and gateway, or its client, into force.
void apply(const Library::Change& change) {
    const std::string& name = change.configuration().managementInterface;
    if (name.empty()) {
        return;
    }
    const auto [settings, dhcp] = [&] {
        auto session = change.store().session();
        return std::pair(session.read(ipv4Setting().group()), session.read(dhcpSetting().group()));
    }();
    keepWith(change, &Keepers::ipv4,
             commandOf(udhcpc, change.configuration().dhcpClient, change.configuration(), dhcp),
             [&, &settings = settings, &dhcp = dhcp](Netlink& netlink, const auto& link) {
                 begin(netlink, name, link, settings, dhcp.dhcpEnabled != 0);
             });
}

/// What a switch changes besides the record makes sense after each step, should the process end in
/// between.
void store(const Library::Change& change, const varoLib_s_dhcp& dhcp) {
    const bool wasOn = dhcpSetting().stored(change.store()).dhcpEnabled != 0;
    const bool isOn = dhcp.dhcpEnabled != 0;
    if (wasOn && !isOn) {
        switchOff(change);
    }
    change.store().session().write(dhcpSetting().group(), singleRow, dhcp);
    if (!wasOn && isOn) {
        change.store().session().write(ipv4Setting().group(), singleRow, ipv4Setting().factory());
    }
    apply(change);
    if (wasOn && !isOn) {
        dnsSetting().store(change, fromDhcp, dnsSetting().group().factory());
    }
}

}  // namespace

const Setting<varoLib_s_dhcp>& dhcpSetting() {
    using Record = varoLib_s_dhcp;
    static const auto& setting = *new Setting<Record>({
        .group = {"dhcp",
                  Rows::single,
                  {.updateSelector = 0,
                   .dhcpEnabled = 1,
                   .vendorClassEnabled = 0,
                   .circuitId = {},
                   .option82Enabled = 0},
                  {
                      column("enabled", &Record::dhcpEnabled),
                      column("vendor_class", &Record::vendorClassEnabled),
                      column("option82", &Record::option82Enabled),
                      column("circuit_id", &Record::circuitId),
                  }},
        .apply = [](const Library::Change& change, const auto&) { apply(change); },
    });
    return setting;
}

}  // namespace varo

int varoGetDhcp(varoLib_s_dhcp* dhcp) { return varo::dhcpSetting().read(__func__, dhcp); }

int varoUpdateDhcp(varoLib_s_dhcp* dhcp) {
    return varo::updateClient(__func__, dhcp, &varo::Keepers::ipv4,
                              "the DHCP client before does not end", varo::store);
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
