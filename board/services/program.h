#pragma once

#include <string>
#include <vector>

namespace services {

/// Program and arguments.
using Command = std::vector<std::string>;

/// Throws std::runtime_error, whose text says why, when the command names no program that can be
/// run: a path, or a name that is looked up in PATH.
void checkProgram(const Command& command);

}  // namespace services
