#pragma once

#include "board/support/LogChannel.h"

#include <filesystem>
#include <string>

namespace switchboard {

/// What the host process tells the switch about its surroundings.
struct Configuration {
    /// Existing directory that keeps the state of the switch, file name `switch.json`, across
    /// restarts.
    std::filesystem::path stateDirectory;
    /// Receives the log lines of the switch, and must not call the switch. Empty: they go to
    /// syslog(3).
    support::Log log{};
    /// Linux name of the management interface, whose Ethernet address stands in the static entry
    /// of the management port.
    std::string managementInterface = "mng0";
};

/// To be called before the first call of the switch, which fails until then. A later call counts at
/// once; the state is then read anew. Also tells the framework whom to ask for the VLANs.
void configure(Configuration configuration);

/// Takes the management port out of all VLANs but VLAN 1 and makes this its PVID, with a log line
/// if it was anything else. To be called before the entity that moves the port is created: that one
/// takes it to be in VLAN 1, and could move it no more. Returns a Code.
int returnManagementPort();

}  // namespace switchboard
