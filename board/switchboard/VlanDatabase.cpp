#include "board/switchboard/VlanDatabase.h"

#include "board/switchboard/switchCodes.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace switchboard {

namespace {

bool isVlan(VlanId vlan) { return vlan >= 1 && vlan <= highestVlan; }

bool isPort(int port) { return port == managementPort || port == uplinkPort; }

void checkId(VlanId vlan) {
    if (!isVlan(vlan)) {
        throw Failure(invalidVlan,
                      fmt::format("{} is no VLAN id: these are 1 to {}", vlan, highestVlan));
    }
}

void checkPort(int port) {
    if (!isPort(port)) {
        throw Failure(noSuchPort, fmt::format("the switch has no port {}, only {} and {}", port,
                                              managementPort, uplinkPort));
    }
}

void require(bool condition, const std::string& objection) {
    if (!condition) {
        throw std::invalid_argument(objection);
    }
}

void checkState(const VlanState& state) {
    const auto contains = [&](VlanId vlan, int port) {
        const auto found = state.members.find(vlan);
        return found != state.members.end() && found->second.contains(port);
    };
    require(state.members.contains(factoryVlan), fmt::format("VLAN {} is missing", factoryVlan));
    for (const auto& [vlan, ports] : state.members) {
        require(isVlan(vlan), fmt::format("{} is no VLAN id", vlan));
        for (const int port : ports) {
            require(isPort(port), fmt::format("port {} of VLAN {} does not exist", port, vlan));
        }
    }
    for (const auto& [port, vlan] : state.pvids) {
        require(contains(vlan, port),
                fmt::format("the PVID of port {} is VLAN {}, which it is not in", port, vlan));
    }
    require(contains(state.defaultVlan, uplinkPort),
            fmt::format("the uplink is not in the default VLAN {}", state.defaultVlan));
    const auto native = state.pvids.find(uplinkPort);
    require(
        state.defaultNative == (native != state.pvids.end() && native->second == state.defaultVlan),
        "the mode of the default VLAN and the native VLAN of the uplink disagree");
    require(state.managementVlan == noVlan || state.members.contains(state.managementVlan),
            fmt::format("the management VLAN {} is missing", state.managementVlan));
    require(!state.managementEntry || (state.managementEntry->port == managementPort &&
                                       contains(state.managementEntry->vlan, managementPort)),
            "the static entry is not one of the management port");
}

}  // namespace

VlanState VlanState::factory() {
    VlanState state;
    state.members[factoryVlan] = {managementPort, uplinkPort};
    state.pvids[managementPort] = factoryVlan;
    return state;
}

VlanDatabase::VlanDatabase(VlanState given) : content(std::move(given)) { checkState(content); }

void VlanDatabase::create(VlanId vlan) {
    checkId(vlan);
    if (!content.members.try_emplace(vlan).second) {
        throw Failure(vlanExists, fmt::format("VLAN {} is in the database already", vlan));
    }
}

const std::set<int>& VlanDatabase::membersOf(VlanId vlan) const {
    checkId(vlan);
    const auto found = content.members.find(vlan);
    if (found == content.members.end()) {
        // Who asks whether a VLAN exists need not be wrong.
        throw Failure(noSuchVlan, fmt::format("VLAN {} is not in the database", vlan), LOG_INFO);
    }
    return found->second;
}

std::set<int>& VlanDatabase::existing(VlanId vlan) {
    membersOf(vlan);
    return content.members[vlan];
}

void VlanDatabase::checkMember(VlanId vlan, int port) const {
    const std::set<int>& ports = membersOf(vlan);
    checkPort(port);
    if (!ports.contains(port)) {
        throw Failure(notMember, fmt::format("port {} is not in VLAN {}", port, vlan));
    }
}

void VlanDatabase::addMember(VlanId vlan, int port) {
    std::set<int>& ports = existing(vlan);
    checkPort(port);
    ports.insert(port);
}

void VlanDatabase::removeMember(VlanId vlan, int port) {
    checkMember(vlan, port);
    if (port == uplinkPort && vlan == content.defaultVlan) {
        throw Failure(uplinkConflict,
                      fmt::format("the uplink cannot leave VLAN {}, the default VLAN", vlan));
    }
    content.members[vlan].erase(port);
    if (pvidOf(port) == vlan) {
        content.pvids.erase(port);
    }
    if (content.managementEntry && port == managementPort &&
        content.managementEntry->vlan == vlan) {
        content.managementEntry.reset();
    }
}

void VlanDatabase::setPvid(VlanId vlan, int port) {
    checkMember(vlan, port);
    if (port == uplinkPort && content.defaultNative != (vlan == content.defaultVlan)) {
        throw Failure(
            uplinkConflict,
            fmt::format("VLAN {} cannot be native on the uplink: the default VLAN {} is {}", vlan,
                        content.defaultVlan, content.defaultNative ? "native there" : "tagged"));
    }
    content.pvids[port] = vlan;
}

void VlanDatabase::checkUplinkConflict(VlanId vlan, bool native) const {
    membersOf(vlan);
    const VlanId nativeVlan = pvidOf(uplinkPort);
    if (nativeVlan == noVlan || (content.defaultNative && nativeVlan == content.defaultVlan)) {
        return;
    }
    if (native && nativeVlan != vlan) {
        throw Failure(uplinkConflict,
                      fmt::format("VLAN {} cannot be the native default VLAN: VLAN {} is native on "
                                  "the uplink",
                                  vlan, nativeVlan));
    }
    if (!native && nativeVlan == vlan) {
        throw Failure(
            uplinkConflict,
            fmt::format("VLAN {} cannot be the tagged default VLAN: it is native on the uplink",
                        vlan));
    }
}

void VlanDatabase::setDefault(VlanId vlan, bool native) {
    checkUplinkConflict(vlan, native);
    if (content.defaultNative) {
        content.pvids.erase(uplinkPort);
    }
    content.members[vlan].insert(uplinkPort);
    if (native) {
        content.pvids[uplinkPort] = vlan;
    }
    content.defaultVlan = vlan;
    content.defaultNative = native;
}

void VlanDatabase::checkManagement(VlanId vlan) const {
    checkId(vlan);
    if (vlan == pvidOf(uplinkPort) && vlan != content.defaultVlan) {
        throw Failure(profileConflict,
                      fmt::format("VLAN {} cannot carry management traffic: it is native on the "
                                  "uplink, and not the default VLAN",
                                  vlan));
    }
}

void VlanDatabase::persistManagement(VlanId vlan) {
    membersOf(vlan);
    content.managementVlan = vlan;
}

void VlanDatabase::refreshManagementEntry(const std::array<unsigned char, 6>& address) {
    const VlanId vlan = pvidOf(managementPort);
    if (vlan == noVlan) {
        throw Failure(notMember, "the management port has no PVID");
    }
    content.managementEntry = StaticEntry{managementPort, vlan, address};
}

bool VlanDatabase::returnManagementPort() {
    const VlanState before = content;
    for (auto& [vlan, ports] : content.members) {
        if (vlan == factoryVlan) {
            ports.insert(managementPort);
        } else {
            ports.erase(managementPort);
        }
    }
    content.pvids[managementPort] = factoryVlan;
    if (content.managementEntry && content.managementEntry->vlan != factoryVlan) {
        content.managementEntry.reset();
    }
    return content != before;
}

VlanId VlanDatabase::pvidOf(int port) const {
    const auto found = content.pvids.find(port);
    return found == content.pvids.end() ? noVlan : found->second;
}

}  // namespace switchboard
