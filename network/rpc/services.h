#pragma once

#include "network/rpc/serverFunction.h"

/// The server functions of the network RPC program, one a procedure. Each calls one exported
/// function and returns its own static result, which the next call of the same procedure
/// overwrites: requests are served one at a time.
#pragma GCC visibility push(default)
extern "C" {

#define PROCEDURE(number, name, argument, result) \
    rpc::ServerFunction<rpc::type_##argument, result> rpc_network_##name##_1_svc;
#include "network/rpc/procedures.def"
#undef PROCEDURE
}
#pragma GCC visibility pop

/// Stores the status that an exported function returned.
inline rpcNetworkResult* storeStatus(rpcNetworkResult& result, int status) {
    result = static_cast<rpcNetworkResult>(status);
    return &result;
}
