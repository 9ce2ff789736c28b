#pragma once

#include "board/host/boardServices.h"
#include "board/host/platformOptions.h"
#include "framework/Log.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>

namespace host {

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

}  // namespace host
