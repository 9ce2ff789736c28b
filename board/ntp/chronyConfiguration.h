#pragma once

#include "varo/sntpRecords.h"

#include <filesystem>
#include <string>

namespace ntp {

/// The files of the client.
struct Files {
    explicit Files(const std::filesystem::path& directory)
        : configuration(directory / "chrony.conf"),
          socket(directory / "chronyd.sock"),
          drift(directory / "chrony.drift"),
          processId(directory / "chronyd.pid") {}

    std::filesystem::path configuration;
    std::filesystem::path socket;  ///< where it is asked for its state
    std::filesystem::path drift;
    std::filesystem::path processId;
};

/// True if the client is to run: it is on and has a server.
bool isWanted(const rpcSntpConfigHost& config);

/// A configuration in the form of chrony.conf(5): a client that serves nobody and asks by way of an
/// interface, any if the name is empty. A server that is named twice is asked once. Throws
/// std::runtime_error if a path has a blank, or is too long for a socket.
std::string configurationOf(const rpcSntpConfigHost& config, const Files& files,
                            const std::string& interface);

}  // namespace ntp
