#include "program/FakeTransport.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace {

/// The argument area, which is as large as the largest argument.
constexpr std::size_t areaSize = 1080;

/// More than any result takes.
constexpr std::size_t resultLimit = 16384;

std::string nameOf(const accepted_reply& reply) {
    switch (reply.ar_stat) {
        case SUCCESS:
            return "SUCCESS";
        case PROC_UNAVAIL:
            return "PROC_UNAVAIL";
        case GARBAGE_ARGS:
            return "GARBAGE_ARGS";
        case SYSTEM_ERR:
            return "SYSTEM_ERR";
        default:
            return fmt::format("status {}", static_cast<int>(reply.ar_stat));
    }
}

}  // namespace

decltype(FakeTransport::operations) FakeTransport::operations = {
    [](SVCXPRT*, rpc_msg*) -> bool_t { return FALSE; },
    [](SVCXPRT*) -> xprt_stat { return XPRT_IDLE; },
    [](SVCXPRT* self, xdrproc_t filter, void* area) {
        return of(self).decodeArgument(filter, area);
    },
    [](SVCXPRT* self, rpc_msg* message) { return of(self).takeReply(*message); },
    [](SVCXPRT* self, xdrproc_t filter, void* area) {
        return of(self).releaseArgument(filter, area);
    },
    [](SVCXPRT*) {},
};

FakeTransport::FakeTransport(std::vector<char> argumentBytes) : argument(std::move(argumentBytes)) {
    // Memory of just that size, so that a decoder that reads on is noticed.
    argument.shrink_to_fit();
    transport.xp_ops = &operations;
    transport.xp_p1 = this;
}

FakeTransport& FakeTransport::of(SVCXPRT* transport) {
    return *static_cast<FakeTransport*>(transport->xp_p1);
}

bool_t FakeTransport::decodeArgument(xdrproc_t filter, void* area) {
    seen.emplace_back("getargs");
    const char* const bytes = static_cast<const char*>(area);
    areaWasClear = std::all_of(bytes, bytes + areaSize, [](char byte) { return byte == 0; });
    areaWasAligned = reinterpret_cast<std::uintptr_t>(area) % alignof(std::max_align_t) == 0;
    XDR xdr;
    xdrmem_create(&xdr, argument.data(), static_cast<u_int>(argument.size()), XDR_DECODE);
    const bool_t decoded = filter(&xdr, area);
    bytesLeft = argument.size() - XDR_GETPOS(&xdr);
    return decoded;
}

bool_t FakeTransport::takeReply(const rpc_msg& message) {
    const reply_body& body = message.rm_reply;
    if (message.rm_direction != REPLY || body.rp_stat != MSG_ACCEPTED) {
        seen.emplace_back("reply that is none");
        return TRUE;
    }
    const std::string name = "reply " + nameOf(body.rp_acpt);
    if (failingReplies > 0) {
        --failingReplies;
        seen.push_back(name + ", not sent");
        return FALSE;
    }
    seen.push_back(name);
    if (body.rp_acpt.ar_stat == SUCCESS) {
        std::vector<char> bytes(resultLimit);
        XDR xdr;
        xdrmem_create(&xdr, bytes.data(), static_cast<u_int>(bytes.size()), XDR_ENCODE);
        resultPlace = body.rp_acpt.ar_results.where;
        if (body.rp_acpt.ar_results.proc(&xdr, body.rp_acpt.ar_results.where) == FALSE) {
            return FALSE;
        }
        bytes.resize(XDR_GETPOS(&xdr));
        result = toUnits(bytes);
    }
    return TRUE;
}

bool_t FakeTransport::releaseArgument(xdrproc_t filter, void* area) {
    XDR xdr{};
    xdr.x_op = XDR_FREE;
    const bool_t released = filter(&xdr, area);
    if (failingReleases > 0) {
        --failingReleases;
        seen.emplace_back("freeargs, not done");
        return FALSE;
    }
    seen.emplace_back("freeargs");
    return released;
}
