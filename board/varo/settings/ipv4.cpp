#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace varo {

namespace {

std::string interfaceName(const varoLib_s_interface& record) {
    const std::size_t length = strnlen(record.name, sizeof record.name);
    if (length == sizeof record.name) {
        throw Failure(invalidValue, "the interface name is not terminated within its field");
    }
    return {record.name, length};
}

/// Stores what a change by hand has made true. While the DHCP client is on, it is the client's
/// lease that is in force after a restart.
void storeAddress(const Library::Change& change, Netlink& netlink, int index) {
    auto session = change.store().session();
    if (session.read(dhcpSetting().group()).dhcpEnabled == 0) {
        session.write(ipv4Setting().group(), singleRow, kernelSettings(netlink, index));
    }
}

/// Makes a change to the address of the record, and stores what it made of the management
/// interface.
template <class OnLink>
int changeAddress(const char* call, const varoLib_s_interface* interface, OnLink onLink) {
    return answer(call, [&] {
        const varoLib_s_interface& record = required(interface);
        const std::string name = interfaceName(record);
        const Ipv4Prefix prefix = checkedPrefix(record.ipAddr, record.netmask);
        const auto change = Library::instance().change();
        const bool isManagement =
            !name.empty() && name == change.configuration().managementInterface;
        Netlink netlink;
        const int index = requiredLink(netlink, name).index;
        onLink(netlink, name, index, prefix, isManagement);
        if (isManagement) {
            storeAddress(change, netlink, index);
        }
    });
}

/// The gateway of a record that names the default route, the only one that is kept.
std::uint32_t checkedGateway(const varoLib_s_route& record) {
    if (record.destination != 0) {
        throw Failure(invalidValue, fmt::format("only the default route is kept, none to {}",
                                                ipv4Text(record.destination)));
    }
    if (!isHostAddress(record.gateway)) {
        throw Failure(invalidValue, fmt::format("the gateway {} is not the address of a host",
                                                ipv4Text(record.gateway)));
    }
    return record.gateway;
}

/// Stored also while the DHCP client is on: it serves with leases that name no router.
void storeGateway(Library::Change& change, std::uint32_t gateway) {
    auto session = change.store().session();
    Ipv4Settings settings = session.read(ipv4Setting().group());
    settings.gateway = gateway;
    session.write(ipv4Setting().group(), singleRow, settings);
}

}  // namespace

/// What is set by hand, none from the factory. It counts as far as the DHCP client is off.
const Setting<Ipv4Settings>& ipv4Setting() {
    using Record = Ipv4Settings;
    static const auto& setting = *new Setting<Record>({
        .group = {"ipv4",
                  Rows::single,
                  {},
                  {
                      ipv4Column("address", &Record::address),
                      ipv4Column("netmask", &Record::netmask),
                      ipv4Column("gateway", &Record::gateway),
                  }},
        .withNext = true,
    });
    return setting;
}

}  // namespace varo

/// On the management interface the address becomes the only one, and is stored. Other interfaces
/// get it beside those that they have, and nothing is stored.
int varoAttachIpToIntf(varoLib_s_interface* interface) {
    return varo::changeAddress(
        __func__, interface,
        [](auto& netlink, const auto& name, int index, const auto& prefix, bool isManagement) {
            const auto put = isManagement ? varo::makeOnlyAddress : varo::putAddress;
            put(netlink, name, index, prefix, varo::Netlink::forever);
        });
}

int varoDettachIpFromIntf(varoLib_s_interface* interface) {
    return varo::changeAddress(
        __func__, interface,
        [](auto& netlink, const auto& name, int index, const auto& prefix, bool) {
            if (!varo::removeAddress(netlink, name, index, prefix)) {
                throw varo::Failure(varo::notThere, fmt::format("{} has no address {}", name,
                                                                varo::prefixText(prefix)));
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

int varoAddRoute(varoLib_s_route* route) {
    return varo::answer(__func__, [&] {
        const std::uint32_t gateway = varo::checkedGateway(varo::required(route));
        auto change = varo::Library::instance().change();
        varo::Netlink netlink;
        varo::addGateway(netlink, varo::managementIndex(netlink, change.configuration()), gateway);
        varo::storeGateway(change, gateway);
    });
}

int varoDeleteRoute(varoLib_s_route* route) {
    return varo::answer(__func__, [&] {
        const std::uint32_t gateway = varo::checkedGateway(varo::required(route));
        auto change = varo::Library::instance().change();
        varo::Netlink netlink;
        const auto routes =
            netlink.defaultRoutes(varo::managementIndex(netlink, change.configuration()));
        const auto found = std::find_if(routes.begin(), routes.end(),
                                        [&](const auto& each) { return each.gateway == gateway; });
        if (found == routes.end()) {
            throw varo::Failure(varo::notThere, fmt::format("there is no default route via {}",
                                                            varo::ipv4Text(gateway)));
        }
        varo::removeGateway(netlink, *found);
        varo::storeGateway(change, 0);
    });
}

/// That there is no such route is an answer that front ends ask for again and again: it is logged
/// at the debug level.
int varoGetRouteByDst(varoLib_s_route* route) {
    return varo::answer(__func__, [&] {
        varoLib_s_route& record = varo::required(route);
        const auto opened = varo::Library::instance().opened();
        varo::Netlink netlink;
        const auto routes =
            record.destination != 0
                ? std::vector<varo::Netlink::DefaultRoute>{}
                : netlink.defaultRoutes(varo::managementIndex(netlink, opened->configuration));
        if (routes.empty()) {
            throw varo::Failure(
                varo::notThere,
                fmt::format("there is no route to {}", record.destination == 0
                                                           ? std::string("everywhere")
                                                           : varo::ipv4Text(record.destination)),
                LOG_DEBUG);
        }
        record.gateway = routes.front().gateway;
    });
}
