#pragma once

#include "board/varo/varoConfiguration.h"

#include <filesystem>
#include <memory>
#include <string>

namespace CLI {
class App;
}
namespace ntp {
class NtpClient;
}
namespace snmp {
class Agent;
}

namespace host {

/// Programs and files of the services. Of a program, first comes its path, then its first
/// arguments, with blanks between. Empty: none is run, or written.
struct ServiceOptions {
    // Each serves one connection.
    std::string telnetServer;
    std::string sshServer;
    std::string ftpServer;
    std::filesystem::path localtimeFile;
    std::filesystem::path timeZoneRuleFile;
    std::string snmpAgent;
    std::string ntpClient;
};

void addServiceOptions(CLI::App& app, ServiceOptions& options);

/// What carries out the settings that the configuration library only keeps. The library knows no
/// service: here, and nowhere else, a setting meets the one that is told of it.
class BoardServices {
public:
    BoardServices();
    ~BoardServices();
    BoardServices(const BoardServices&) = delete;
    BoardServices& operator=(const BoardServices&) = delete;

    /// The appliers of the services that the options name. Files of the programs go to directories
    /// in the state directory. The object has to outlive their use.
    varo::Appliers supply(const ServiceOptions& options,
                          const std::filesystem::path& stateDirectory,
                          const std::string& managementInterface);

    /// Ends the programs; the sessions' servers end with the process.
    void end();

private:
    std::unique_ptr<snmp::Agent> snmpAgent;
    std::unique_ptr<ntp::NtpClient> ntpClient;
};

}  // namespace host
