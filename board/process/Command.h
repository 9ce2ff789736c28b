#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace process {

/// Runs a program, looked up in PATH, without input, and returns what it writes to standard output
/// and standard error. Throws std::runtime_error, with the program's own last line where there is
/// one, if it cannot be run, does not end with status 0, writes more than 64 KiB, or takes longer
/// than the limit; it is killed then.
std::string outputOf(const std::vector<std::string>& command, std::chrono::milliseconds limit);

}  // namespace process
