#include "mngctl/prompt/prompt.h"

#include "mngctl/prompt/lineEditor.h"
#include "mngctl/prompt/splitLine.h"

#include <fmt/format.h>

namespace mngctl {

Exit runPrompt(Session& session, const RunLine& run) {
    LineEditor editor("mngctl> ", historyFile());
    session.streams.out << "'help' shows the commands, Tab completes them, 'exit' leaves.\n"
                        << std::flush;
    while (!session.leaving) {
        const auto line = editor.read();
        if (!line) {
            session.streams.out << '\n';
            break;
        }
        try {
            const auto words = splitWords(*line);
            if (words.empty()) {
                continue;
            }
            editor.remember(*line);
            run(words, "");
        } catch (const UsageError& error) {
            editor.remember(*line);
            session.streams.err << fmt::format("mngctl: {}\n", error.what());
        }
        session.streams.out << std::flush;
        session.streams.err << std::flush;
    }
    return Exit::Done;
}

Exit runScript(Session& session, const RunLine& run) {
    std::string line;
    for (unsigned number = 1; !session.leaving && std::getline(session.streams.in, line);
         ++number) {
        const std::string place = fmt::format("line {}: ", number);
        try {
            const auto words = splitWords(line);
            const Exit exit = words.empty() ? Exit::Done : run(words, place);
            if (exit != Exit::Done) {
                return exit;
            }
        } catch (const UsageError& error) {
            session.streams.err << fmt::format("mngctl: {}{}\n", place, error.what());
            return error.exit();
        }
    }
    return Exit::Done;
}

}  // namespace mngctl
