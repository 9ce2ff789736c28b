// Management VLAN and default VLAN. The switch is the platform's; a move of the management port is
// a row of its calls, and where it breaks off the port stays: none of the steps is taken back.

#include "platform/vlan.h"

#include "framework/PortSecurity.h"
#include "network/Network.h"
#include "network/cordProfile.h"
#include "platform/features.h"
#include "platform/interfaces.h"

#include <syslog.h>

namespace {

/// The shelf's default VLAN database.
constexpr zuHandle_t defaultDatabase{};

constexpr unsigned int nativeMode = 2;

// Fixed labels of the trace points of setDefVlanMode.
constexpr int entryLabel = 1038;
constexpr int refusedLockLabel = 1042;
constexpr int refusedArgumentLabel = 1047;

/// Membership and port VLAN are set by the 16 bits of a tag's VLAN field and what lies before it.
std::uint16_t tagOf(unsigned int vlanId) { return static_cast<std::uint16_t>(vlanId); }

bool isInDatabase(unsigned int vlanId) {
    zuvlanInfo_t info{};
    return zuvlanGetVlanInfoId(defaultDatabase, vlanId, &info) == 0;
}

}  // namespace

int Network::setVlan(unsigned int vlanId) {
    return withExclusiveLock([&] {
        if (checkProfileMode() != 0 && mngConnectCheckVlanProfileUplinkNative(vlanId) != 0) {
            return -1;
        }
        if (vlanId == 0 || !ensureVlan(vlanId) || !moveManagementPort(vlanId)) {
            return -1;
        }
        mngVlanId = vlanId;
        singleton<Network>::instance().dhcpCehckBeforeSetOption82(nullptr);
        if (checkProfileMode() != 0) {
            vlanMngWrite(vlanId);
        }
        singleton<PortSecurity>::instance().updateMngStaticEntry();
        return 0;
    });
}

bool Network::ensureVlan(unsigned int vlanId) {
    trace("[networkBLE]: setVlan: checking VLAN database\n");
    if (isInDatabase(vlanId)) {
        return true;
    }
    if (!isCordProfile()) {
        return false;
    }
    // This message has no line end.
    trace("[networkBLE]: %s: VLAN %d not in DB. Will add and check again.", "setVlan", vlanId);
    zuvlanCreate(defaultDatabase, vlanId);
    return isInDatabase(vlanId);
}

/// From the moment the port has left its VLAN it is in none, until it has arrived in the new one.
bool Network::moveManagementPort(unsigned int vlanId) {
    trace("[networkBLE]: setVlan: trying to deleted mng port from vlan: %d\n", mngVlanId);
    int port = 0;
    if (interfaceMngGet(&port) != 0) {
        return false;
    }
    trace("[networkBLE]: setVlan: mng port id is: %d\n", port);
    if (mngVlanId != 0) {
        if (zuvlanDelMembership(defaultDatabase, mngVlanId, port) != 0) {
            return false;
        }
        mngVlanId = 0;
    }
    // The second number is 0 by now, whatever the port has left.
    trace("[networkBLE]: setVlan: mng port (%d): deleted from vlan: %d\n", port, mngVlanId);
    if (zuvlanAddMembership(defaultDatabase, tagOf(vlanId), port) != 0) {
        return false;
    }
    trace("[networkBLE]: setVlan: mng port (%d): added to vlan: %d\n", port, vlanId);
    if (zuvlanSetPvid(defaultDatabase, tagOf(vlanId), port) != 0) {
        return false;
    }
    trace("[networkBLE]: setVlan: mng port (%d): Pvid set to: %d\n", port, vlanId);
    return true;
}

int Network::setDefVlanMode(unsigned int defVid, unsigned int defMode) {
    constexpr const char* operation = "setDefVlanMode";
    // The entry is traced at the level of failures.
    networkBleSyslog(LOG_ERR, "[networkBLE]: %s():%d Entering function: defVid=%d, defMode=%d\n",
                     operation, entryLabel, defVid, defMode);
    const BLLManager::exclusiveLock_t lock;
    if (!lock.isObtained()) {
        const int refused = reportRefusedLock();
        networkBleSyslog(LOG_ERR, "[networkBLE]: %s():%d\n", operation, refusedLockLabel);
        return refused;
    }
    if (reportIf(defVid == 0 || checkProfileMode() == 0, "[networkBLE]: %s():%d\n", operation,
                 refusedArgumentLabel)) {
        return -1;
    }
    const bool native = defMode == nativeMode;
    int status = defConnectCheckUplinkConflict(defVid, native);
    if (reportIf(status != 0, "[networkBLE]: %s: VLAN conflict on network-interface (rv = %d)\n",
                 operation, status)) {
        return -1;
    }
    status = defConnectReconfigureDefVlan(defVid, native);
    return resultOf(status, "[networkBLE]: %s: reconfiguring DEFAULT VLAN failed (rv = %d)\n",
                    operation, status);
}

/// The identity of the shelf is part of the circuit id.
void Network::onShelfIdVlanChange(const std::string&) {
    withExclusiveLock([] {
        singleton<Network>::instance().dhcpCehckBeforeSetOption82(nullptr);
        return 0;
    });
}
