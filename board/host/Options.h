#pragma once

#include "board/host/boardServices.h"
#include "framework/Log.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace host {

/// How bllhost ends.
enum ExitStatus : int {
    orderlyEnd = 0,
    couldNotStart = 1,
    wrongUsage = 2,
    /// A second signal ends the process at once, with this and the signal's number added.
    endedBySignal = 128
};

/// What the platform's services say of the board.
struct PlatformOptions {
    std::filesystem::path softwareVersionFile;  ///< empty: the version is not known
    std::string systemMac;                      ///< empty: that of the management port
};

/// Hands the options to the platform's services.
void configurePlatform(const PlatformOptions& options);

struct Options {
    std::filesystem::path library;
    std::filesystem::path stateDirectory;
    std::filesystem::path resolverFile;          ///< empty: none is written
    std::string filterTable = "networkble_acl";  ///< empty: access lists filter nothing
    std::string managementInterface = "mng0";
    std::string dhcpClient = "busybox udhcpc";  ///< program and first arguments; empty: none
    std::string dhcp6Client = "dhclient";       ///< likewise
    std::string dhcpVendorClass = "VANTORIX";
    std::filesystem::path acsPidFile;  ///< empty: there is no auto-configuration client
    std::uint32_t boardPosition = 1;
    PlatformOptions platform;
    ServiceOptions services;
    std::chrono::milliseconds stopTimeout{6'000};
    std::chrono::milliseconds lockTimeout{10'000};
    LogImpl::logLevel_t logLevel = LogImpl::levelInfo;
};

/// Reads the command line; paths become absolute. Returns an exit status instead when there is
/// nothing to run: the help or the error has then been printed.
std::variant<Options, int> readOptions(int argumentCount, const char* const* arguments);

/// The words of a command line, split at blanks.
inline std::vector<std::string> words(const std::string& command) {
    std::istringstream stream(command);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace host
