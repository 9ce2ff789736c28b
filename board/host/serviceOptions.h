#pragma once

#include "board/varo/hostAppliers.h"

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace host {

/// Terminal and file-transfer services, and the time zone.
struct ServiceOptions {
    // Program and arguments of each server, which serves one connection; empty: none is run.
    std::string telnetServer;
    std::string sshServer;
    std::string ftpServer;
    std::filesystem::path localtimeFile;     ///< empty: none is written
    std::filesystem::path timeZoneRuleFile;  ///< empty: none is written
};

void addServiceOptions(CLI::App& app, ServiceOptions& options);

/// Adds what puts the settings into force on this machine. It lives until the process ends.
void addServiceAppliers(varo::Appliers& appliers, const ServiceOptions& options,
                        const std::string& managementInterface);

}  // namespace host
