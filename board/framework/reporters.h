#pragma once

#include "board/framework/Reporter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace framework {

/// What front ends are told of the switch.
struct VlanReport {
    struct Vlan {
        std::uint32_t id;
        std::vector<int> members;    ///< port ids, ascending
        std::vector<int> pvidPorts;  ///< those of them whose untagged traffic is of this VLAN
    };

    std::vector<Vlan> vlans;  ///< by id, ascending
    std::uint32_t defaultVlan;
    bool defaultNative;
    std::uint32_t managementVlan;  ///< that was persisted; 0: none
};

/// How the DHCP client identifies the board to the server.
struct DhcpIdentity {
    bool isVendorClassOn = false;
    std::string vendorClass;  ///< that is sent when it is on (RFC 2132, option 60)
    bool isOption82On = false;
    std::string circuitId;  ///< of option 82 (RFC 3046, sub-option 1); empty: never made
};

Reporter<VlanReport>& vlanReporter();
Reporter<DhcpIdentity>& dhcpIdentityReporter();

}  // namespace framework
