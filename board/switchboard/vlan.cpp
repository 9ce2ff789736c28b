// The VLAN database and the persisted management VLAN.

#include "platform/vlan.h"

#include "board/switchboard/Switch.h"
#include "board/switchboard/switchCodes.h"

#include <cstdint>
#include <cstring>
#include <functional>

using switchboard::answer;
using switchboard::checkHandle;
using switchboard::Switch;
using switchboard::VlanDatabase;

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
