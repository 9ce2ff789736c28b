// The default VLAN, and what the uplink admits.

#include "board/switchboard/Switch.h"
#include "platform/vlan.h"

using switchboard::answer;
using switchboard::Switch;
using switchboard::VlanDatabase;
using switchboard::VlanState;

namespace {

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
