#include "mngctl/commands/commands.h"

namespace mngctl {

namespace {

void addExit(CommandTree& tree) {
    for (const char* const name : {"exit", "quit"}) {
        tree.addCommand(name, "Leave mngctl", {}, [](Session& session) { session.leaving = true; });
    }
}

}  // namespace

void addAllCommands(CommandTree& tree, bool interactive) {
#define NOUN(add) add(tree);
#include "mngctl/commands/nouns.def"
#undef NOUN
    if (interactive) {
        addExit(tree);
    }
}

}  // namespace mngctl
