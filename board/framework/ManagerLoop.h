#pragma once

#include "rte/BLL/core/rpcProxy.h"

#include <chrono>
#include <functional>

namespace framework {

/// The thread that serves the requests of every RPC service of the process, and the control program
/// registered on it. One for the process.
class ManagerLoop {
public:
    /// `onStopRequest` is called on the loop's thread when a client asks for the process's end.
    explicit ManagerLoop(std::function<void()> onStopRequest);

    /// Waits without limit for a loop that was not stopped.
    ~ManagerLoop() = default;
    ManagerLoop(const ManagerLoop&) = delete;
    ManagerLoop& operator=(const ManagerLoop&) = delete;

    /// Starts the thread, and returns when the registration of the control program has been tried:
    /// its failures go to standard error. False when there is no thread to be had.
    bool start();

    /// Asks the loop to end and waits for it up to `limit`, at least 100 ms. A request being served
    /// is finished first. Returns whether the loop has ended.
    bool stop(std::chrono::milliseconds limit);

private:
    RPCProxy proxy;
};

}  // namespace framework
