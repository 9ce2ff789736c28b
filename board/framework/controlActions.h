#pragma once

#include "board/framework/Framework.h"

#include <string>
#include <vector>

/// What the control program offers, apart from its transport. A function returns the reply of what
/// was done and throws std::exception, whose text is the reason, for what was refused or failed.
namespace framework::control {

/// Asks the pre-handlers of the external-message event, and then tells its post-handlers. Returns
/// what they wrote.
std::string externalMessage(const std::string& name, const std::string& value);

/// Tells the handlers of the shelf-identity event if the identity was another one.
std::string setShelfId(const std::string& id);

std::string setFeature(const std::string& name, bool on);
std::string setProfileMode(bool on);
std::string setClearConfig(bool inProgress);

/// Returns every entity to factory settings.
std::string applyDefaults();

/// The rules of the remote-access list in the order in which they are asked, the catch-all last.
std::vector<RuleCounter> ruleCounters();

}  // namespace framework::control
