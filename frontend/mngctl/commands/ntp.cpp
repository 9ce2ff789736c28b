#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/names.h"
#include "mngctl/commands/ntpState.h"
#include "mngctl/commands/snmpSettings.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace mngctl {

namespace {

constexpr int sourceDhcp = 1;

void show(Session& session) {
    const Json json = readNtp(session, readNtpConfig(session));
    session.print(json, describeNtp(json));
}

/// What is set by hand replaces what DHCP has brought.
rpcSntpConfigHost readOwnConfig(Session& session) {
    const rpcSntpConfigWSHost read = readNtpConfig(session);
    if (read.result != sourceDhcp) {
        return read.config;
    }
    rpcSntpConfigHost config{};
    config.mode = read.config.mode;
    return config;
}

bool isEmpty(const rpcSntpSrvHost& server) { return server.host[0] == '\0'; }

std::string hostOf(const rpcSntpSrvHost& server) {
    return {&server.host[0], ::strnlen(&server.host[0], sizeof server.host)};
}

/// An IPv4 or IPv6 address or a host name; answers what is sent.
std::string parseServer(const std::string& text) {
    if (text.find(':') != std::string::npos) {
        return parseIpv6(text);
    }
    if (!text.empty() && text.find_first_not_of("0123456789.") == std::string::npos) {
        return formatIpv4(parseIpv4(text));
    }
    if (text.empty()) {
        throw UsageError("the server's name is empty");
    }
    checkDomainName(text);
    return text;
}

int parseVersion(const std::string& text) {
    if (text.empty()) {
        return 0;
    }
    if (text != "3" && text != "4") {
        throw UsageError(fmt::format("expected version 3 or 4, not '{}'", printable(text)));
    }
    return parseInt(text);
}

bool isInForce(Session& session, const rpcSntpConfigHost& wanted) {
    const rpcSntpConfigHost now = readNtpConfig(session).config;
    if (now.mode != wanted.mode) {
        return false;
    }
    return std::equal(std::begin(now.servers), std::end(now.servers), std::begin(wanted.servers),
                      [](const rpcSntpSrvHost& left, const rpcSntpSrvHost& right) {
                          return hostOf(left) == hostOf(right) && left.priority == right.priority &&
                                 left.ntpVersion == right.ntpVersion;
                      });
}

void store(Session& session, const std::string& what, const rpcSntpConfigHost& config) {
    const Change change{what, request(session, rpc_network_sntp_update_host_1, config)};
    carryOutOrExplain(change, [&]() -> std::string {
        return isInForce(session, config)
                   ? "it is stored, but not in force; the board's log tells the cause"
                   : "nothing has changed; the board's log tells the cause";
    });
    readBack(session, [&] { show(session); });
}

rpcSntpSrvHost* find(rpcSntpConfigHost& config, const std::string& host) {
    const auto found =
        std::find_if(std::begin(config.servers), std::end(config.servers),
                     [&](const rpcSntpSrvHost& server) { return hostOf(server) == host; });
    return found == std::end(config.servers) ? nullptr : found;
}

void addServer(Session& session, const std::string& text, int version, bool prefer) {
    const std::string host = parseServer(text);
    rpcSntpConfigHost config = readOwnConfig(session);
    rpcSntpSrvHost* entry = find(config, host);
    if (entry == nullptr) {
        entry = std::find_if(std::begin(config.servers), std::end(config.servers), isEmpty);
        if (entry == std::end(config.servers)) {
            throw Refused(
                fmt::format("the board keeps {} servers, which it has", std::size(config.servers)));
        }
    }
    *entry = {};
    host.copy(&entry->host[0], sizeof entry->host - 1);
    entry->ntpVersion = version;
    entry->priority = prefer ? 1 : 0;
    store(session, fmt::format("add the server {}", host), config);
}

void removeServer(Session& session, const std::string& text) {
    const std::string host = parseServer(text);
    rpcSntpConfigHost config = readOwnConfig(session);
    rpcSntpSrvHost* const entry = find(config, host);
    if (entry == nullptr) {
        throw Refused(fmt::format("the board has no server {}", host));
    }
    *entry = {};
    store(session, fmt::format("remove the server {}", host), config);
}

void switchClient(Session& session, bool on) {
    rpcSntpConfigHost config = readOwnConfig(session);
    config.mode = on ? 1 : 0;
    store(session, on ? "switch the NTP client on" : "switch the NTP client off", config);
}

void addServerCommands(Command& parent) {
    Command& noun =
        parent.addNoun("server", "Servers that are asked, up to four",
                       {"ntp server add ntp.example.net --prefer", "ntp server remove 192.0.2.1"});

    Command& add = noun.addCommand(
        "add", "Add a server, or set the options of one that is there",
        {"ntp server add 192.0.2.1", "ntp server add ntp.example.net --prefer --version 4"});
    const Argument& host = add.addArgument("HOST", "Host name, IPv4 or IPv6 address");
    const auto prefer = std::make_shared<bool>(false);
    add.addFlag("--prefer", *prefer, "Follow it rather than others");
    const auto version = std::make_shared<std::string>();
    add.addOption("--version", *version, "3|4", "Protocol version to speak (the client's choice)");
    add.setAction([&host, prefer, version](Session& session) {
        addServer(session, host.one(), parseVersion(*version), *prefer);
    });

    Command& remove = noun.addCommand("remove", "Remove a server", {"ntp server remove 192.0.2.1"});
    const Argument& removed = remove.addArgument("HOST", "As it was added");
    remove.setAction([&removed](Session& session) { removeServer(session, removed.one()); });
}

}  // namespace

void addNtp(CommandTree& tree) {
    Command& noun = tree.addNoun("ntp", "The client that sets the clock from time servers",
                                 {"ntp show", "ntp server add 192.0.2.1", "ntp on"});
    noun.addCommand("show", "Show the configuration, and what the client knows of its servers",
                    {"ntp show", "ntp show --json"}, show);
    addServerCommands(noun);
    noun.addCommand("on", "Switch the client on", {"ntp on"},
                    [](Session& session) { switchClient(session, true); });
    noun.addCommand("off", "Switch the client off", {"ntp off"},
                    [](Session& session) { switchClient(session, false); });
}

}  // namespace mngctl
