#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/control.h"

namespace mngctl {

namespace {

/// Asks on the terminal. Throws UsageError unless the answer is yes.
void confirm(Session& session) {
    Streams& streams = session.streams;
    if (!streams.terminal)
        throw UsageError(
            "factory-defaults asks for consent on a terminal; give --yes where there is none");
    streams.out << "Return every entity of the board to factory settings? [y/N] " << std::flush;
    std::string answer;
    std::getline(streams.in, answer);
    streams.in.clear();
    if (answer != "y" && answer != "Y" && answer != "yes")
        throw UsageError("nothing was changed");
}

}  // namespace

void addFactoryDefaults(CommandTree& tree) {
    CLI::App& command =
        tree.addCommand(tree.root(), "factory-defaults", "Return every entity to factory settings",
                        {"factory-defaults", "factory-defaults --yes"});
    const auto yes = std::make_shared<bool>(false);
    command.add_flag("--yes", *yes, "Do it without asking");
    tree.setAction(command, [yes](Session& session) {
        if (!*yes)
            confirm(session);
        const std::string reply = ask(session, "return to factory settings", bll_apply_defaults_1);
        readBack(session, [&] { printReply(session, reply, "factory settings are in place"); });
    });
}

}  // namespace mngctl
