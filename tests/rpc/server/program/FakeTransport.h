#pragma once

#include "calls/Wire.h"

#include <rpc/rpc.h>

#include <string>
#include <type_traits>
#include <vector>

/// A transport of the RPC library that holds one call: its argument comes from memory, and what
/// becomes of it is kept.
class FakeTransport {
public:
    explicit FakeTransport(std::vector<char> argumentBytes);
    explicit FakeTransport(const Units& argumentUnits) : FakeTransport(toBytes(argumentUnits)) {}
    FakeTransport(const FakeTransport&) = delete;
    FakeTransport& operator=(const FakeTransport&) = delete;

    SVCXPRT* get() { return &transport; }

    /// How often a reply, and the release of the argument, fails.
    int failingReplies = 0;
    int failingReleases = 0;

    /// What the transport was asked for, in order: "getargs", "reply" with its status, "freeargs".
    const std::vector<std::string>& events() const { return seen; }

    // Of the decoding of the argument.
    bool areaWasClear = false;    ///< all 1080 bytes
    bool areaWasAligned = false;  ///< for any type
    std::size_t bytesLeft = 0;    ///< of the argument, behind what was decoded

    // Of the latest successful reply.
    Units result{};
    const void* resultPlace = nullptr;

private:
    static FakeTransport& of(SVCXPRT* transport);
    bool_t decodeArgument(xdrproc_t filter, void* area);
    bool_t takeReply(const rpc_msg& message);
    bool_t releaseArgument(xdrproc_t filter, void* area);

    static const std::remove_pointer_t<decltype(SVCXPRT::xp_ops)> operations;

    SVCXPRT transport{};
    std::vector<char> argument;
    std::vector<std::string> seen{};
};
