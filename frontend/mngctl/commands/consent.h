#pragma once

#include "mngctl/commandTree.h"

#include <memory>

namespace mngctl {

/// Adds the flag --yes to a command that may ask for consent.
std::shared_ptr<bool> addYesFlag(Command& command);

/// Asks on the terminal whether to go on. Throws UsageError unless the answer is yes, and with
/// `withoutTerminal` where there is nobody to ask.
void obtainConsent(Session& session, const std::string& question,
                   const std::string& withoutTerminal);

}  // namespace mngctl
