#pragma once

#include "mngctl/settings.h"

#include <netinet/in.h>
#include <rpc/rpc.h>

#include <memory>
#include <string_view>

namespace mngctl {

/// An ONC RPC program (RFC 5531) as a user knows it.
struct Program {
    unsigned number;
    unsigned version;
    std::string_view name;
};

/// A connection to a program, with its socket. Making one costs many times what a call does.
class Handle {
public:
    /// `address` names the port as well. Throws std::system_error with the reason, such as
    /// ECONNREFUSED or ETIMEDOUT.
    Handle(const sockaddr_in& address, Protocol protocol, const Program& program,
           std::chrono::milliseconds timeout);

    CLIENT* get() const { return client.get(); }

    /// Whether the other end has closed the connection, so that a request would be lost.
    bool stale() const;

    /// Time that each of the following calls may take.
    void setTimeout(std::chrono::milliseconds timeout);

private:
    struct Destroy {
        void operator()(CLIENT* handle) const { clnt_destroy(handle); }
    };

    std::unique_ptr<CLIENT, Destroy> client;
    int descriptor = -1;  ///< belongs to the client
    Protocol protocol;
};

/// Keeps a broken connection from ending the process while it lives: SIGPIPE is held back in the
/// calling thread, and one that came about meanwhile is dropped.
class PipeSignalGuard {
public:
    PipeSignalGuard();
    ~PipeSignalGuard();
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

private:
    sigset_t before{};
    bool pendingBefore = false;
};

timeval toTimeval(std::chrono::milliseconds duration);

/// Asks the port mapper (RFC 1833, version 2) on `host`, over the same protocol, for the port of a
/// program. Throws NoAnswer, with what to do, if there is no mapper, no answer, or no such program.
std::uint16_t askPortMapper(const sockaddr_in& host, const Program& program,
                            const Settings& settings);

}  // namespace mngctl
