#pragma once

#include <string>

namespace framework {

/// What a relay agent was told of the system, in the texts of SNMP's system group (RFC 3418).
struct SystemTexts {
    std::string contact;
    std::string location;
    std::string name;

    bool operator==(const SystemTexts&) const = default;
};

/// Of the DHCP relay agent, and of the PPPoE intermediate agent. Empty until they are told.
SystemTexts dhcpRelaySystemTexts();
SystemTexts pppoeAgentSystemTexts();

}  // namespace framework
