#include "board/host/boardServices.h"

#include "board/framework/Framework.h"
#include "board/host/Options.h"
#include "board/ntp/NtpClient.h"
#include "board/services/SessionServers.h"
#include "board/services/timeZone.h"
#include "board/snmp/Agent.h"
#include "board/support/LogChannel.h"

#include <CLI/CLI.hpp>

#include <utility>
#include <vector>

namespace host {

namespace {

namespace fs = std::filesystem;

void addServer(CLI::App& app, const std::string& name, std::string& command,
               const std::string& what) {
    app.add_option("--" + name + "-server", command,
                   "Command of the " + what +
                       " server, one that serves the connection on its standard input; without "
                       "it, none is run")
        ->type_name("COMMAND");
}

fs::path absoluteOrEmpty(const fs::path& file) { return file.empty() ? file : fs::absolute(file); }

}  // namespace

void addServiceOptions(CLI::App& app, ServiceOptions& options) {
    addServer(app, "telnet", options.telnetServer, "telnet");
    addServer(app, "ssh", options.sshServer, "SSH");
    addServer(app, "ftp", options.ftpServer, "FTP");
    app.add_option("--localtime-file", options.localtimeFile,
                   "File in the form of tzfile(5) to write the time zone to; no symbolic link")
        ->type_name("PATH");
    app.add_option("--tz-file", options.timeZoneRuleFile,
                   "File to write the time zone to as a rule of the variable TZ; no symbolic link")
        ->type_name("PATH");
    app.add_option("--snmp-agent", options.snmpAgent,
                   "Command of the SNMP agent, one that takes the options of snmpd; without it, "
                   "none is run")
        ->type_name("COMMAND");
    app.add_option("--ntp-client", options.ntpClient,
                   "Command of the NTP client, one that takes the options of chronyd; without it, "
                   "none is run")
        ->type_name("COMMAND");
}

BoardServices::BoardServices() = default;
BoardServices::~BoardServices() = default;

varo::Appliers BoardServices::supply(const ServiceOptions& options, const fs::path& stateDirectory,
                                     const std::string& managementInterface) {
    varo::Appliers appliers;
    const services::TimeZoneFiles files{absoluteOrEmpty(options.localtimeFile),
                                        absoluteOrEmpty(options.timeZoneRuleFile)};
    appliers.timeZone = [files](const auto& zone) { services::writeTimeZone(files, zone); };
    if (!options.telnetServer.empty() || !options.sshServer.empty() || !options.ftpServer.empty()) {
        // Never destroyed, as the process leaves while threads run.
        auto& servers = *new services::SessionServers({
            .interface = managementInterface,
            .telnet = words(options.telnetServer),
            .ssh = words(options.sshServer),
            .ftp = words(options.ftpServer),
            .log = support::systemLog(),
        });
        appliers.telnet = [&servers](const auto& record) { servers.applyTelnet(record); };
        appliers.ssh = [&servers](const auto& record) { servers.applySsh(record); };
        appliers.ftp = [&servers](const auto& record) { servers.applyFtp(record); };
    }
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
    return appliers;
}

void BoardServices::end() {
    if (snmpAgent) {
        snmpAgent->end();
    }
    if (ntpClient) {
        ntpClient->end();
    }
}

}  // namespace host
