#pragma once

#include <functional>
#include <string>

namespace framework {

/// What front ends are told of the DHCP client: how it identifies the board to the server.
struct DhcpReport {
    bool isVendorClassOn = false;
    std::string vendorClass;  ///< that is sent when it is on (RFC 2132, option 60)
    bool isOption82On = false;
    std::string circuitId;  ///< of option 82 (RFC 3046, sub-option 1); empty: never made
};

/// Says who tells of the DHCP client: a function that may be called from any thread, and throws
/// std::exception with the reason when it cannot tell. Empty: nobody.
void setDhcpReporter(std::function<DhcpReport()> reporter);

/// Asks the reporter. Throws what it throws, and std::runtime_error when there is none.
DhcpReport dhcpReport();

}  // namespace framework
