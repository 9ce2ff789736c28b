#include "mngctl/commands/commands.h"

namespace mngctl {

void addHelp(CommandTree& tree) {
    Command& command =
        tree.addCommand("help", "Show the help of a command", {"help", "help dns set"});
    const Argument& path = command.addArguments("COMMAND", "The command's words");
    command.setAction(
        [&tree, &path](Session& session) { session.streams.out << tree.help(path.given()); });
}

}  // namespace mngctl
