#pragma once

#include "platform/handle.h"

#include <cstdint>

/// VLAN database, default connection and profile rules of the shelf's switch. Calls return 0 on
/// success unless said otherwise; VLAN ids are 1 to 4094 (IEEE 802.1Q), port ids those of
/// interfaceMngGet.

/// What the database knows of a VLAN.
struct zuvlanInfo_t {
    unsigned char opaque[64];
};

extern "C" {

/// Fails when the VLAN is not in the database.
int zuvlanGetVlanInfoId(zuHandle_t handle, std::uint32_t vlanId, zuvlanInfo_t* info);
int zuvlanCreate(zuHandle_t handle, std::uint32_t vlanId);
int zuvlanAddMembership(zuHandle_t handle, std::uint16_t vlanId, int portId);
int zuvlanDelMembership(zuHandle_t handle, std::uint32_t vlanId, int portId);
/// Sets the VLAN of the port's untagged traffic.
int zuvlanSetPvid(zuHandle_t handle, std::uint16_t vlanId, int portId);
/// Persists the management VLAN.
int vlanMngWrite(std::uint32_t vlanId);

/// Whether the VLAN conflicts with one on an uplink, if it were the default VLAN.
int defConnectCheckUplinkConflict(std::uint32_t vlanId, bool native);
/// Makes the VLAN the shelf's default VLAN, untagged (native) or tagged.
int defConnectReconfigureDefVlan(std::uint32_t vlanId, bool native);
/// The default VLAN (a value, not a status).
std::uint32_t defConnectGetDefVid();
/// Non-zero while the default VLAN is native (a value, not a status).
int defConnectGetDefModeNative();

/// Whether the VLAN may carry management traffic under the uplink rules of the profile.
int mngConnectCheckVlanProfileUplinkNative(std::uint32_t vlanId);
}
