#pragma once

#include "mngctl/outcome.h"
#include "mngctl/session.h"

#include <functional>

namespace mngctl {

/// Carries out one command: reports a failure after `place`, and answers how it ended.
using RunLine =
    std::function<Exit(const std::vector<std::string>& words, const std::string& place)>;

/// Offers a prompt on the terminal until the user leaves it.
Exit runPrompt(Session& session, const RunLine& run);

/// Carries out the commands that are read from the input, one a line, up to the first that fails;
/// answers how that one ended.
Exit runScript(Session& session, const RunLine& run);

}  // namespace mngctl
