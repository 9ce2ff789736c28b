#include "mngctl/commands/snmpSettings.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

constexpr std::size_t longestName = 29;
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

void show(Session& session) {
    const Json communities = readSnmpCommunities(session);
    session.print(communities, describeSnmpCommunities(communities));
}

bool isThere(const Json& communities, const std::string& name) {
    return std::ranges::any_of(communities, [&](const Json& each) { return each["name"] == name; });
}

const char* const otherCause = "the board's log tells the cause";

std::string explainRefusedAdding(Session& session, const std::string& name, bool wasThere) {
    const Json communities = readSnmpCommunities(session);
    if (wasThere) {
        return "there is a community of that name; 'mngctl snmp community access' changes it";
    }
    if (isThere(communities, name)) {
        return std::string("it is stored, but not in force; ") + otherCause;
    }
    if (communities.size() >= mostCommunities) {
        return fmt::format("the board keeps {} communities, which it has", mostCommunities);
    }
    return otherCause;
}

std::string explainRefusal(Session& session, const std::string& name) {
    return isThere(readSnmpCommunities(session), name) ? otherCause
                                                       : "there is no community of that name now";
}

void addOrRemove(Session& session, std::string name, rpcSnmpCommunityAccess access, bool add) {
    checkCommunity(name, longestName);
    const bool wasThere = isThere(readSnmpCommunities(session), name);
    const Change change{add ? "add the community" : "remove the community",
                        request(session, rpc_network_snmpcommunity_add_1,
                                {name.data(), access, add ? TRUE : FALSE})};
    carryOutOrExplain(change, [&] {
        return add ? explainRefusedAdding(session, name, wasThere) : explainRefusal(session, name);
    });
    readBack(session, [&] { show(session); });
}

void setAccess(Session& session, std::string name, rpcSnmpCommunityAccess access) {
    checkCommunity(name, longestName);
    const Change change{
        "change the community's access",
        request(session, rpc_network_snmpcommunity_change_1, {name.data(), access})};
    carryOutOrExplain(change, [&] { return explainRefusal(session, name); });
    readBack(session, [&] { show(session); });
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

}  // namespace

void addSnmpCommunity(Command& snmp) {
    Command& noun = snmp.addNoun(
        "community", "Communities, by which managers get access",
        {"snmp community list", "snmp community add public ro", "snmp community remove public"});
    noun.addCommand("list", "Show the communities with their access",
                    {"snmp community list", "snmp community list --json"}, show);
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

}  // namespace mngctl
