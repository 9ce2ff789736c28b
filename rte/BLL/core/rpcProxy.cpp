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

/// A service about to be registered, and how its failures are reported.
class Registration {
public:
    Registration(unsigned long programNumber, unsigned long versionNumber,
                 RpcDispatchRoutine routine)
        : program(programNumber), version(versionNumber), dispatch(routine) {}

    void overUdp() const {
        const int descriptor = boundSocket("UDP", SOCK_DGRAM, IPPROTO_UDP);
        if (descriptor == -1) {
            return;
        }
        SVCXPRT* const transport = svcudp_create(descriptor);
        if (transport == nullptr) {
            report("create UDP RPC service", "");
            return;
        }
        boundArgumentsToDatagram(transport);
        if (!svc_register(transport, program, version, dispatch, IPPROTO_UDP)) {
            report("register UDP RPC service", "");
        }
    }

    void overTcp() const {
        const int descriptor = boundSocket("TCP", SOCK_STREAM, IPPROTO_TCP);
        if (descriptor == -1) {
            return;
        }
        if (listen(descriptor, 128) != 0) {
            const int error = errno;
            reportErrno(error, "set TCP socket for RPC service", " to listen mode");
            return;
        }
        SVCXPRT* const transport = svctcp_create(descriptor, 0, 0);
        if (transport == nullptr) {
            report("create TCP RPC service", "");
            return;
        }
        if (!svc_register(transport, program, version, dispatch, IPPROTO_TCP)) {
            report("register TCP RPC service", "");
        }
    }

private:
    /// A socket on a free port of the loopback address, or -1. The descriptor of a transport that
    /// fails later is deliberately not closed: the RPC library may have taken it over.
    int boundSocket(const std::string& transport, int type, int protocol) const {
        const int descriptor = socket(AF_INET, type, protocol);
        if (descriptor == -1) {
            const int error = errno;
            reportErrno(error, "create " + transport + " socket for RPC service", "");
            return -1;
        }
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = 0;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == -1) {
            const int error = errno;
            reportErrno(error, "bind " + transport + " socket for RPC service", "");
            return -1;
        }
        return descriptor;
    }

    void reportErrno(int error, const std::string& what, const std::string& suffix,
                     const char* file = __builtin_FILE(), int line = __builtin_LINE()) const {
        report(what, suffix + " (" + std::to_string(error) + " - " + std::strerror(error) + ")",
               file, line);
    }

    void report(const std::string& what, const std::string& suffix,
                const char* file = __builtin_FILE(), int line = __builtin_LINE()) const {
        std::fprintf(stderr, "%s:%d Cannot %s 0x%08lx/%lu, version %lu%s.\n", file, line,
                     what.c_str(), program, program, version, suffix.c_str());
    }

    unsigned long program;
    unsigned long version;
    RpcDispatchRoutine dispatch;
};

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
    const Registration registration(program, version, dispatch);
    registration.overUdp();
    registration.overTcp();
}
