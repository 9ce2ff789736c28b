#include "board/switchboard/Switch.h"

#include "board/framework/reporters.h"

#include <syslog.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

namespace switchboard {

namespace {

support::Log systemLog() { return support::systemLog("switch: "); }

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

Switch& Switch::instance() {
    static Switch& object = *new Switch;
    return object;
}

Switch::Switch() : log(systemLog(), LOG_DEBUG) {}

void Switch::configure(Configuration given) {
    const std::lock_guard lock(mutex);
    state.reset();
    log.setReceiver(given.log ? given.log : systemLog());
    configuration = std::move(given);
}

std::string Switch::managementInterface() {
    const std::lock_guard lock(mutex);
    return configuration.managementInterface;
}

const Switch::StateFile& Switch::opened() {
    if (!state) {
        if (configuration.stateDirectory.empty()) {
            throw Failure(notConfigured, "no state directory is configured");
        }
        try {
            StateFile file(switchFormat);
            file.open(configuration.stateDirectory, std::ref(log));
            state = std::move(file);
        } catch (const support::NewerDocument& newer) {
            throw Failure(newerFile, newer.what());
        } catch (const std::system_error& error) {
            throw Failure(storageFailed, error.what());
        }
    }
    return *state;
}

void Switch::keep(VlanDatabase changed) {
    if (changed.state() == state->content().state()) {
        return;
    }
    try {
        state->store(std::move(changed));
    } catch (const std::system_error& error) {
        throw Failure(storageFailed, error.what());
    }
}

void checkHandle(const zuHandle_t& handle) {
    if (std::any_of(std::begin(handle.bytes), std::end(handle.bytes),
                    [](unsigned char byte) { return byte != 0; })) {
        throw Failure(noSuchDatabase, "there is no VLAN database but the default one");
    }
}

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
