#include "board/host/Options.h"

#include "board/bridge/systemMac.h"
#include "board/framework/boardIdentity.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <string>

namespace host {

namespace {

constexpr double longestTimeout = 3600;

constexpr const char* description =
    "The business-logic process of the shelf controller: loads an entity library, starts its\n"
    "entities and serves their remote procedures until it is told to end.";

constexpr const char* footer =
    "The process ends on SIGTERM, on SIGINT, or when a client of the control program asks for it.\n"
    "A second signal ends it at once. It needs the port mapper (rpcbind).\n"
    "\n"
    "Exit status: 0 after an orderly end, 1 if it could not start, 2 for wrong usage, 128 and the\n"
    "signal's number if a second signal ended it.\n"
    "\n"
    "Example: bllhost --library /usr/lib/networkble/libnetworkble.so --state /var/lib/networkble";

/// Checks of the command line return what is wrong; empty: nothing.
std::string isPortName(const std::string& name) {
    const auto isUnusable = [](char c) { return c == '/' || c == ':' || c <= ' ' || c > '~'; };
    if (name.empty() || name.size() > framework::longestPortName ||
        std::any_of(name.begin(), name.end(), isUnusable) || name == "." || name == "..") {
        return "not the name of an interface, of 1 to " +
               std::to_string(framework::longestPortName) + " characters: " + name;
    }
    return {};
}

/// Its length is an octet in the packet (RFC 2132).
std::string isVendorClass(const std::string& text) {
    if (text.empty() || text.size() > 255) {
        return "a vendor class has 1 to 255 characters";
    }
    return {};
}

/// People must be able to name it to nft(8).
std::string isTableName(const std::string& name) {
    constexpr std::size_t longest = 127;
    const auto isUsable = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    };
    if (name.size() > longest || !std::ranges::all_of(name, isUsable)) {
        return "not the name of a table, of letters, digits and underscores: " + name;
    }
    return {};
}

/// An option that takes seconds, with fractions.
class Seconds {
public:
    Seconds(CLI::App& app, const std::string& name, const std::string& help,
            std::chrono::milliseconds initial)
        : value(std::chrono::duration<double>(initial).count()) {
        app.add_option(name, value, help)
            ->type_name("SECONDS")
            ->check(CLI::Range(0.0, longestTimeout))
            ->capture_default_str();
    }
    Seconds(const Seconds&) = delete;
    Seconds& operator=(const Seconds&) = delete;

    std::chrono::milliseconds get() const {
        return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(value));
    }

private:
    double value;
};

void addFileOptions(CLI::App& app, Options& options) {
    app.add_option("--library", options.library, "Shared library whose entities are run")
        ->type_name("PATH")
        ->required();
    app.add_option("--state", options.stateDirectory,
                   "Existing directory that keeps configuration across restarts")
        ->type_name("DIR")
        ->required();
    app.add_option("--resolv-conf", options.resolverFile,
                   "File in the form of resolv.conf(5) to write the resolver settings to")
        ->type_name("PATH");
}

/// What the management interface and its DHCP clients are.
void addManagementOptions(CLI::App& app, Options& options) {
    app.add_option("--management-interface", options.managementInterface,
                   "Linux interface that is the board's management port")
        ->type_name("NAME")
        ->check(isPortName)
        ->capture_default_str();
    app.add_option("--dhcp-client", options.dhcpClient,
                   "Command of the DHCP client, one that takes the options of BusyBox's udhcpc; "
                   "empty for none")
        ->type_name("COMMAND")
        ->capture_default_str();
    app.add_option("--dhcpv6-client", options.dhcp6Client,
                   "Command of the DHCPv6 client, one that takes the options of ISC's dhclient; "
                   "empty for none")
        ->type_name("COMMAND")
        ->capture_default_str();
    app.add_option("--dhcp-vendor-class", options.dhcpVendorClass,
                   "Vendor class that the DHCP client sends when it is told to")
        ->type_name("TEXT")
        ->check(isVendorClass)
        ->capture_default_str();
    app.add_option("--acs-pid-file", options.acsPidFile,
                   "File with the process id of the auto-configuration client, which is told of a "
                   "new address")
        ->type_name("PATH");
}

std::string objectionToMac(const std::string& text) {
    return bridge::parseMac(text) ? ""
                                  : "not the MAC address of a station, six bytes such as "
                                    "00:1b:21:3c:4d:5e: " +
                                        text;
}

void addPlatformOptions(CLI::App& app, PlatformOptions& options) {
    app.add_option("--software-version-file", options.softwareVersionFile,
                   "File whose first line is the version of the system software as a whole")
        ->type_name("PATH");
    app.add_option("--system-mac", options.systemMac,
                   "MAC address of the system; without it, that of the management port")
        ->type_name("ADDRESS")
        ->check(objectionToMac);
}

/// The process leaves its working directory.
void makePathsAbsolute(Options& options) {
    options.library = std::filesystem::absolute(options.library);
    options.stateDirectory = std::filesystem::absolute(options.stateDirectory);
    if (!options.resolverFile.empty()) {
        options.resolverFile = std::filesystem::absolute(options.resolverFile);
    }
    if (!options.acsPidFile.empty()) {
        options.acsPidFile = std::filesystem::absolute(options.acsPidFile);
    }
}

}  // namespace

std::variant<Options, int> readOptions(int argumentCount, const char* const* arguments) {
    Options options;
    CLI::App app(description, "bllhost");
    app.footer(footer);
    addFileOptions(app, options);
    addManagementOptions(app, options);
    app.add_option("--board-position", options.boardPosition, "Position of the board in its shelf")
        ->type_name("N")
        ->capture_default_str();
    app.add_option(
           "--filter-table", options.filterTable,
           "nftables table, family inet, for the access lists; one that exists is replaced. "
           "Empty: they filter nothing")
        ->type_name("NAME")
        ->check(isTableName)
        ->capture_default_str();
    addPlatformOptions(app, options.platform);
    addServiceOptions(app, options.services);
    const Seconds stopTimeout(app, "--stop-timeout",
                              "Time for an orderly end; entities that need longer are left behind",
                              options.stopTimeout);
    const Seconds lockTimeout(app, "--lock-timeout",
                              "How long an operation waits for the configuration lock",
                              options.lockTimeout);
    int logLevel = options.logLevel;
    app.add_option("--log-level", logLevel,
                   "Least severe messages to log: 0 error, 1 warning, 2 info, 3 debug")
        ->type_name("N")
        ->check(CLI::Range(static_cast<int>(LogImpl::levelError),
                           static_cast<int>(LogImpl::levelDebug)))
        ->capture_default_str();

    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? orderlyEnd : wrongUsage;
    }
    makePathsAbsolute(options);
    options.stopTimeout = stopTimeout.get();
    options.lockTimeout = lockTimeout.get();
    options.logLevel = static_cast<LogImpl::logLevel_t>(logLevel);
    return options;
}

void configurePlatform(const PlatformOptions& options) {
    framework::setSoftwareVersionFile(options.softwareVersionFile.empty()
                                          ? options.softwareVersionFile
                                          : std::filesystem::absolute(options.softwareVersionFile));
    bridge::setSystemMac(bridge::parseMac(options.systemMac));
}

}  // namespace host
