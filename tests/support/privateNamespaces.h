#pragma once

#include <sched.h>

#include <string>

/// Moves the process into namespaces of its own (CLONE_NEWIPC, CLONE_NEWNS), which takes root or a
/// user namespace; to be called before there are threads. A failure throws std::system_error.
void enterPrivateNamespaces(int kinds);

/// Puts an empty directory in the place of one that exists. Takes a mount namespace of its own.
void coverDirectory(const std::string& path);

/// Replaces the content of a file, for example of a kernel setting.
void writeFile(const std::string& path, const std::string& content);
