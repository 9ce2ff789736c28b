#include "rte/BLL/core/rpcProxy.h"

#include "framework/BLLManager.h"
#include "rte/BLL/core/datagramBound.h"

#include <boost/bind/bind.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <netinet/in.h>
#include <rpc/pmap_clnt.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

/// How long isStopped() waits for the thread to end.
constexpr long stopWaitMicroseconds = 100'000;

/// The descriptors that select() looks at: all of a set, since services come and go.
constexpr int selectDescriptors = 1024;

bool runsMainLoop(const std::string& name) {
    return name == "BLLManager_mng" || name == "dhcpra_fun";
}

/// Serves the process's RPC requests until select() fails or the thread is interrupted.
void serveRequests(const std::string& name) {
    std::fprintf(stderr, "[%d] %s: Starting main RPC loop - custom made.\n", getpid(),
                 name.c_str());
    try {
        for (;;) {
            fd_set ready = svc_fdset;
            timeval timeout{1, 0};
            const int count = select(selectDescriptors, &ready, nullptr, nullptr, &timeout);
            if (count == -1) {
                if (errno == EINTR) {
                    continue;
                }
                const int error = errno;
                std::fprintf(stderr, "[%d] %s: RPC main loop stopping (%d - %s).\n", getpid(),
                             name.c_str(), error, std::strerror(error));
                return;
            }
            if (count > 0) {
                svc_getreqset(&ready);
            }
            boost::this_thread::interruption_point();
        }
    } catch (const boost::thread_interrupted&) {
        std::fprintf(stderr, "[%d] %s: RPC main loop stopping.\n", getpid(), name.c_str());
    }
}

/// Binds a socket to a free port of the loopback address. Returns what bind(2) does.
int bindToLoopback(int descriptor) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = 0;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

// Each failure is told with the place where it was noticed. What there is of a transport that fails
// stays as it is, its socket included: from some step on it is the RPC library's, and a service is
// registered once in the life of a process.

void registerOverUdp(unsigned long program, unsigned long version, RpcDispatchRoutine dispatch) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (descriptor == -1) {
        std::fprintf(
            stderr,
            "%s:%d Cannot create UDP socket for RPC service 0x%08lx/%lu, version %lu (%d - %s).\n",
            __FILE__, __LINE__, program, program, version, errno, std::strerror(errno));
        return;
    }
    if (bindToLoopback(descriptor) == -1) {
        std::fprintf(
            stderr,
            "%s:%d Cannot bind UDP socket for RPC service 0x%08lx/%lu, version %lu (%d - %s).\n",
            __FILE__, __LINE__, program, program, version, errno, std::strerror(errno));
        return;
    }
    SVCXPRT* const transport = svcudp_create(descriptor);
    if (transport == nullptr) {
        std::fprintf(stderr, "%s:%d Cannot create UDP RPC service 0x%08lx/%lu, version %lu.\n",
                     __FILE__, __LINE__, program, program, version);
        return;
    }
    boundArgumentsToDatagram(transport);
    if (!svc_register(transport, program, version, dispatch, IPPROTO_UDP)) {
        std::fprintf(stderr, "%s:%d Cannot register UDP RPC service 0x%08lx/%lu, version %lu.\n",
                     __FILE__, __LINE__, program, program, version);
    }
}

void registerOverTcp(unsigned long program, unsigned long version, RpcDispatchRoutine dispatch) {
    const int descriptor = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (descriptor == -1) {
        std::fprintf(
            stderr,
            "%s:%d Cannot create TCP socket for RPC service 0x%08lx/%lu, version %lu (%d - %s).\n",
            __FILE__, __LINE__, program, program, version, errno, std::strerror(errno));
        return;
    }
    if (bindToLoopback(descriptor) == -1) {
        std::fprintf(
            stderr,
            "%s:%d Cannot bind TCP socket for RPC service 0x%08lx/%lu, version %lu (%d - %s).\n",
            __FILE__, __LINE__, program, program, version, errno, std::strerror(errno));
        return;
    }
    if (listen(descriptor, 128) != 0) {
        std::fprintf(
            stderr,
            "%s:%d Cannot set TCP socket for RPC service 0x%08lx/%lu, version %lu to listen mode (%d - %s).\n",
            __FILE__, __LINE__, program, program, version, errno, std::strerror(errno));
        return;
    }
    SVCXPRT* const transport = svctcp_create(descriptor, 0, 0);
    if (transport == nullptr) {
        std::fprintf(stderr, "%s:%d Cannot create TCP RPC service 0x%08lx/%lu, version %lu.\n",
                     __FILE__, __LINE__, program, program, version);
        return;
    }
    if (!svc_register(transport, program, version, dispatch, IPPROTO_TCP)) {
        std::fprintf(stderr, "%s:%d Cannot register TCP RPC service 0x%08lx/%lu, version %lu.\n",
                     __FILE__, __LINE__, program, program, version);
    }
}

}  // namespace

RPCProxy::RPCProxy(ServiceStart startFunction, const std::string& threadName)
    : interruptCheck(checkInterrupt), serviceStart(startFunction), name(threadName) {}

// A proxy destroyed on its own thread ends the process: the join throws.
// NOLINTNEXTLINE(bugprone-exception-escape)
RPCProxy::~RPCProxy() {
    if (thread.joinable()) {
        thread.interrupt();
        thread.join();
    }
}

bool RPCProxy::start() {
    if (thread.joinable()) {
        return false;
    }
    try {
        thread = boost::thread(boost::bind(&RPCProxy::threadFunction, this));
    } catch (const boost::thread_resource_error&) {
        return false;
    }
    return true;
}

bool RPCProxy::stop(bool noWait) {
    if (thread.joinable()) {
        thread.interrupt();
    }
    if (noWait) {
        return isStopped();
    }
    if (thread.joinable()) {
        thread.join();
    }
    return true;
}

bool RPCProxy::isStopped() {
    if (!thread.joinable()) {
        return true;
    }
    return thread.timed_join(boost::posix_time::microsec_clock::universal_time() +
                             boost::posix_time::microseconds(stopWaitMicroseconds));
}

void RPCProxy::threadFunction() {
    singleton<BLLManager>::instance().registerThread(name);
    serviceStart(&interruptCheck);
    if (runsMainLoop(name)) {
        serveRequests(name);
    }
}

std::uint64_t checkInterrupt() {
    try {
        boost::this_thread::interruption_point();
    } catch (const boost::thread_interrupted&) {
        return 1;
    }
    return 0;
}

void rpcProxyRegisterSvc(unsigned long program, unsigned long version,
                         RpcDispatchRoutine dispatch) {
    pmap_unset(program, version);
    registerOverUdp(program, version, dispatch);
    registerOverTcp(program, version, dispatch);
}
