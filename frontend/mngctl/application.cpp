#include "mngctl/application.h"

#include "mngctl/commandTree.h"
#include "mngctl/prompt/prompt.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

/// Does what the words ask for. Answers false if they name no command, `settings` then holds the
/// options among them.
bool perform(Session& session, Settings& settings, const std::vector<std::string>& words,
             bool interactive) {
    CommandTree tree(settings);
    addAllCommands(tree, interactive);
    const Action action = tree.parse(words);
    if (!action) {
        return false;
    }
    session.settings = settings;
    session.client.configure(settings);
    action(session);
    return true;
}

Exit performLine(Session& session, const Settings& common, const std::vector<std::string>& words,
                 const std::string& place) {
    try {
        Settings settings = common;
        if (!perform(session, settings, words, true)) {
            throw UsageError("expected a command; 'help' shows all");
        }
        return Exit::Done;
    } catch (const Failure& failure) {
        session.streams.err << fmt::format("mngctl: {}{}\n", place, failure.what());
        return failure.exit();
    }
}

Exit run(Session& session, const std::vector<std::string>& words) {
    Settings settings;
    if (perform(session, settings, words, false)) {
        return Exit::Done;
    }
    const RunLine runLine = [&](const auto& line, const std::string& place) {
        return performLine(session, settings, line, place);
    };
    return session.streams.terminal ? runPrompt(session, runLine) : runScript(session, runLine);
}

}  // namespace

Exit runApplication(const std::vector<std::string>& words, const Streams& streams) noexcept {
    Exit exit = Exit::Done;
    try {
        Session session{streams};
        exit = run(session, words);
    } catch (const Failure& failure) {
        streams.err << fmt::format("mngctl: {}\n", failure.what());
        exit = failure.exit();
    } catch (const std::exception& error) {
        streams.err << "mngctl: " << error.what() << '\n';
        exit = Exit::Refused;
    }
    if (!streams.out.flush()) {
        streams.err << "mngctl: the output could not be written\n";
        return exit == Exit::Done ? Exit::Refused : exit;
    }
    return exit;
}

}  // namespace mngctl
