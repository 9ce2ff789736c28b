#pragma once

#include <rpc/rpc.h>

#include <functional>

namespace framework {

/// Sets what happens when a client asks the process for an orderly end: called after the answer has
/// been sent. To be set before the program is registered.
void setControlStopHandler(std::function<void()> handler);

/// Dispatch routine of the control program. Its requests are served one at a time, on the thread of
/// the main loop.
void serveControlRequest(svc_req* request, SVCXPRT* transport);

}  // namespace framework
