#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace framework {

/// Port id of the management port, the only one that this board has a registry entry for.
inline constexpr int managementPort = 1;

/// The longest Linux name that callers of the registry have room for, without its terminator.
inline constexpr std::size_t longestPortName = 8;

/// Sets the Linux name of the management port, "mng0" until then. To be called before other threads
/// ask for it.
void nameManagementPort(const std::string& linuxName);

/// Names the file whose first line is the version of the system software as a whole. It is read
/// each time that somebody asks. Empty, as at first: the version is not known.
void setSoftwareVersionFile(const std::filesystem::path& file);

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
