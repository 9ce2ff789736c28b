#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>

namespace switchboard {

/// The ports of the switch, by their ids.
inline constexpr int managementPort = 1;
/// The network interface of the shelf. Its PVID is the VLAN that is native on it; it carries the
/// others that it is in with their tags.
inline constexpr int uplinkPort = 100;

using VlanId = std::uint32_t;

inline constexpr VlanId factoryVlan = 1;
/// VLAN ids are 1 to 4094 (IEEE 802.1Q); 0 and 4095 are reserved.
inline constexpr VlanId highestVlan = 4094;
inline constexpr VlanId noVlan = 0;

/// An Ethernet address that the switch never learns elsewhere.
struct StaticEntry {
    int port;
    VlanId vlan;
    std::array<unsigned char, 6> address;

    bool operator==(const StaticEntry&) const = default;
};

/// What is kept of the switch. A port has at most one PVID, of a VLAN that it is in.
struct VlanState {
    std::map<VlanId, std::set<int>> members;  ///< the VLANs that exist, with their ports
    std::map<int, VlanId> pvids;              ///< by port
    VlanId defaultVlan = factoryVlan;
    bool defaultNative = false;      ///< untagged on the uplink; else tagged
    VlanId managementVlan = noVlan;  ///< that was persisted
    std::optional<StaticEntry> managementEntry;

    bool operator==(const VlanState&) const = default;

    /// VLAN 1 with management port and uplink, PVID of the former, tagged default VLAN.
    static VlanState factory();
};

/// The VLANs of the switch and the rules that their changes keep. An operation that throws Failure
/// has changed nothing.
class VlanDatabase {
public:
    /// Throws std::invalid_argument, saying why, for a state that cannot be.
    explicit VlanDatabase(VlanState content = VlanState::factory());

    const VlanState& state() const { return content; }

    /// Throws Failure: invalidVlan, vlanExists.
    void create(VlanId vlan);
    /// The ports in a VLAN. Throws Failure: invalidVlan, noSuchVlan.
    const std::set<int>& membersOf(VlanId vlan) const;
    /// Changes nothing if the port is in the VLAN. Throws Failure: invalidVlan, noSuchVlan,
    /// noSuchPort.
    void addMember(VlanId vlan, int port);
    /// The port loses its PVID and its static entry if they name the VLAN. The uplink does not
    /// leave the default VLAN. Throws Failure: invalidVlan, noSuchVlan, noSuchPort, notMember,
    /// uplinkConflict.
    void removeMember(VlanId vlan, int port);
    /// That of the uplink says which VLAN is native there, which has to agree with the default
    /// VLAN. Throws Failure: invalidVlan, noSuchVlan, noSuchPort, notMember, uplinkConflict.
    void setPvid(VlanId vlan, int port);

    /// The VLAN as the default one: native, it must find no other VLAN native on the uplink than
    /// the present default VLAN, whose place it takes; tagged, it must not be native there by
    /// itself. Throws Failure: invalidVlan, noSuchVlan, uplinkConflict.
    void checkUplinkConflict(VlanId vlan, bool native) const;
    /// Puts the uplink into the VLAN, tagged or native; it stays in the former default VLAN,
    /// tagged. Throws as checkUplinkConflict.
    void setDefault(VlanId vlan, bool native);

    /// Management traffic must be told from the native VLAN of the uplink, unless this is the
    /// default VLAN. The VLAN need not exist. Throws Failure: invalidVlan, profileConflict.
    void checkManagement(VlanId vlan) const;
    /// Throws Failure: invalidVlan, noSuchVlan.
    void persistManagement(VlanId vlan);
    /// Makes the static entry of the management port for the VLAN of its PVID. Throws Failure:
    /// notMember.
    void refreshManagementEntry(const std::array<unsigned char, 6>& address);
    /// Leaves the management port in VLAN 1 only, with this PVID. Returns whether it was otherwise.
    bool returnManagementPort();

    /// The PVID of a port, noVlan if it has none.
    VlanId pvidOf(int port) const;

private:
    VlanState content;

    std::set<int>& existing(VlanId vlan);
    void checkMember(VlanId vlan, int port) const;
};

}  // namespace switchboard
