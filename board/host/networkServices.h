#pragma once

#include "board/varo/hostAppliers.h"

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

/// Programs that serve the management interface: first the program, then its first arguments, with
/// blanks between. Empty: none is run.
struct NetworkServiceOptions {
    std::string snmpAgent;
    std::string ntpClient;
};

void addNetworkServiceOptions(CLI::App& app, NetworkServiceOptions& options);

/// The programs, which run with what the configuration library hands to them.
class NetworkServices {
public:
    NetworkServices();
    ~NetworkServices();
    NetworkServices(const NetworkServices&) = delete;
    NetworkServices& operator=(const NetworkServices&) = delete;

    /// Supplies the appliers of the services that there is a program for. Their files go to
    /// directories in the state directory. The object has to outlive their use.
    void supply(const NetworkServiceOptions& options, const std::filesystem::path& stateDirectory,
                const std::string& managementInterface, varo::Appliers& appliers);

    /// Ends the programs.
    void end();

private:
    std::unique_ptr<snmp::Agent> snmpAgent;
    std::unique_ptr<ntp::NtpClient> ntpClient;
};

}  // namespace host
