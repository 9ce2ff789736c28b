#pragma once

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <string>

inline constexpr int cordProfile = 12;

inline const std::string noProfile = "checkProfileMode() -> 0";
inline const std::string profile = "checkProfileMode() -> 1";
inline const std::string looksUp = trace("setVlan: checking VLAN database");
inline const std::string option82Off =
    R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=0 circuitId=""})";
inline const std::string securityRefreshed = "updateMngStaticEntry() -> 0";

/// The port leaves a VLAN.
inline Entries left(const std::string& vlan) {
    return {trace("setVlan: trying to deleted mng port from vlan: " + vlan),
            "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
            "zuvlanDelMembership(" + vlan + ", 1) -> 0",
            trace("setVlan: mng port (1): deleted from vlan: 0")};
}

/// The port enters a VLAN: by its 16 bits, and told by its id.
inline Entries entered(const std::string& tag, const std::string& vlan) {
    return {"zuvlanAddMembership(" + tag + ", 1) -> 0",
            trace("setVlan: mng port (1): added to vlan: " + vlan),
            "zuvlanSetPvid(" + tag + ", 1) -> 0",
            trace("setVlan: mng port (1): Pvid set to: " + vlan)};
}

/// Tests of the management VLAN, with one to move to.
class VlanTest : public EntityTest {
protected:
    VlanTest() {
        platform.shelf.vlans[100];
        logEverything();
    }

    /// The management VLAN as callers see it.
    unsigned int managementVlan() {
        Network::NetworkInfo info{};
        EXPECT_EQ(entity().getNetworkInfo(&info), 0);
        journal();
        return info.mngVlanId;
    }
    bool isMember(std::uint32_t vlan) { return platform.shelf.vlans[vlan].contains(1); }
};
