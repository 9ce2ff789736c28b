#include "mngctl/rpc/rpcHandle.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <rpc/pmap_prot.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <system_error>
#include <utility>

namespace mngctl {

namespace {

constexpr Program portMapper{PMAPPROG, PMAPVERS, "port mapper"};

[[noreturn]] void fail(const Settings& settings, int error) {
    if (error == ECONNREFUSED) {
        throw NoAnswer(fmt::format(
            "no port mapper answers at {} (port {}): start rpcbind on the board, or name the "
            "program's port with --port",
            settings.host, PMAPPORT));
    }
    if (error == ETIMEDOUT) {
        throw NoAnswer(fmt::format(
            "the port mapper at {} did not answer within {} s: restart rpcbind on the board, or "
            "name the program's port with --port",
            settings.host, static_cast<double>(settings.timeout.count()) / 1000));
    }
    throw NoAnswer(fmt::format("the port mapper at {} cannot be reached: {}", settings.host,
                               std::generic_category().message(error)));
}

}  // namespace

std::uint16_t askPortMapper(const sockaddr_in& host, const Program& program,
                            const Settings& settings) {
    sockaddr_in address = host;
    address.sin_port = htons(PMAPPORT);
    pmap wanted{program.number, program.version,
                settings.protocol == Protocol::Tcp ? u_long{IPPROTO_TCP} : u_long{IPPROTO_UDP}, 0};
    u_short port = 0;
    try {
        const PipeSignalGuard guard;
        const Handle handle(address, settings.protocol, portMapper, settings.timeout);
        const clnt_stat status = clnt_call(
            handle.get(), PMAPPROC_GETPORT, reinterpret_cast<xdrproc_t>(xdr_pmap), &wanted,
            reinterpret_cast<xdrproc_t>(xdr_u_short), &port, toTimeval(settings.timeout));
        if (status == RPC_TIMEDOUT) {
            fail(settings, ETIMEDOUT);
        }
        if (status == RPC_CANTSEND || status == RPC_CANTRECV) {
            rpc_err error{};
            clnt_geterr(handle.get(), &error);
            fail(settings, error.re_errno);
        }
        if (status != RPC_SUCCESS) {
            throw NoAnswer(fmt::format("the port mapper at {} refuses to answer: {}", settings.host,
                                       clnt_sperrno(status)));
        }
    } catch (const std::system_error& error) {
        fail(settings, error.code().value());
    }
    if (port == 0) {
        throw NoAnswer(fmt::format(
            "the {} program ({:#x} version {}, {}) is not registered with the port mapper at {}: "
            "start the board's business-logic process (bllhost)",
            program.name, program.number, program.version,
            settings.protocol == Protocol::Tcp ? "TCP" : "UDP", settings.host));
    }
    return port;
}

namespace {

using Clock = std::chrono::steady_clock;

/// The largest datagram that the board's RPC library takes.
constexpr u_int datagramSize = 8800;

[[noreturn]] void fail(int error, const char* what) {
    throw std::system_error(error, std::generic_category(), what);
}

class Socket {
public:
    explicit Socket(Protocol protocol)
        : descriptor(::socket(
              AF_INET,
              (protocol == Protocol::Tcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC | SOCK_NONBLOCK,
              0)) {
        if (descriptor < 0) {
            fail(errno, "socket");
        }
    }
    ~Socket() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    int get() const { return descriptor; }
    int release() { return std::exchange(descriptor, -1); }

private:
    int descriptor;
};

void waitUntilConnected(int descriptor, Clock::time_point deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd wait{descriptor, POLLOUT, 0};
        const int ready = left > 0 ? ::poll(&wait, 1, static_cast<int>(left)) : 0;
        if (ready == 0) {
            fail(ETIMEDOUT, "connect");
        }
        if (ready > 0) {
            break;
        }
        if (errno != EINTR) {
            fail(errno, "poll");
        }
    }
    int error = 0;
    socklen_t length = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &length) != 0) {
        error = errno;
    }
    if (error != 0) {
        fail(error, "connect");
    }
}

void connect(int descriptor, const sockaddr_in& address, std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        if (errno != EINPROGRESS) {
            fail(errno, "connect");
        }
        waitUntilConnected(descriptor, deadline);
    }
    // The RPC library expects a blocking stream; SO_SNDTIMEO then bounds its writes.
    int nonBlocking = 0;
    if (::ioctl(descriptor, FIONBIO, &nonBlocking) != 0) {
        fail(errno, "ioctl");
    }
}

}  // namespace

timeval toTimeval(std::chrono::milliseconds duration) {
    const auto count = duration.count();
    return {static_cast<time_t>(count / 1000), static_cast<suseconds_t>(count % 1000 * 1000)};
}

Handle::Handle(const sockaddr_in& address, Protocol transport, const Program& program,
               std::chrono::milliseconds timeout)
    : protocol(transport) {
    Socket socket(protocol);
    connect(socket.get(), address, timeout);
    sockaddr_in peer = address;
    netbuf name{sizeof peer, sizeof peer, &peer};
    if (protocol == Protocol::Tcp) {
        const int on = 1;
        ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        client.reset(clnt_vc_create(socket.get(), &name, program.number, program.version, 0, 0));
    } else {
        client.reset(clnt_dg_create(socket.get(), &name, program.number, program.version,
                                    datagramSize, datagramSize));
    }
    if (!client) {
        const int error = rpc_createerr.cf_error.re_errno;
        fail(error == 0 ? ENOMEM : error, "RPC client");
    }
    clnt_control(client.get(), CLSET_FD_CLOSE, nullptr);
    descriptor = socket.release();
    setTimeout(timeout);
}

void Handle::setTimeout(std::chrono::milliseconds timeout) {
    timeval limit = toTimeval(timeout);
    clnt_control(client.get(), CLSET_TIMEOUT, &limit);
    if (protocol == Protocol::Tcp) {
        ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    } else {
        // Nothing is sent again: a change that is under way must not be made twice.
        clnt_control(client.get(), CLSET_RETRY_TIMEOUT, &limit);
    }
}

bool Handle::stale() const {
    if (protocol == Protocol::Udp) {
        return false;
    }
    // Between calls nothing is on its way: whatever can be read is the end or out of order.
    pollfd wait{descriptor, POLLIN | POLLRDHUP, 0};
    return ::poll(&wait, 1, 0) != 0;
}

PipeSignalGuard::PipeSignalGuard() {
    sigset_t pending;
    ::sigpending(&pending);
    pendingBefore = ::sigismember(&pending, SIGPIPE) == 1;
    sigset_t pipe;
    ::sigemptyset(&pipe);
    ::sigaddset(&pipe, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipe, &before);
}

PipeSignalGuard::~PipeSignalGuard() {
    const int error = errno;
    if (!pendingBefore) {
        sigset_t pipe;
        ::sigemptyset(&pipe);
        ::sigaddset(&pipe, SIGPIPE);
        const timespec now{};
        while (::sigtimedwait(&pipe, nullptr, &now) < 0 && errno == EINTR) {
        }
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
}

}  // namespace mngctl
