#pragma once

#include "board/process/Daemon.h"
#include "board/snmp/snmpdConfiguration.h"

#include <filesystem>
#include <string>
#include <vector>

namespace snmp {

struct Settings {
    /// Program and first arguments of the agent, which takes those of snmpd(8).
    std::vector<std::string> command;
    /// Directory of the agent's files, made if need be and closed to others: they hold communities.
    std::filesystem::path directory;
    std::string interface;  ///< Linux interface that it serves; empty: all
};

/// Runs the agent with the values that it is handed. It is started when all three records are
/// there. It takes most changes by reading its configuration again, which loses no request; it is
/// started anew when a system text becomes or was empty, or begins or ends with a blank.
///
/// Calls come one at a time. They throw std::exception when the values are not in force.
class Agent {
public:
    Agent(Settings agentSettings, support::Log log);

    void apply(const varoLib_s_subag& trapManagers);
    void apply(const varoLib_s_snmpCommunity& communities);
    void apply(const varoLib_s_snmpSystem& system);

    /// Ends the agent for good.
    void end() { daemon.end(); }

private:
    const Settings settings;
    process::Daemon daemon;
    Values values;
    bool hasTrapManagers = false;
    bool hasCommunities = false;
    bool hasSystem = false;
    bool isStarted = false;

    void apply();
    std::vector<std::string> command(const std::filesystem::path& file) const;
};

}  // namespace snmp
