#include "mngctl/commands/snmpSettings.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace mngctl {

namespace {

template <std::size_t size>
std::string textOf(const char (&field)[size]) {
    return validUtf8({&field[0], ::strnlen(&field[0], size)});
}

std::string accessName(rpcSnmpCommunityAccess access) {
    return access == rpcSnmpCommunityReadOnly ? "read-only" : "read-write";
}

std::string orNone(const Json& text) {
    const auto& shown = text.get_ref<const std::string&>();
    return shown.empty() ? "none" : printable(shown);
}

std::size_t widest(const Json& list, const char* key) {
    std::size_t width = 0;
    for (const Json& each : list) {
        width = std::max(width, printable(each[key].get_ref<const std::string&>()).size());
    }
    return width;
}

std::string table(const Json& list, const char* left, const char* right) {
    const std::size_t width = widest(list, left);
    std::string text;
    for (const Json& each : list) {
        text += fmt::format("  {:<{}}  {}\n", printable(each[left].get_ref<const std::string&>()),
                            width, printable(each[right].get_ref<const std::string&>()));
    }
    return text;
}

}  // namespace

Json readSnmpSystem(Session& session) {
    rpcSnmpSystemConfig system{};
    session.client.call(networkProgram, rpc_network_snmpsystem_get_1, system);
    return Json{{"contact", textOf(system.contact)},
                {"location", textOf(system.location)},
                {"name", textOf(system.name)}};
}

Json readSnmpCommunities(Session& session) {
    rpcSnmpCommunityConfig config{};
    session.client.call(networkProgram, rpc_network_snmpcommunity_get_1, config);
    Json list = Json::array();
    for (const rpcSnmpCommunity& each : config.communities) {
        if (each.access != rpcSnmpCommunityNone && each.name[0] != '\0') {
            list.push_back({{"name", textOf(each.name)}, {"access", accessName(each.access)}});
        }
    }
    return list;
}

Json readSnmpTraps(Session& session) {
    rpcSnmpTrapConfig config{};
    session.client.call(networkProgram, rpc_network_get_snmptrap_1, config);
    Json managers = Json::array();
    for (const rpcSnmpManager& each : config.managers) {
        if (each.ipAddress != 0) {
            managers.push_back(
                {{"address", formatIpv4(each.ipAddress)}, {"community", textOf(each.community)}});
        }
    }
    return Json{{"port", config.port}, {"managers", std::move(managers)}};
}

std::string describeSnmpSystem(const Json& system) {
    return fmt::format("contact: {}\nlocation: {}\nname: {}\n", orNone(system["contact"]),
                       orNone(system["location"]), orNone(system["name"]));
}

std::string describeSnmpCommunities(const Json& communities) {
    if (communities.empty()) {
        return "communities: none, the agent answers nobody\n";
    }
    return "communities:\n" + table(communities, "name", "access");
}

std::string describeSnmpTraps(const Json& traps) {
    const Json& managers = traps["managers"];
    return fmt::format("trap port: {}\ntrap managers:{}\n", traps["port"].get<int>(),
                       managers.empty() ? " none" : "") +
           table(managers, "address", "community");
}

void checkCommunity(std::string_view text, std::size_t longest) {
    if (text.empty()) {
        throw UsageError("the community is empty");
    }
    if (text.size() > longest) {
        throw UsageError(fmt::format("a community here has at most {} characters, this one has {}",
                                     longest, text.size()));
    }
    if (!std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7f'; })) {
        throw UsageError("a community is made of visible ASCII characters, without blanks");
    }
}

}  // namespace mngctl
