#include "mngctl/commands/consent.h"

#include "mngctl/outcome.h"

namespace mngctl {

std::shared_ptr<bool> addYesFlag(Command& command) {
    auto yes = std::make_shared<bool>(false);
    command.addFlag("--yes", *yes, "Do it without asking");
    return yes;
}

void obtainConsent(Session& session, const std::string& question,
                   const std::string& withoutTerminal) {
    Streams& streams = session.streams;
    if (!streams.terminal) {
        throw UsageError(withoutTerminal);
    }
    streams.out << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(streams.in, answer);
    // The end of the input is no answer, and not the end of the prompt.
    streams.in.clear();
    if (answer != "y" && answer != "Y" && answer != "yes") {
        throw UsageError("nothing was changed");
    }
}

}  // namespace mngctl
