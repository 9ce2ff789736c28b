#pragma once

#include "board/support/Descriptor.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace process {

/// A program that runs with default signal dispositions, nothing blocked, in a session of its own,
/// and with no descriptors but: an empty standard input, its output read here, and one socket.
///
/// It is killed with the object, and by the kernel when the thread that started it ends.
class ChildProcess {
public:
    /// Number of the socket in the child. BusyBox's udhcpc puts pipes of its own on 3 and 4,
    /// whatever is there.
    static constexpr int childSocket = 9;

    /// The program is looked up in PATH. `variable` tells it the number of its socket. Throws
    /// std::system_error; a program that cannot be run says so on its output and ends with 127.
    ChildProcess(const std::vector<std::string>& command, const std::string& variable);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Readable when the process has ended.
    const support::Descriptor& handle() const { return processHandle; }
    /// This end of the socket (SOCK_SEQPACKET); does not block.
    const support::Descriptor& messages() const { return messageSocket; }
    /// Standard output and error of the process; does not block.
    const support::Descriptor& output() const { return outputPipe; }

    void signal(int number) const;
    /// Takes the end of a process that has ended; returns how, for people: "status 1", "signal 9".
    std::string awaitEnd();

private:
    pid_t process = -1;
    support::Descriptor processHandle;
    support::Descriptor messageSocket;
    support::Descriptor outputPipe;
};

}  // namespace process
