#include "mngctl/commands/commands.h"

namespace mngctl {

void addHelp(CommandTree& tree) {
    CLI::App& command = tree.addCommand(tree.root(), "help", "Show the help of a command",
                                        {"help", "help dns set"});
    const CLI::Option& path = tree.addArgument(command, "COMMAND", "The command's words", true);
    tree.setAction(command, [&tree, &path](Session& session) {
        session.streams.out << tree.help(CommandTree::given(path));
    });
}

void addExit(CommandTree& tree) {
    for (const char* const name : {"exit", "quit"}) {
        CLI::App& command = tree.addCommand(tree.root(), name, "Leave mngctl", {});
        tree.setAction(command, [](Session& session) { session.leaving = true; });
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
    if (interactive)
        addExit(tree);
}

}  // namespace mngctl
