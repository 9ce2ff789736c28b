#include "board/framework/reporters.h"
#include "board/switchboard/Switch.h"

#include <syslog.h>

#include <string>
#include <utility>

namespace switchboard {

namespace {

framework::VlanReport makeReport() {
    const VlanState state =
        Switch::instance().read([](const VlanDatabase& database) { return database.state(); });
    framework::VlanReport report{{}, state.defaultVlan, state.defaultNative, state.managementVlan};
    for (const auto& [vlan, ports] : state.members) {
        report.vlans.push_back({vlan, {ports.begin(), ports.end()}, {}});
        for (const auto& [port, pvid] : state.pvids) {
            if (pvid == vlan) {
                report.vlans.back().pvidPorts.push_back(port);
            }
        }
    }
    return report;
}

}  // namespace

void configure(Configuration configuration) {
    Switch::instance().configure(std::move(configuration));
    framework::vlanReporter().set(makeReport);
}

int returnManagementPort() {
    bool moved = false;
    const int result = answer(__func__, [&] {
        Switch::instance().change(
            [&](VlanDatabase& database) { moved = database.returnManagementPort(); });
    });
    if (result == success && moved) {
        Switch::instance().log(
            LOG_NOTICE, "the management port is back in VLAN " + std::to_string(factoryVlan));
    }
    return result;
}

}  // namespace switchboard
