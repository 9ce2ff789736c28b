#pragma once

namespace test {

/// Gives the process a network, mounts and System V IPC of its own: a loopback interface that is up
/// and nothing else, and an empty /run, so that a port mapper can be started beside the machine's.
/// Needs root; throws std::system_error where that cannot be had.
void enterPrivateNamespaces();

}  // namespace test
