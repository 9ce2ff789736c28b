#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/names.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

template <auto stub>
Json read(Session& session) {
    const auto answer = session.ask(stub);
    return Json{{"name", orNull(textOf(answer.domain))}, {"source", sourceName(answer.result)}};
}

std::string domainLine(std::string_view family, const Json& value) {
    const Json& name = value["name"];
    return fmt::format("{} domain: {} ({})\n", family, name.is_null() ? "none" : shown(name),
                       shown(value["source"]));
}

constexpr FamilySetting domain{read<rpc_network_get_domainnamews_1>,
                               read<rpc_network_get_ipv6domainnamews_1>, domainLine};

/// Writes the name, or removes it if it is empty.
void change(Session& session, Families families, std::string name) {
    const std::string verb = name.empty() ? "clear" : "set";
    std::vector<Change> changes;
    if (families.ipv4) {
        changes.push_back({verb + " the IPv4 domain",
                           request(session, rpc_network_set_domainname_1, name.data())});
    }
    if (families.ipv6) {
        changes.push_back({verb + " the IPv6 domain",
                           request(session, rpc_network_set_ipv6domainname_1, name.data())});
    }
    carryOut(changes);
    readBack(session, [&](Session&) { showFamilies(session, domain, families); });
}

void set(Session& session, Families families, const std::string& name) {
    checkDomainName(name);
    session.streams.err << tellCutName(name);
    change(session, families, name);
}

}  // namespace

void addDomain(CommandTree& tree) {
    Command& noun = tree.addNoun("domain", "Domain name of the management interface",
                                 {"domain show", "domain set access.example.net", "domain clear"});

    noun.addShow("show", "Show the domain names and where they come from",
                 [](Session& session) { showFamilies(session, domain, {true, true}); });

    Command& setCommand =
        noun.addCommand("set",
                        "Set the domain name, the IPv4 one unless "
                        "--ipv6 is given",
                        {"domain set access.example.net", "domain set --ipv6 access6.example.net",
                         "domain set --ipv4 --ipv6 access.example.net"});
    const Argument& name = setCommand.addArgument("NAME", "Domain name, without a dot at the end");
    const auto chosen = addFamilyFlags(setCommand, "domain");
    setCommand.setAction([&name, chosen](Session& session) {
        const Families families = chosen->ipv6 ? *chosen : Families{true, false};
        set(session, families, name.one());
    });

    Command& clearCommand =
        noun.addCommand("clear", "Remove the domain name, of both families if none is named",
                        {"domain clear", "domain clear --ipv6"});
    const auto cleared = addFamilyFlags(clearCommand, "domain");
    clearCommand.setAction([cleared](Session& session) { change(session, cleared->orBoth(), ""); });
}

}  // namespace mngctl
