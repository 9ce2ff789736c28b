#include "board/host/platformOptions.h"

#include "board/bridge/systemMac.h"
#include "board/framework/softwareVersion.h"

#include <CLI/CLI.hpp>

namespace host {

namespace {

/// Returns what is wrong; empty: nothing.
std::string objectionToMac(const std::string& text) {
    return bridge::parseMac(text) ? ""
                                  : "not the MAC address of a station, six bytes such as "
                                    "00:1b:21:3c:4d:5e: " +
                                        text;
}

}  // namespace

void addPlatformOptions(CLI::App& app, PlatformOptions& options) {
    app.add_option("--software-version-file", options.softwareVersionFile,
                   "File whose first line is the version of the system software as a whole")
        ->type_name("PATH");
    app.add_option("--system-mac", options.systemMac,
                   "MAC address of the system; without it, that of the management port")
        ->type_name("ADDRESS")
        ->check(objectionToMac);
}

void configurePlatform(const PlatformOptions& options) {
    framework::setSoftwareVersionFile(options.softwareVersionFile.empty()
                                          ? options.softwareVersionFile
                                          : std::filesystem::absolute(options.softwareVersionFile));
    bridge::setSystemMac(bridge::parseMac(options.systemMac));
}

}  // namespace host
