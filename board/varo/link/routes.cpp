#include "board/varo/link/addressing.h"
#include "board/varo/settings/groups.h"
#include "board/varo/store/Column.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>

namespace varo {

namespace {

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
    Ipv4Settings settings = session.read(ipv4Group());
    settings.gateway = gateway;
    session.write(ipv4Group(), singleRow, settings);
}

}  // namespace

}  // namespace varo

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
