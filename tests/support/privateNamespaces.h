#pragma once

#include <sched.h>
#include <sys/types.h>

#include <functional>
#include <string>

/// Moves the process into namespaces of its own (CLONE_NEWIPC, CLONE_NEWNET, CLONE_NEWNS), which
/// takes root or a user namespace; to be called before there are threads. Its mounts are private. A
/// failure throws std::system_error.
void enterPrivateNamespaces(int kinds);

/// Runs the body in a child process that has such namespaces; returns what the body returned. A
/// body that throws gives "exception: ...".
std::string inOwnNamespaces(int kinds, const std::function<std::string()>& body);

/// The status that waitpid(2) gives for the child.
int waitFor(pid_t child);

/// Puts an empty directory in the place of one that exists. Takes a mount namespace of its own.
void coverDirectory(const std::string& path);

/// Runs a command of the shell; returns what it prints, the last line end left out. Throws
/// std::runtime_error when it fails.
std::string shell(const std::string& command);
