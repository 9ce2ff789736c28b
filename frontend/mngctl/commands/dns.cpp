#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace mngctl {

namespace {

constexpr std::size_t serversPerFamily = 2;

struct Servers {
    std::vector<unsigned> ipv4;     ///< host byte order
    std::vector<std::string> ipv6;  ///< canonical texts
};

// What the board says.

Json describeServers(std::string primary, std::string secondary, int source) {
    return Json{{"primary", orNull(std::move(primary))},
                {"secondary", orNull(std::move(secondary))},
                {"source", sourceName(source)}};
}

Json readIpv4(Session& session) {
    const auto answer = session.ask(rpc_network_get_dns_serversws_1);
    const auto text = [](unsigned address) {
        return address == 0 ? std::string() : formatIpv4(address);
    };
    return describeServers(text(answer.primary), text(answer.secondary), answer.result);
}

Json readIpv6(Session& session) {
    const auto answer = session.ask(rpc_network_get_ipv6dns_serversws_1);
    return describeServers(textOf(answer.primary), textOf(answer.secondary), answer.result);
}

std::string serversLine(std::string_view family, const Json& servers) {
    std::string line;
    for (const char* const place : {"primary", "secondary"}) {
        if (!servers[place].is_null()) {
            line += " " + shown(servers[place]);
        }
    }
    return fmt::format("{} servers:{} ({})\n", family, line.empty() ? " none" : line,
                       servers["source"].get<std::string>());
}

constexpr FamilySetting nameServers{readIpv4, readIpv6, serversLine};

// What the user says.

[[noreturn]] void notAServer(std::string_view text, std::string_view kind) {
    throw UsageError(fmt::format("'{}' is {}, not the address of a server", text, kind));
}

unsigned parseIpv4Server(std::string_view text) {
    const unsigned address = parseIpv4(text);
    if (address == INADDR_ANY) {
        notAServer(text, "the unspecified address");
    }
    if (address == INADDR_BROADCAST) {
        notAServer(text, "the broadcast address");
    }
    if (IN_MULTICAST(address)) {
        notAServer(text, "a multicast address");
    }
    return address;
}

std::string parseIpv6Server(std::string_view text) {
    std::string canonical = parseIpv6(text);
    in6_addr address{};
    ::inet_pton(AF_INET6, canonical.c_str(), &address);
    if (std::ranges::all_of(address.s6_addr, [](auto octet) { return octet == 0; })) {
        notAServer(text, "the unspecified address");
    }
    if (address.s6_addr[0] == 0xFF) {
        notAServer(text, "a multicast address");
    }
    return canonical;
}

template <class Address>
void addServer(Session& session, std::vector<Address>& servers, Address address,
               std::string_view text) {
    if (std::ranges::find(servers, address) == servers.end()) {
        servers.push_back(std::move(address));
    } else {
        session.streams.err << fmt::format("mngctl: {} is given twice; it is set once\n", text);
    }
}

Servers parseServers(Session& session, const std::vector<std::string>& words) {
    Servers servers;
    for (const std::string& word : words) {
        if (word.find(':') == std::string::npos) {
            addServer(session, servers.ipv4, parseIpv4Server(word), word);
        } else {
            addServer(session, servers.ipv6, parseIpv6Server(word), word);
        }
    }
    if (words.empty()) {
        throw UsageError("expected one or two addresses of name servers");
    }
    if (servers.ipv4.size() > serversPerFamily || servers.ipv6.size() > serversPerFamily) {
        throw UsageError(fmt::format("the board keeps {} {} servers, {} are given",
                                     serversPerFamily,
                                     servers.ipv4.size() > serversPerFamily ? "IPv4" : "IPv6",
                                     std::max(servers.ipv4.size(), servers.ipv6.size())));
    }
    return servers;
}

// Changes.

void set(Session& session, const std::vector<std::string>& words) {
    auto [ipv4, ipv6] = parseServers(session, words);
    const Families given{!ipv4.empty(), !ipv6.empty()};
    ipv4.resize(serversPerFamily);
    ipv6.resize(serversPerFamily);
    std::vector<Change> changes;
    if (given.ipv4) {
        changes.push_back({"set the IPv4 servers",
                           request(session, rpc_network_set_dns_servers_1, {ipv4[0], ipv4[1]})});
    }
    if (given.ipv6) {
        changes.push_back(
            {"set the IPv6 servers", request(session, rpc_network_set_ipv6dns_servers_1,
                                             {ipv6[0].data(), ipv6[1].data()})});
    }
    carryOut(changes);
    readBack(session, [&](Session&) { showFamilies(session, nameServers, given); });
}

void clear(Session& session, Families families) {
    std::vector<Change> changes;
    if (families.ipv4) {
        changes.push_back(
            {"clear the IPv4 servers", request(session, rpc_network_delete_dns_servers_1)});
    }
    if (families.ipv6) {
        changes.push_back(
            {"clear the IPv6 servers", request(session, rpc_network_delete_ipv6dns_servers_1)});
    }
    carryOut(changes);
    readBack(session, [&](Session&) { showFamilies(session, nameServers, families); });
}

}  // namespace

void showFamilies(Session& session, const FamilySetting& setting, const Families& families) {
    Json json;
    std::string text;
    if (families.ipv4) {
        json["ipv4"] = setting.readIpv4(session);
        text += setting.line("IPv4", json["ipv4"]);
    }
    if (families.ipv6) {
        json["ipv6"] = setting.readIpv6(session);
        text += setting.line("IPv6", json["ipv6"]);
    }
    session.print(json, text);
}

std::shared_ptr<Families> addFamilyFlags(Command& command, const std::string& what) {
    auto families = std::make_shared<Families>();
    command.addFlag("--ipv4", families->ipv4, "The IPv4 " + what);
    command.addFlag("--ipv6", families->ipv6, "The IPv6 " + what);
    return families;
}

void addDns(CommandTree& tree) {
    Command& noun = tree.addNoun("dns", "Name servers of the management interface",
                                 {"dns show", "dns set 192.0.2.1 192.0.2.2", "dns clear --ipv6"});

    noun.addShow("show", "Show the name servers and where they come from",
                 [](Session& session) { showFamilies(session, nameServers, {true, true}); });

    Command& setCommand = noun.addCommand(
        "set", "Set one or two name servers of a family; the other family is left as it is",
        {"dns set 192.0.2.1 192.0.2.2", "dns set 2001:db8::1",
         "dns set 192.0.2.1 2001:db8::1      (one of each family)"});
    const Argument& addresses = setCommand.addArguments(
        "ADDRESS", "IPv4 or IPv6 address of a server, the primary one first");
    setCommand.setAction([&addresses](Session& session) { set(session, addresses.given()); });

    Command& clearCommand =
        noun.addCommand("clear", "Remove the name servers, of both families if none is named",
                        {"dns clear", "dns clear --ipv6"});
    const auto families = addFamilyFlags(clearCommand, "servers");
    clearCommand.setAction([families](Session& session) { clear(session, families->orBoth()); });
}

}  // namespace mngctl
