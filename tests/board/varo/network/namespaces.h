#pragma once

#include <string>

namespace varotest {

/// Gives the process a network of its own, with a loopback interface that is up, and beside it one
/// named "lan" for `ip netns` and `ip -n`. Both go with the process. Throws.
void enterNamespaces();

/// Runs a command of the shell; returns what it prints, the last line end left out. Throws
/// std::runtime_error when it fails.
std::string shell(const std::string& command);

}  // namespace varotest
