#pragma once

#include <rpc/rpc.h>

/// The network RPC program (RFC 5531), served on the loopback address over UDP and TCP.
inline constexpr unsigned long networkRpcProgram = 0x20000009;
inline constexpr unsigned long networkRpcVersion = 1;

/// Bytes in which the largest argument of a procedure is decoded.
inline constexpr unsigned long networkRpcArgumentSize = 1080;

/// Registers the program with the RPC library and the port mapper; the start function of the
/// entity's RPC host. The argument is not read. Returns null.
void* rpcNetworkStart(void*);

/// Serves one request: the routine that is registered for the program.
void rpcNetworkDispatch(svc_req* request, SVCXPRT* transport);
