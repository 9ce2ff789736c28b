#pragma once

#include "board/process/Daemon.h"
#include "varo/sntpRecords.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ntp {

struct Settings {
    /// Program and first arguments of the client, which takes those of chronyd(8). chronyc(1), of
    /// the same package, is found in PATH.
    std::vector<std::string> command;
    /// Directory of the client's files, made if need be and closed to others.
    std::filesystem::path directory;
    std::string interface;  ///< Linux interface by way of which servers are asked; empty: any
};

/// Runs the NTP client with the configuration that it is handed, or none while that is off or names
/// no server.
class NtpClient {
public:
    NtpClient(Settings clientSettings, support::Log log);

    /// Starts the client anew. Calls come one at a time. Throws std::exception when the
    /// configuration is not in force.
    void apply(const rpcSntpConfigHost& config);

    /// What the client says of itself; called from any thread. Throws std::exception when it does
    /// not run, or does not answer within a second.
    rpcSntpInfoHost status(const rpcSntpConfigHost& config);

    /// Ends the client for good.
    void end() { daemon.end(); }

private:
    const Settings settings;
    process::Daemon daemon;
    bool isStarted = false;
};

}  // namespace ntp
