#include "mngctl/commands/ntpState.h"

#include "mngctl/commands/commands.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <bit>
#include <cstring>
#include <iterator>

namespace mngctl {

namespace {

constexpr int unknownSource = 0;
constexpr int requests = 8;  // that reachability tells of

template <std::size_t size>
std::string textOf(const char (&field)[size]) {
    return validUtf8({&field[0], ::strnlen(&field[0], size)});
}

Json orNull(std::string text) { return text.empty() ? Json() : Json(std::move(text)); }

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
    std::string line =
        fmt::format("  {}:", printable(server["host"].get_ref<const std::string&>()));
    const Json& status = server["status"];
    if (status.is_null() || status["state"] == "unused") {
        line += " not asked";
    } else {
        line += " " + printable(status["state"].get_ref<const std::string&>());
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
    std::string text = fmt::format("state: {}\n", status["state"].get_ref<const std::string&>());
    if (status["state"] != "synchronised") {
        return text;
    }
    const Json& server = status["server"];
    const Json& updated = status["lastUpdate"];
    text += fmt::format(
        "source: {}\nstratum: {}\noffset: {:+} us\ndelay: {} us\ndispersion: {} us\n"
        "poll interval: {} s\nlast update: {}\n",
        server.is_null() ? "unknown" : printable(server.get_ref<const std::string&>()),
        status["stratum"].get<int>(), status["offset"].get<int>(), status["delay"].get<int>(),
        status["dispersion"].get<int>(), status["pollInterval"].get<int>(),
        updated.is_null() ? "unknown" : printable(updated.get_ref<const std::string&>()));
    return text;
}

}  // namespace

rpcSntpConfigWSHost readNtpConfig(Session& session) {
    rpcSntpConfigWSHost config{};
    session.client.call(networkProgram, rpc_network_sntp_getws_host_1, config);
    return config;
}

Json readNtp(Session& session, const rpcSntpConfigWSHost& config) {
    rpcSntpInfoWSHost answer{};
    session.client.call(networkProgram, rpc_network_sntp_infowshost_1, answer);
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
    std::string text =
        fmt::format("NTP client: {} ({})\n", json["enabled"].get<bool>() ? "on" : "off",
                    json["configuredBy"].get_ref<const std::string&>());
    text += statusLines(json["status"]);
    const Json& servers = json["servers"];
    text += servers.empty() ? "servers: none\n" : "servers:\n";
    for (const Json& server : servers) {
        text += serverLine(server);
    }
    return text;
}

}  // namespace mngctl
