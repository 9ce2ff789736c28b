#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/names.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <iterator>

namespace mngctl {

namespace {

constexpr int sourceDhcp = 1;
constexpr int unknownSource = 0;
constexpr int requests = 8;  // that reachability tells of

/// The configuration that is in force, with its source.
rpcSntpConfigWSHost readConfig(Session& session) {
    return session.ask(rpc_network_sntp_getws_host_1);
}

// What it knows of its servers.

std::string wordOf(int value, std::initializer_list<const char*> words) {
    if (value < 0 || static_cast<std::size_t>(value) >= words.size()) {
        return fmt::format("state {}", value);
    }
    return *std::next(words.begin(), value);
}

std::string clientState(int state) { return wordOf(state, {"off", "searching", "synchronised"}); }

std::string serverState(int state) {
    return wordOf(state, {"unused", "unreachable", "reachable", "selected"});
}

Json clientOf(const rpcSntpClientInfoHost& client) {
    return Json{{"state", clientState(client.state)},
                {"server", orNull(textOf(client.referenceHost))},
                {"stratum", client.stratum},
                {"leapIndicator", client.leapIndicator},
                {"pollInterval", client.pollInterval},
                {"offset", client.offset},
                {"delay", client.delay},
                {"dispersion", client.dispersion},
                {"lastUpdate", orNull(textOf(client.lastUpdate))}};
}

Json serverOf(const rpcSntpSrvHost& server, const rpcSntpSrvInfoHost* info) {
    Json json{{"host", textOf(server.host)},
              {"version", server.ntpVersion == 0 ? Json() : Json(server.ntpVersion)},
              {"preferred", server.priority == 1},
              {"status", Json()}};
    if (info != nullptr) {
        json["status"] = Json{{"state", serverState(info->state)},
                              {"stratum", info->stratum},
                              {"reachability", info->reachability},
                              {"offset", info->offset},
                              {"delay", info->delay}};
    }
    return json;
}

/// The status's entry of a server; it stands at the same place in both records.
const rpcSntpSrvInfoHost* infoOf(const rpcSntpInfoHost& info, std::size_t place,
                                 const std::string& host) {
    const rpcSntpSrvInfoHost& entry = info.servers[place];
    return textOf(entry.host) == host ? &entry : nullptr;
}

std::string serverLine(const Json& server) {
    std::string line = fmt::format("  {}:", shown(server["host"]));
    const Json& status = server["status"];
    if (status.is_null() || status["state"] == "unused") {
        line += " not asked";
    } else {
        line += " " + shown(status["state"]);
        const unsigned reach = status["reachability"].get<unsigned>() & 0xFFU;
        if (reach != 0) {
            line += fmt::format(", stratum {}, offset {:+} us, delay {} us",
                                status["stratum"].get<int>(), status["offset"].get<int>(),
                                status["delay"].get<int>());
        }
        line +=
            fmt::format(", answered {} of the last {} requests", std::popcount(reach), requests);
    }
    if (server["preferred"].get<bool>()) {
        line += ", preferred";
    }
    if (!server["version"].is_null()) {
        line += fmt::format(", version {}", server["version"].get<int>());
    }
    return line + "\n";
}

std::string statusLines(const Json& status) {
    if (status.is_null()) {
        return "state: unknown, the board cannot tell; its log has the cause\n";
    }
    std::string text = fmt::format("state: {}\n", shown(status["state"]));
    if (status["state"] != "synchronised") {
        return text;
    }
    const Json& server = status["server"];
    const Json& updated = status["lastUpdate"];
    text += fmt::format(
        "source: {}\nstratum: {}\noffset: {:+} us\ndelay: {} us\ndispersion: {} us\n"
        "poll interval: {} s\nlast update: {}\n",
        server.is_null() ? "unknown" : shown(server), status["stratum"].get<int>(),
        status["offset"].get<int>(), status["delay"].get<int>(), status["dispersion"].get<int>(),
        status["pollInterval"].get<int>(), updated.is_null() ? "unknown" : shown(updated));
    return text;
}

// Changes.

void show(Session& session) {
    const Json json = readNtp(session);
    session.print(json, describeNtp(json));
}

/// What is set by hand replaces what DHCP has brought.
rpcSntpConfigHost readOwnConfig(Session& session) {
    const rpcSntpConfigWSHost read = readConfig(session);
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
    const rpcSntpConfigHost now = readConfig(session).config;
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
    readBack(session, show);
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
    store(session, "switch the NTP client " + onOff(on), config);
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

Json readNtp(Session& session) {
    const rpcSntpConfigWSHost config = readConfig(session);
    const auto answer = session.ask(rpc_network_sntp_infowshost_1);
    const bool isKnown = answer.result != unknownSource;
    Json servers = Json::array();
    std::size_t place = 0;
    for (const rpcSntpSrvHost& server : config.config.servers) {
        const std::string host = textOf(server.host);
        if (!host.empty()) {
            servers.push_back(
                serverOf(server, isKnown ? infoOf(answer.info, place, host) : nullptr));
        }
        ++place;
    }
    return Json{{"enabled", config.config.mode != 0},
                {"configuredBy", sourceName(config.result)},
                {"status", isKnown ? clientOf(answer.info.client) : Json()},
                {"servers", std::move(servers)}};
}

std::string describeNtp(const Json& json) {
    std::string text = fmt::format("NTP client: {} ({})\n", onOff(json["enabled"].get<bool>()),
                                   shown(json["configuredBy"]));
    text += statusLines(json["status"]);
    const Json& servers = json["servers"];
    text += servers.empty() ? "servers: none\n" : "servers:\n";
    for (const Json& server : servers) {
        text += serverLine(server);
    }
    return text;
}

void addNtp(CommandTree& tree) {
    Command& noun = tree.addNoun("ntp", "The client that sets the clock from time servers",
                                 {"ntp show", "ntp server add 192.0.2.1", "ntp on"});
    noun.addShow("show", "Show the configuration, and what the client knows of its servers", show);
    addServerCommands(noun);
    for (const bool on : {true, false}) {
        const std::string verb = onOff(on);
        noun.addCommand(verb, "Switch the client " + verb, {"ntp " + verb},
                        [on](Session& session) { switchClient(session, on); });
    }
}

}  // namespace mngctl
