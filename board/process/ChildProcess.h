#pragma once

#include "board/process/Command.h"
#include "board/support/Descriptor.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace process {

/// A program that runs with default signal dispositions, nothing blocked, in a session of its own,
/// and with no descriptors but those that it is given: an empty standard input, its output read
/// here, and, where it needs one, a socket.
///
/// It is killed with the object, and by the kernel when the thread that started it ends.
class ChildProcess {
public:
    /// Number of the socket in the child. BusyBox's udhcpc puts pipes of its own on 3 and 4,
    /// whatever is there.
    static constexpr int childSocket = 9;

    /// The environment variable tells the program the number of its socket; empty: it gets none.
    /// Throws std::system_error; a program that cannot be run says so on its standard error and
    /// ends with 127.
    explicit ChildProcess(const Command& command, const std::string& socketVariable = {});
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ~ChildProcess();

    /// Readable when the process has ended.
    const support::Descriptor& handle() const { return processHandle; }
    bool hasEnded() const;
    /// Standard output and error of the process; does not block.
    const support::Descriptor& output() const { return outputPipe; }
    /// This end of the socket (SOCK_SEQPACKET), if it has one; does not block.
    const support::Descriptor& messages() const { return messageSocket; }

    void signal(int number) const;
    /// Takes the end of a process that has ended; returns how, for people: "status 1", "signal 9".
    std::string awaitEnd();

protected:
    /// A descriptor of this process, and the number that the child is given it under.
    struct Given {
        int descriptor;
        int number;
    };
    /// Gives the child just these descriptors, their numbers ascending, and this environment.
    ChildProcess(Command command, std::vector<std::string> environment, std::vector<Given> given);

private:
    struct Ends {
        support::Descriptor own{};
        support::Descriptor childs{};
    };

    pid_t process = -1;
    support::Descriptor processHandle;
    support::Descriptor messageSocket;
    support::Descriptor outputPipe;

    ChildProcess(const Command& command, std::vector<std::string> environment, Ends messages,
                 Ends output);
    static Ends made(int result, const int (&numbers)[2], const char* failure);
    static Ends makeSocket();
    static Ends makePipe();
};

}  // namespace process
