#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/control.h"

namespace mngctl {

void addFactoryDefaults(CommandTree& tree) {
    Command& command =
        tree.addCommand("factory-defaults", "Return every entity to factory settings",
                        {"factory-defaults", "factory-defaults --yes"});
    command.addYesFlag();
    command.setAction([](Session& session) {
        obtainConsent(
            session, "Return every entity of the board to factory settings?",
            "factory-defaults asks for consent on a terminal; give --yes where there is none");
        const std::string reply = ask(session, "return to factory settings", bll_apply_defaults_1);
        readBack(session,
                 [&](Session&) { printReply(session, reply, "factory settings are in place"); });
    });
}

}  // namespace mngctl
