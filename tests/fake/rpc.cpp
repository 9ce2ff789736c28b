// The socket calls and the RPC library's server side, replaced when a test is linked (ld --wrap).

#include "fake/Platform.h"
#include "fake/describe.h"
#include "fake/transports.h"

#include <fmt/core.h>
#include <netinet/in.h>
#include <rpc/pmap_clnt.h>
#include <rpc/rpc.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <type_traits>

using fake::dotted;
using fake::Platform;

extern "C" int __real_close(int descriptor);

namespace {

/// The scripted failure of a call on a descriptor, or 0.
int failureOf(const std::string& function, int descriptor) {
    Platform& platform = Platform::current();
    if (const int failure = platform.script.failureOf(function)) {
        return failure;
    }
    return platform.script.failureOf(function + " " + platform.transportKinds[descriptor]);
}

/// The status of a call that reports a failure as -1 and errno.
int failWithErrno(const std::string& function, int descriptor, const std::string& arguments,
                  int result) {
    const int error = failureOf(function, descriptor);
    Platform::current().journal.write(
        fmt::format("{}({}) -> {}", function, arguments,
                    error != 0 ? fmt::format("errno {}", error) : fmt::format("{}", result)));
    if (error != 0) {
        errno = error;
        return -1;
    }
    return result;
}

/// Writes down a call of the RPC library, and returns whether it works.
bool call(const std::string& function, int descriptor, const std::string& arguments) {
    const int failure = failureOf(function, descriptor);
    Platform::current().journal.write(fmt::format("{}({}) -> {}", function, arguments, failure));
    return failure == 0;
}

/// The descriptor of a transport whose place another one takes.
constexpr int reclaimed = -1;

const auto operations = [] {
    std::remove_cv_t<std::remove_pointer_t<decltype(SVCXPRT::xp_ops)>> own{};
    own.xp_recv = [](SVCXPRT*, rpc_msg*) -> bool_t { return TRUE; };
    own.xp_getargs = [](SVCXPRT*, xdrproc_t filter, void* argument) -> bool_t {
        char nothing[16] = {};
        XDR xdr;
        xdrmem_create(&xdr, nothing, sizeof nothing, XDR_DECODE);
        return filter(&xdr, argument);
    };
    own.xp_destroy = [](SVCXPRT* transport) {
        if (transport->xp_fd != reclaimed) {
            Platform::current().journal.write(fmt::format("xp_destroy({})", transport->xp_fd));
        }
    };
    return own;
}();

SVCXPRT* createTransport(const std::string& function, int descriptor,
                         const std::string& arguments) {
    if (!call(function, descriptor, arguments)) {
        return nullptr;
    }
    SVCXPRT* const transport = fake::transportOf(descriptor);
    if (transport->xp_ops != nullptr) {
        transport->xp_fd = reclaimed;
        transport->xp_ops->xp_destroy(transport);
    }
    transport->xp_fd = descriptor;
    transport->xp_ops = &operations;
    return transport;
}

}  // namespace

SVCXPRT* fake::transportOf(int descriptor) {
    static SVCXPRT transports[8];
    return &transports[descriptor % 8];
}

extern "C" {

bool_t __wrap_pmap_unset(unsigned long program, unsigned long version) {
    return Platform::current().call("pmap_unset", fmt::format("{}, {}", program, version)) == 0;
}

int __wrap_socket(int domain, int type, int protocol) {
    Platform& platform = Platform::current();
    const int descriptor = platform.nextDescriptor++;
    platform.transportKinds[descriptor] = type == SOCK_STREAM ? "TCP" : "UDP";
    return failWithErrno("socket", descriptor, fmt::format("{}, {}, {}", domain, type, protocol),
                         descriptor);
}

int __wrap_bind(int descriptor, const sockaddr* address, socklen_t size) {
    const auto& internet = *reinterpret_cast<const sockaddr_in*>(address);
    return failWithErrno(
        "bind", descriptor,
        fmt::format("{}, {} {}:{}, {}", descriptor, internet.sin_family,
                    dotted(ntohl(internet.sin_addr.s_addr)), ntohs(internet.sin_port), size),
        0);
}

int __wrap_listen(int descriptor, int backlog) {
    return failWithErrno("listen", descriptor, fmt::format("{}, {}", descriptor, backlog), 0);
}

/// Only descriptors of the fake's own and the standard input are written down; any other is closed.
int __wrap_close(int descriptor) {
    if (descriptor < Platform::firstDescriptor && descriptor != STDIN_FILENO) {
        return __real_close(descriptor);
    }
    return failWithErrno("close", descriptor, fmt::format("{}", descriptor), 0);
}

SVCXPRT* __wrap_svcudp_create(int descriptor) {
    return createTransport("svcudp_create", descriptor, fmt::format("{}", descriptor));
}

SVCXPRT* __wrap_svctcp_create(int descriptor, unsigned int sendSize, unsigned int receiveSize) {
    return createTransport("svctcp_create", descriptor,
                           fmt::format("{}, {}, {}", descriptor, sendSize, receiveSize));
}

bool_t __wrap_svc_register(SVCXPRT* transport, unsigned long program, unsigned long version,
                           void (*dispatch)(svc_req*, SVCXPRT*), int protocol) {
    Platform::current().registeredDispatch = dispatch;
    return call("svc_register", transport->xp_fd,
                fmt::format("{}, {}, {}, {}", transport->xp_fd, program, version, protocol));
}

int __wrap_select(int count, fd_set* read, fd_set* write, fd_set* exceptional, timeval* timeout) {
    Platform& platform = Platform::current();
    platform.journal.write(
        fmt::format("select({}, {}, {}, {}, {}.{:06} s)", count, read != nullptr ? "set" : "none",
                    write != nullptr ? "set" : "none", exceptional != nullptr ? "set" : "none",
                    timeout->tv_sec, timeout->tv_usec));
    // The kernel may leave the time that remained.
    *timeout = {0, 0};
    return platform.onSelect(read);
}

void __wrap_svc_getreqset(fd_set* ready) {
    Platform& platform = Platform::current();
    platform.journal.write("svc_getreqset()");
    platform.onRequests(ready);
}
}
