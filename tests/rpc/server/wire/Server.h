#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

/// The program's server in a process of its own. It is killed with the object, and with the test's
/// process.
class Server {
public:
    Server();
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    unsigned short udpPort() const { return ports[0]; }
    unsigned short tcpPort() const { return ports[1]; }
    pid_t id() const { return process; }

    /// The exported functions called since the last look.
    std::vector<std::string> journal();
    /// From now on the exported function returns the status.
    void setStatus(const std::string& function, int status);

    /// Bytes of the heap in use.
    std::size_t memoryInUse();
    /// Bytes of memory resident.
    std::size_t residentMemory() const;
    std::size_t openDescriptors() const;

    /// Ends the service, if that was not done, and awaits the end of the process. Returns the exit
    /// status, or minus the number of the signal that ended it. Throws when it does not end.
    int end();

    /// What it has printed to standard error.
    std::string errorOutput() const;

private:
    std::string readLine();
    void command(const std::string& line) const;

    pid_t process = -1;
    int handle = -1;  ///< pidfd
    int input = -1;
    int output = -1;
    std::FILE* errors = nullptr;
    std::string unread;
    unsigned short ports[2] = {0, 0};
    std::optional<int> endStatus;
};
