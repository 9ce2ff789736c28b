#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace process {

/// A program, which is a path or a name that is looked up in PATH, and its arguments.
using Command = std::vector<std::string>;

/// Throws std::runtime_error, whose text says why, when the command names no program that can be
/// run.
void checkProgram(const Command& command);

/// Runs a program without input, and returns what it writes to standard output and standard error.
/// Throws std::runtime_error, with the program's own last line where there is one, if it cannot be
/// run, does not end with status 0, writes more than 64 KiB, or takes longer than the limit; it is
/// killed then.
std::string outputOf(const Command& command, std::chrono::milliseconds limit);

}  // namespace process
