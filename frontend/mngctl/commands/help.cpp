#include "mngctl/commands/commands.h"

namespace mngctl {

void addHelp(CommandTree& tree) {
    Command& command =
        tree.addCommand("help", "Show the help of a command", {"help", "help dns set"});
    const Argument& path = command.addArguments("COMMAND", "The command's words");
    command.setAction(
        [&tree, &path](Session& session) { session.streams.out << tree.help(path.given()); });
}

void addExit(CommandTree& tree) {
    for (const char* const name : {"exit", "quit"}) {
        tree.addCommand(name, "Leave mngctl", {}, [](Session& session) { session.leaving = true; });
    }
}

void addAllCommands(CommandTree& tree, bool interactive) {
    addIp(tree);
    addGateway(tree);
    addDhcp(tree);
    addAccess(tree);
    addDns(tree);
    addDomain(tree);
    addIpv6(tree);
    addVlan(tree);
    addServices(tree);
    addTime(tree);
    addNtp(tree);
    addSnmp(tree);
    addWeb(tree);
    addEvents(tree);
    addOnt(tree);
    addVersion(tree);
    addBoard(tree);
    addFactoryDefaults(tree);
    addRpc(tree);
    addHelp(tree);
    if (interactive) {
        addExit(tree);
    }
}

}  // namespace mngctl
