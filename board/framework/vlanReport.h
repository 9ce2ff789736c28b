#pragma once

#include <cstdint>
#include <functional>
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

/// Says who tells of the VLANs: a function that may be called from any thread, and throws
/// std::exception with the reason when it cannot tell. Empty: nobody.
void setVlanReporter(std::function<VlanReport()> reporter);

/// Asks the reporter. Throws what it throws, and std::runtime_error when there is none.
VlanReport vlanReport();

}  // namespace framework
