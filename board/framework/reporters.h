#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace framework {

/// Asks whoever knows for what front ends are told of it. For all threads.
template <class Report>
class Reporter {
public:
    /// `absence` is the failure of a board on which nobody knows; it has to live as long.
    explicit Reporter(const char* absence) : reason(absence) {}

    /// Says who knows: a function that may be called from any thread, and throws std::exception
    /// with the reason when it cannot tell. Empty: nobody.
    void set(std::function<Report()> function) {
        const std::lock_guard lock(mutex);
        known = std::move(function);
    }

    /// Throws what the function throws, and std::runtime_error when there is none.
    Report ask() {
        std::function<Report()> function;
        {
            const std::lock_guard lock(mutex);
            function = known;
        }
        if (!function) {
            throw std::runtime_error(reason);
        }
        return function();
    }

private:
    const char* const reason;
    std::mutex mutex;
    std::function<Report()> known;
};

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
