#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace process {

/// The last steps of a forked child, whose descriptors are in place: default signal dispositions,
/// nothing blocked, a session of its own, SIGKILL when the parent ends; then the program, looked up
/// in PATH. Ends the child with status 127 and a line on standard error if that cannot be run.
///
/// Other threads of the process may have held locks when it was forked: only calls that are safe in
/// signal handlers are made.
[[noreturn]] void becomeProgram(char* const* arguments, char* const* environment, pid_t parent);

/// The texts as such a call takes them, with a null behind the last; they stay the caller's.
std::vector<char*> pointersTo(std::vector<std::string>& texts);

}  // namespace process
