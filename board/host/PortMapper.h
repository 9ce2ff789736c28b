#pragma once

#include <rpc/rpc.h>

#include <memory>

namespace host {

/// The port mapper of this machine (RFC 1833, version 2), on UDP port 111 of the loopback address.
/// A call takes 2 s at most, also when the mapper hangs.
class PortMapper {
public:
    PortMapper();

    /// Throws StartFailure when it does not answer.
    void checkAnswers() const;

    /// Whether a program is registered over a protocol, IPPROTO_UDP or IPPROTO_TCP.
    bool knows(unsigned long program, unsigned long version, int protocol) const;

private:
    bool call(rpcproc_t procedure, xdrproc_t argumentFilter, void* argument, xdrproc_t resultFilter,
              void* result) const;

    struct Closer {
        void operator()(CLIENT* handle) const { clnt_destroy(handle); }
    };
    std::unique_ptr<CLIENT, Closer> client;
};

}  // namespace host
