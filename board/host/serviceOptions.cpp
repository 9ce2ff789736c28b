#include "board/host/serviceOptions.h"

#include "board/host/words.h"
#include "board/services/SessionServers.h"
#include "board/services/timeZoneFiles.h"
#include "board/support/LogChannel.h"

#include <CLI/CLI.hpp>

#include <string>

namespace host {

namespace {

void addServer(CLI::App& app, const std::string& name, std::string& command,
               const std::string& what) {
    app.add_option("--" + name + "-server", command,
                   "Command of the " + what +
                       " server, one that serves the connection on its standard input; without "
                       "it, none is run")
        ->type_name("COMMAND");
}

std::filesystem::path absoluteOrEmpty(const std::filesystem::path& file) {
    return file.empty() ? file : std::filesystem::absolute(file);
}

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
}

void addServiceAppliers(varo::Appliers& appliers, const ServiceOptions& options,
                        const std::string& managementInterface) {
    appliers.timeZone = [files =
                             services::TimeZoneFiles{absoluteOrEmpty(options.localtimeFile),
                                                     absoluteOrEmpty(options.timeZoneRuleFile)}](
                            const auto& zone) { services::writeTimeZone(files, zone); };
    if (options.telnetServer.empty() && options.sshServer.empty() && options.ftpServer.empty()) {
        return;
    }
    // Never destroyed, as the process leaves while threads run; the sessions' servers end with it.
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

}  // namespace host
