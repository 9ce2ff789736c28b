#include "board/host/networkServices.h"

#include "board/framework/Framework.h"
#include "board/ntp/NtpClient.h"
#include "board/snmp/Agent.h"

#include <CLI/CLI.hpp>

#include <iterator>
#include <sstream>
#include <vector>

namespace host {

namespace {

std::vector<std::string> words(const std::string& command) {
    std::istringstream stream(command);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace

void addNetworkServiceOptions(CLI::App& app, NetworkServiceOptions& options) {
    app.add_option("--snmp-agent", options.snmpAgent,
                   "Command of the SNMP agent, one that takes the options of snmpd; without it, "
                   "none is run")
        ->type_name("COMMAND");
    app.add_option("--ntp-client", options.ntpClient,
                   "Command of the NTP client, one that takes the options of chronyd; without it, "
                   "none is run")
        ->type_name("COMMAND");
}

NetworkServices::NetworkServices() = default;
NetworkServices::~NetworkServices() = default;

void NetworkServices::supply(const NetworkServiceOptions& options,
                             const std::filesystem::path& stateDirectory,
                             const std::string& managementInterface, varo::Appliers& appliers) {
    if (auto command = words(options.snmpAgent); !command.empty()) {
        snmpAgent = std::make_unique<snmp::Agent>(
            snmp::Settings{std::move(command), stateDirectory / "snmp", managementInterface},
            framework::writeLog);
        appliers.trapManagers = [this](const auto& values) { snmpAgent->apply(values); };
        appliers.snmpCommunities = [this](const auto& values) { snmpAgent->apply(values); };
        appliers.snmpSystem = [this](const auto& values) { snmpAgent->apply(values); };
    }
    if (auto command = words(options.ntpClient); !command.empty()) {
        ntpClient = std::make_unique<ntp::NtpClient>(
            ntp::Settings{std::move(command), stateDirectory / "ntp", managementInterface},
            framework::writeLog);
        appliers.ntp = [this](const auto& config) { ntpClient->apply(config); };
        appliers.ntpStatistics = [this](const auto& config) { return ntpClient->status(config); };
    }
}

void NetworkServices::end() {
    if (snmpAgent) {
        snmpAgent->end();
    }
    if (ntpClient) {
        ntpClient->end();
    }
}

}  // namespace host
