#include "board/snmp/Agent.h"

#include "board/support/wholeFile.h"

#include <fmt/format.h>

#include <chrono>
#include <stdexcept>
#include <utility>

namespace snmp {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longestChange{15};

bool machineHasIpv6() { return fs::exists("/proc/net/if_inet6"); }

}  // namespace

Agent::Agent(Settings agentSettings, support::Log log)
    : settings(std::move(agentSettings)),
      daemon({.name = "the SNMP agent",
              .readyMark = "NET-SNMP version",
              .reloadedMark = "restarted",
              .interface = settings.interface},
             std::move(log)) {}

void Agent::apply(const varoLib_s_subag& trapManagers) {
    values.trapManagers = trapManagers;
    hasTrapManagers = true;
    apply();
}

void Agent::apply(const varoLib_s_snmpCommunity& communities) {
    values.communities = communities;
    hasCommunities = true;
    apply();
}

void Agent::apply(const varoLib_s_snmpSystem& system) {
    values.system = system;
    hasSystem = true;
    apply();
}

void Agent::apply() {
    if (!hasTrapManagers || !hasCommunities || !hasSystem) {
        return;
    }
    fs::create_directories(settings.directory);
    fs::permissions(settings.directory, fs::perms::owner_all);
    const fs::path file = settings.directory / "snmpd.conf";
    // The agent would take it for the names of two files.
    if (file.string().find(',') != std::string::npos) {
        throw std::runtime_error(fmt::format("the path {} has a comma", file.string()));
    }
    const Configuration configuration =
        configurationOf(values, settings.interface, machineHasIpv6());
    support::replaceFile(file, configuration.text);
    daemon.want(command(file), configuration.fixedPart);
    // Whoever opens the library need not wait for the agent.
    if (std::exchange(isStarted, true)) {
        daemon.await(longestChange);
    }
}

/// No other configuration counts, no MIB files are looked for, and what the agent keeps for itself
/// stays in its directory.
std::vector<std::string> Agent::command(const fs::path& file) const {
    const fs::path kept = settings.directory / "kept";
    std::vector<std::string> words{"env",
                                   "MIBS=", fmt::format("SNMP_PERSISTENT_DIR={}", kept.string())};
    words.insert(words.end(), settings.command.begin(), settings.command.end());
    words.insert(words.end(), {"-f", "-Le", "-C", "-c", file.string()});
    return words;
}

}  // namespace snmp
