// Interface registry, VLANs, profile and features, as far as the product imports them.

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "framework/PortSecurity.h"
#include "framework/sysInfo.h"
#include "platform/features.h"
#include "platform/interfaces.h"
#include "platform/vlan.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstring>
#include <iterator>

using fake::Platform;
using fake::quoted;

namespace {

/// The journal shows a handle that is not the default one.
std::string argumentsOf(const zuHandle_t& handle, const std::string& others) {
    const bool isDefault = std::all_of(std::begin(handle.bytes), std::end(handle.bytes),
                                       [](unsigned char byte) { return byte == 0; });
    return (isDefault ? "" : "another handle, ") + others;
}

/// A query that answers with a value.
int answer(const std::string& function, const std::string& arguments, int value) {
    Platform& platform = Platform::current();
    platform.journal.write(fmt::format("{}({}) -> {}", function, arguments, value));
    return value;
}

/// A call that needs the VLAN in the database.
template <class Work>
int onVlan(const char* function, const std::string& arguments, std::uint32_t vlanId, Work work) {
    Platform& platform = Platform::current();
    if (!platform.shelf.vlans.contains(vlanId)) {
        return Platform::current().refuse(function, arguments);
    }
    return platform.call(function, arguments, [&] { work(platform.shelf); });
}

}  // namespace

int interfaceMngGet(int* portId) {
    Platform& platform = Platform::current();
    return platform.call("interfaceMngGet", "", [&] {
        *portId = platform.shelf.managementPort;
        return std::to_string(*portId);
    });
}

int interfaceLinuxnameGet(int portId, int size, char* name) {
    Platform& platform = Platform::current();
    const std::string arguments = fmt::format("{}, {}", portId, size);
    const auto found = platform.shelf.portNames.find(portId);
    if (found == platform.shelf.portNames.end() || size < 0 ||
        found->second.size() >= static_cast<std::size_t>(size)) {
        return Platform::current().refuse("interfaceLinuxnameGet", arguments);
    }
    return platform.call("interfaceLinuxnameGet", arguments, [&] {
        std::memcpy(name, found->second.c_str(), found->second.size() + 1);
        return quoted(found->second);
    });
}

int zuvlanGetVlanInfoId(zuHandle_t handle, std::uint32_t vlanId, zuvlanInfo_t* info) {
    return onVlan("zuvlanGetVlanInfoId", argumentsOf(handle, std::to_string(vlanId)), vlanId,
                  [&](fake::Shelf&) { std::memset(info->opaque, 0xa5, sizeof info->opaque); });
}

int zuvlanCreate(zuHandle_t handle, std::uint32_t vlanId) {
    Platform& platform = Platform::current();
    return platform.call("zuvlanCreate", argumentsOf(handle, std::to_string(vlanId)),
                         [&] { platform.shelf.vlans[vlanId]; });
}

int zuvlanAddMembership(zuHandle_t handle, std::uint16_t vlanId, int portId) {
    return onVlan("zuvlanAddMembership", argumentsOf(handle, fmt::format("{}, {}", vlanId, portId)),
                  vlanId, [&](fake::Shelf& shelf) { shelf.vlans[vlanId].insert(portId); });
}

int zuvlanDelMembership(zuHandle_t handle, std::uint32_t vlanId, int portId) {
    return onVlan("zuvlanDelMembership", argumentsOf(handle, fmt::format("{}, {}", vlanId, portId)),
                  vlanId, [&](fake::Shelf& shelf) { shelf.vlans[vlanId].erase(portId); });
}

int zuvlanSetPvid(zuHandle_t handle, std::uint16_t vlanId, int portId) {
    return onVlan("zuvlanSetPvid", argumentsOf(handle, fmt::format("{}, {}", vlanId, portId)),
                  vlanId, [&](fake::Shelf& shelf) { shelf.portVlans[portId] = vlanId; });
}

int vlanMngWrite(std::uint32_t vlanId) {
    Platform& platform = Platform::current();
    return platform.call("vlanMngWrite", std::to_string(vlanId),
                         [&] { platform.shelf.persistedManagementVlan = vlanId; });
}

int defConnectCheckUplinkConflict(std::uint32_t vlanId, bool native) {
    return Platform::current().call("defConnectCheckUplinkConflict",
                                    fmt::format("{}, {}", vlanId, native));
}

int defConnectReconfigureDefVlan(std::uint32_t vlanId, bool native) {
    Platform& platform = Platform::current();
    return platform.call("defConnectReconfigureDefVlan", fmt::format("{}, {}", vlanId, native),
                         [&] {
                             platform.shelf.defaultVlan = vlanId;
                             platform.shelf.isDefaultVlanNative = native;
                         });
}

std::uint32_t defConnectGetDefVid() {
    Platform& platform = Platform::current();
    platform.journal.write(fmt::format("defConnectGetDefVid() -> {}", platform.shelf.defaultVlan));
    return platform.shelf.defaultVlan;
}

int defConnectGetDefModeNative() {
    return answer("defConnectGetDefModeNative", "",
                  Platform::current().shelf.isDefaultVlanNative ? 1 : 0);
}

int mngConnectCheckVlanProfileUplinkNative(std::uint32_t vlanId) {
    return Platform::current().call("mngConnectCheckVlanProfileUplinkNative",
                                    std::to_string(vlanId));
}

/// A feature becomes inactive in between by a failure under the name with its number ("isActive
/// 5").
bool isActive(int feature) {
    Platform& platform = Platform::current();
    const bool active = platform.script.failureOf(fmt::format("isActive {}", feature)) == 0 &&
                        platform.shelf.activeFeatures.contains(feature);
    return answer("isActive", std::to_string(feature), active ? 1 : 0) != 0;
}

int checkProfileMode() {
    return answer("checkProfileMode", "", Platform::current().shelf.isInProfileMode ? 1 : 0);
}

PortSecurity::PortSecurity() = default;
PortSecurity::~PortSecurity() = default;

int PortSecurity::updateMngStaticEntry() {
    return Platform::current().call("updateMngStaticEntry", "");
}

sysInfo::sysInfo() = default;
sysInfo::~sysInfo() = default;

void sysInfo::getShelfId(std::string& id) const {
    Platform& platform = Platform::current();
    platform.journal.write(fmt::format("getShelfId() -> {}", quoted(platform.shelf.shelfId)));
    id = platform.shelf.shelfId;
}

sysInfo::ShelfIdEvent& sysInfo::shelfIdChanged() {
    Platform::current().journal.write("shelfIdChanged()");
    return shelfIdEvent;
}

template class singleton<PortSecurity>;
template class singleton<sysInfo>;
