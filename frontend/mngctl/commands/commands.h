#pragma once

#include "mngctl/commandTree.h"

#include <memory>

namespace mngctl {

void addIp(CommandTree& tree);
void addGateway(CommandTree& tree);
void addDhcp(CommandTree& tree);
void addAccess(CommandTree& tree);
void addDns(CommandTree& tree);
void addDomain(CommandTree& tree);
void addIpv6(CommandTree& tree);
void addVlan(CommandTree& tree);
void addServices(CommandTree& tree);  // telnet, ssh, ftp, sessions
void addTime(CommandTree& tree);
void addOnt(CommandTree& tree);
void addVersion(CommandTree& tree);
void addWeb(CommandTree& tree);
void addEvents(CommandTree& tree);
void addSnmp(CommandTree& tree);
void addNtp(CommandTree& tree);
void addBoard(CommandTree& tree);
void addFactoryDefaults(CommandTree& tree);
void addRpc(CommandTree& tree);
void addHelp(CommandTree& tree);
void addExit(CommandTree& tree);

/// The address families that a command is about.
struct Families {
    bool ipv4 = false;
    bool ipv6 = false;

    /// Both, if none was chosen.
    Families orBoth() const { return ipv4 || ipv6 ? *this : Families{true, true}; }
};

/// Adds the flags --ipv4 and --ipv6, the IPv4 or IPv6 `what`.
std::shared_ptr<Families> addFamilyFlags(Command& command, const std::string& what);

/// Where the values of a resolver setting come from, as the board reports it.
std::string sourceName(int source);

}  // namespace mngctl
