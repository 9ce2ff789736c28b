#pragma once

#include "board/services/program.h"
#include "board/support/Descriptor.h"

#include <sys/types.h>

#include <string>

namespace services {

/// A server that serves one connection, as inetd(8) runs one: the connection is its standard input
/// and output. Standard error is the host's. It runs with default signal dispositions, nothing
/// blocked, in a session of its own, with no other descriptors and no environment but PATH.
///
/// It is killed with the object, and by the kernel when the thread that started it ends.
class SessionProcess {
public:
    /// Throws std::system_error. A program that cannot be run says so on standard error and ends
    /// with 127.
    SessionProcess(const Command& command, const support::Descriptor& connection);
    SessionProcess(SessionProcess&& other) noexcept;
    SessionProcess& operator=(SessionProcess&& other) noexcept;
    ~SessionProcess();

    /// Readable when the process has ended.
    const support::Descriptor& handle() const { return processHandle; }
    bool hasEnded() const;

    void kill() const;
    /// Takes the end of a process that has ended; returns how, for people: "status 1", "signal 9".
    std::string awaitEnd();

private:
    pid_t process = -1;
    support::Descriptor processHandle;
};

}  // namespace services
