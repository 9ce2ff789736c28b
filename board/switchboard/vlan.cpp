#include "platform/vlan.h"

#include "board/switchboard/Switch.h"
#include "board/switchboard/switchCodes.h"

#include <cstdint>
#include <cstring>
#include <functional>

// The VLAN database, the persisted management VLAN, the default VLAN, and what the uplink admits.

using switchboard::answer;
using switchboard::checkHandle;
using switchboard::Switch;
using switchboard::VlanDatabase;
using switchboard::VlanState;

namespace {

/// What the info record holds here: the id and the number of ports, in host byte order.
struct Info {
    std::uint32_t vlan;
    std::uint32_t ports;
};

int change(const char* call, const zuHandle_t& handle,
           const std::function<void(VlanDatabase&)>& body) {
    return answer(call, [&] {
        checkHandle(handle);
        Switch::instance().change(body);
    });
}

/// The state for a call that answers a value and has no code for a failure: this is logged, and the
/// factory value answered.
template <class Value>
Value valueOf(const char* call, Value VlanState::* member) {
    Value value = VlanState::factory().*member;
    answer(call, [&] {
        value = Switch::instance().read(
            [&](const VlanDatabase& database) { return database.state().*member; });
    });
    return value;
}

}  // namespace

int zuvlanGetVlanInfoId(zuHandle_t handle, std::uint32_t vlanId, zuvlanInfo_t* info) {
    return answer(__func__, [&] {
        checkHandle(handle);
        if (info == nullptr) {
            throw switchboard::Failure(switchboard::invalidArgument, "null pointer");
        }
        const Info found = Switch::instance().read([&](const VlanDatabase& database) {
            return Info{vlanId, static_cast<std::uint32_t>(database.membersOf(vlanId).size())};
        });
        *info = {};
        std::memcpy(info->opaque, &found, sizeof found);
    });
}

int zuvlanCreate(zuHandle_t handle, std::uint32_t vlanId) {
    return change(__func__, handle, [&](VlanDatabase& database) { database.create(vlanId); });
}

int zuvlanAddMembership(zuHandle_t handle, std::uint16_t vlanId, int portId) {
    return change(__func__, handle,
                  [&](VlanDatabase& database) { database.addMember(vlanId, portId); });
}

int zuvlanDelMembership(zuHandle_t handle, std::uint32_t vlanId, int portId) {
    return change(__func__, handle,
                  [&](VlanDatabase& database) { database.removeMember(vlanId, portId); });
}

int zuvlanSetPvid(zuHandle_t handle, std::uint16_t vlanId, int portId) {
    return change(__func__, handle,
                  [&](VlanDatabase& database) { database.setPvid(vlanId, portId); });
}

int vlanMngWrite(std::uint32_t vlanId) {
    return answer(__func__, [&] {
        Switch::instance().change(
            [&](VlanDatabase& database) { database.persistManagement(vlanId); });
    });
}

int defConnectCheckUplinkConflict(std::uint32_t vlanId, bool native) {
    return answer(__func__, [&] {
        Switch::instance().read(
            [&](const VlanDatabase& database) { database.checkUplinkConflict(vlanId, native); });
    });
}

int defConnectReconfigureDefVlan(std::uint32_t vlanId, bool native) {
    return answer(__func__, [&] {
        Switch::instance().change(
            [&](VlanDatabase& database) { database.setDefault(vlanId, native); });
    });
}

std::uint32_t defConnectGetDefVid() { return valueOf(__func__, &VlanState::defaultVlan); }

int defConnectGetDefModeNative() { return valueOf(__func__, &VlanState::defaultNative) ? 1 : 0; }

int mngConnectCheckVlanProfileUplinkNative(std::uint32_t vlanId) {
    return answer(__func__, [&] {
        Switch::instance().read(
            [&](const VlanDatabase& database) { database.checkManagement(vlanId); });
    });
}
