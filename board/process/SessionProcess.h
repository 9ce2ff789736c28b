#pragma once

#include "board/process/ChildProcess.h"

namespace process {

/// A server that serves one connection, as inetd(8) runs one: the connection is its standard input
/// and output. Standard error is the host's. It has no environment but PATH.
class SessionProcess : public ChildProcess {
public:
    /// Throws std::system_error.
    SessionProcess(const Command& command, const support::Descriptor& connection);
};

}  // namespace process
