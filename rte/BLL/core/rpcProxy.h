#pragma once

#include <boost/thread/thread.hpp>
#include <rpc/rpc.h>

#include <cstdint>
#include <string>

/// Hosts one ONC RPC service: owns a thread, on which the service registers itself. A proxy with
/// one of the two loop names, "BLLManager_mng" and "dhcpra_fun", then serves the requests of every
/// service of the process on that thread; any other proxy's thread ends after the registration.
class __attribute__((visibility("default"))) RPCProxy {
public:
    /// Starts a service; called on the proxy's thread with the address of the proxy's
    /// interrupt-check function pointer, which a long-running service may poll.
    using ServiceStart = void* (*)(void*);

    RPCProxy(ServiceStart serviceStart, const std::string& name);

    /// Interrupts and joins a thread that was not stopped.
    ~RPCProxy();  // NOLINT(bugprone-exception-escape): joining itself ends the process

    RPCProxy(const RPCProxy&) = delete;
    RPCProxy& operator=(const RPCProxy&) = delete;

    /// Starts the thread. False when it was started before or cannot be created.
    bool start();

    /// Asks the thread to end. With `noWait` it returns isStopped(); otherwise it waits until the
    /// thread has ended and returns true. Called on the proxy's own thread without `noWait` it
    /// throws boost::thread_resource_error (EDEADLK).
    bool stop(bool noWait);

    /// Whether the thread has ended, or ends within 100 ms.
    bool isStopped();

private:
    void threadFunction();

    boost::thread thread;
    std::uint64_t (*interruptCheck)();
    ServiceStart serviceStart;
    std::string name;
};

/// 1 if an interruption of the calling thread was pending (it is consumed), else 0.
std::uint64_t checkInterrupt();

/// Dispatch routine of a service, as svc_register(3) expects it.
using RpcDispatchRoutine = void (*)(svc_req*, SVCXPRT*);

/// Registers a service with the RPC library and the port mapper, on one UDP and one TCP transport
/// bound to free ports of the loopback address. Failures go to standard error; a failed transport
/// does not keep the other from being tried.
void rpcProxyRegisterSvc(unsigned long program, unsigned long version, RpcDispatchRoutine dispatch);
