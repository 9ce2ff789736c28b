#include "board/framework/ManagerLoop.h"

#include "board/framework/controlProgram.h"
#include "control.h"

#include <semaphore>
#include <utility>

namespace framework {

namespace {

/// The name makes the proxy serve the process's requests.
constexpr const char* loopName = "BLLManager_mng";

std::binary_semaphore registrationDone{0};

void* registerControlProgram(void*) {
    rpcProxyRegisterSvc(BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION, serveControlRequest);
    registrationDone.release();
    return nullptr;
}

}  // namespace

ManagerLoop::ManagerLoop(std::function<void()> onStopRequest)
    : proxy(registerControlProgram, loopName) {
    setControlStopHandler(std::move(onStopRequest));
}

bool ManagerLoop::start() {
    if (!proxy.start()) {
        return false;
    }
    registrationDone.acquire();
    return true;
}

bool ManagerLoop::stop(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    bool hasEnded = proxy.stop(true);
    while (!hasEnded && std::chrono::steady_clock::now() < deadline) {
        hasEnded = proxy.isStopped();
    }
    return hasEnded;
}

}  // namespace framework
