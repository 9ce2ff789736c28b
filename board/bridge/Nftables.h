#pragma once

#include <nlohmann/json_fwd.hpp>

namespace bridge {

// Commands are in libnftables-json(5) form. These throw Failure with the first line of nft's own
// message. Not for two threads at a time: the library keeps state of the process.

/// Runs commands, all in one transaction: they take effect together or not at all. Returns them
/// with the handles of what they made, null for nothing.
nlohmann::json runNftables(const nlohmann::json& commands);

/// Runs one command that lists. Returns what it lists.
nlohmann::json listNftables(const nlohmann::json& command);

}  // namespace bridge
