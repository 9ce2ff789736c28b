#pragma once

#include <rpc/rpc.h>

#include <cstdarg>
#include <cstddef>
#include <span>

/// One procedure of an RPC program. An entry without `call` is an unassigned number.
struct RpcProcedure {
    xdrproc_t argumentFilter;
    xdrproc_t resultFilter;
    /// Serves a decoded argument; returns the result, or null for no reply. The result's storage is
    /// the callee's and stays valid until the reply has been sent.
    void* (*call)(void* argument, svc_req* request);
};

/// Serves one request of a program. `procedures` is indexed by procedure number; number 0 is the
/// null procedure whatever stands there. `area` holds the decoded argument for the length of the
/// call and must be suitably sized and aligned for every argument of the table.
void rpcDispatch(std::span<const RpcProcedure> procedures, std::span<std::byte> area,
                 svc_req* request, SVCXPRT* transport);

/// An XDR filter in the variadic form that the RPC library calls, made from one with its own
/// signature: no function pointer is ever cast to a type that it does not have.
template <class Record, bool_t (*filter)(XDR*, Record*)>
bool_t rpcFilter(XDR* xdrs, ...) {
    std::va_list arguments;
    va_start(arguments, xdrs);
    auto* const record = va_arg(arguments, void*);
    va_end(arguments);
    return filter(xdrs, static_cast<Record*>(record));
}

/// The filter of nothing at all.
inline bool_t rpcVoidFilter(XDR*, ...) { return TRUE; }
