#include "mngctl/commands/snmp.h"

#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

constexpr std::size_t longestText = 31;

struct SystemText {
    const char* name;
    rpcSnmpSystemSelector selector;
    const char* description;
    const char* example;
};

constexpr SystemText systemTexts[] = {
    {"contact", rpcSnmpSystemContact, "Set who is responsible for the node (sysContact)",
     "snmp contact 'NOC, +43 1 555 0100'"},
    {"location", rpcSnmpSystemLocation, "Set where the node stands (sysLocation)",
     "snmp location 'Rack 7, shelf 2'"},
    {"name", rpcSnmpSystemName, "Set the node's administrative name (sysName)",
     "snmp name msan-vie-07"},
};

/// {"contact": ..., "location": ..., "name": ...}
Json readSnmpSystem(Session& session) {
    const auto system = session.ask(rpc_network_snmpsystem_get_1);
    return Json{{"contact", textOf(system.contact)},
                {"location", textOf(system.location)},
                {"name", textOf(system.name)}};
}

std::string describeSnmpSystem(const Json& system) {
    return fmt::format("contact: {}\nlocation: {}\nname: {}\n", orNone(system["contact"]),
                       orNone(system["location"]), orNone(system["name"]));
}

// Communities.

std::string accessName(rpcSnmpCommunityAccess access) {
    return access == rpcSnmpCommunityReadOnly ? "read-only" : "read-write";
}

/// [{"name": ..., "access": "read-only"}, ...], without empty entries.
Json readSnmpCommunities(Session& session) {
    const auto config = session.ask(rpc_network_snmpcommunity_get_1);
    Json list = Json::array();
    for (const rpcSnmpCommunity& each : config.communities) {
        if (each.access != rpcSnmpCommunityNone && each.name[0] != '\0') {
            list.push_back({{"name", textOf(each.name)}, {"access", accessName(each.access)}});
        }
    }
    return list;
}

std::string describeSnmpCommunities(const Json& communities) {
    if (communities.empty()) {
        return "communities: none, the agent answers nobody\n";
    }
    return "communities:\n" + columns(communities, "name", "access");
}

constexpr std::size_t longestCommunity = 29;
constexpr std::size_t mostCommunities = 6;

rpcSnmpCommunityAccess parseAccess(const std::string& text) {
    if (text == "ro" || text == "read-only") {
        return rpcSnmpCommunityReadOnly;
    }
    if (text == "rw" || text == "read-write") {
        return rpcSnmpCommunityReadWrite;
    }
    throw UsageError(fmt::format("expected ro or rw, not '{}'", printable(text)));
}

void showCommunities(Session& session) {
    const Json communities = readSnmpCommunities(session);
    session.print(communities, describeSnmpCommunities(communities));
}

bool isThere(const Json& communities, const std::string& name) {
    return std::ranges::any_of(communities, [&](const Json& each) { return each["name"] == name; });
}

std::string explainRefusedAdding(Session& session, const std::string& name, bool wasThere) {
    const Json communities = readSnmpCommunities(session);
    if (wasThere) {
        return "there is a community of that name; 'mngctl snmp community access' changes it";
    }
    const bool isStored = isThere(communities, name);
    if (!isStored && communities.size() >= mostCommunities) {
        return fmt::format("the board keeps {} communities, which it has", mostCommunities);
    }
    return otherCause(isStored);
}

std::string explainRefusedChange(Session& session, const std::string& name) {
    return isThere(readSnmpCommunities(session), name) ? otherCause(false)
                                                       : "there is no community of that name now";
}

void addOrRemove(Session& session, std::string name, rpcSnmpCommunityAccess access, bool add) {
    checkCommunity(name, longestCommunity);
    const bool wasThere = isThere(readSnmpCommunities(session), name);
    const Change change{add ? "add the community" : "remove the community",
                        request(session, rpc_network_snmpcommunity_add_1,
                                {name.data(), access, add ? TRUE : FALSE})};
    carryOutOrExplain(change, [&] {
        return add ? explainRefusedAdding(session, name, wasThere)
                   : explainRefusedChange(session, name);
    });
    readBack(session, showCommunities);
}

void setAccess(Session& session, std::string name, rpcSnmpCommunityAccess access) {
    checkCommunity(name, longestCommunity);
    const Change change{
        "change the community's access",
        request(session, rpc_network_snmpcommunity_change_1, {name.data(), access})};
    carryOutOrExplain(change, [&] { return explainRefusedChange(session, name); });
    readBack(session, showCommunities);
}

/// A command with a name and an access.
void addWithAccess(Command& noun, const std::string& verb, const std::string& description,
                   std::function<void(Session&, std::string, rpcSnmpCommunityAccess)> act) {
    Command& command = noun.addCommand(
        verb, description,
        {"snmp community " + verb + " public ro", "snmp community " + verb + " private rw"});
    const Argument& name = command.addArgument("NAME", "1 to 29 visible ASCII characters");
    const Argument& access =
        command.addArgument("ACCESS", "ro (read-only) or rw (read-write)", {"ro", "rw"});
    command.setAction([&name, &access, act = std::move(act)](Session& session) {
        const rpcSnmpCommunityAccess right = parseAccess(access.one());
        act(session, name.one(), right);
    });
}

void addSnmpCommunity(Command& snmp) {
    Command& noun = snmp.addNoun(
        "community", "Communities, by which managers get access",
        {"snmp community list", "snmp community add public ro", "snmp community remove public"});
    noun.addShow("list", "Show the communities with their access", showCommunities);
    addWithAccess(noun, "add", "Add a community; the board keeps six",
                  [](Session& session, std::string name, rpcSnmpCommunityAccess access) {
                      addOrRemove(session, std::move(name), access, true);
                  });
    addWithAccess(noun, "access", "Change what a community may do", setAccess);
    Command& remove =
        noun.addCommand("remove", "Remove a community", {"snmp community remove public"});
    const Argument& name = remove.addArgument("NAME", "Its name");
    remove.setAction([&name](Session& session) {
        addOrRemove(session, name.one(), rpcSnmpCommunityReadOnly, false);
    });
}

// All settings, and the system texts.

void show(Session& session) {
    Json json = readSnmpSystem(session);
    json["communities"] = readSnmpCommunities(session);
    json["traps"] = readSnmpTraps(session);
    session.print(json, describeSnmpSystem(json) + describeSnmpCommunities(json["communities"]) +
                            describeSnmpTraps(json["traps"]));
}

void checkText(const SystemText& which, const std::string& text) {
    if (text.size() > longestText) {
        throw UsageError(fmt::format("the {} has at most {} bytes, this one has {}", which.name,
                                     longestText, text.size()));
    }
    const auto isControl = [](char c) {
        return (static_cast<unsigned char>(c) < ' ') || c == '\x7f';
    };
    if (std::ranges::any_of(text, isControl)) {
        throw UsageError(fmt::format("the {} has a control character", which.name));
    }
}

std::string explainRefusal(Session& session, const SystemText& which, const std::string& text) {
    const Json now = readSnmpSystem(session)[which.name];
    if (now == validUtf8(text)) {
        return otherCause(true);
    }
    return fmt::format("the {} is '{}' still", which.name, shown(now));
}

void setText(Session& session, const SystemText& which, std::string text) {
    checkText(which, text);
    const Change change{
        fmt::format("set the {}", which.name),
        request(session, rpc_network_snmpsystem_change_1, {text.data(), which.selector})};
    carryOutOrExplain(change, [&] { return explainRefusal(session, which, text); });
    readBack(session, [&](Session&) {
        const Json system = readSnmpSystem(session);
        session.print(system, describeSnmpSystem(system));
    });
}

}  // namespace

std::string otherCause(bool isStored) {
    return isStored ? "it is stored, but not in force; the board's log tells the cause"
                    : "the board's log tells the cause";
}

std::string columns(const Json& list, const char* left, const char* right) {
    std::size_t width = 0;
    for (const Json& each : list) {
        width = std::max(width, shown(each[left]).size());
    }
    std::string text;
    for (const Json& each : list) {
        text += fmt::format("  {:<{}}  {}\n", shown(each[left]), width, shown(each[right]));
    }
    return text;
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

void addSnmp(CommandTree& tree) {
    Command& noun = tree.addNoun("snmp", "The SNMP agent: system texts, communities, trap managers",
                                 {"snmp show", "snmp name msan-vie-07",
                                  "snmp community add public ro", "snmp trap add 192.0.2.1 traps"});
    noun.addShow("show", "Show all settings of the agent", show);
    for (const SystemText& which : systemTexts) {
        Command& command = noun.addCommand(
            which.name, which.description,
            {which.example, fmt::format("snmp {} ''      (removes it)", which.name)});
        const Argument& text =
            command.addArgument("TEXT", "At most 31 bytes, without control characters");
        command.setAction(
            [&which, &text](Session& session) { setText(session, which, text.one()); });
    }
    addSnmpCommunity(noun);
    addSnmpTrap(noun);
}

}  // namespace mngctl
