#include "mngctl/rpc/portMapper.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>
#include <rpc/pmap_prot.h>

#include <system_error>

namespace mngctl {

namespace {

constexpr Program portMapper{PMAPPROG, PMAPVERS, "port mapper"};

[[noreturn]] void fail(const Settings& settings, int error) {
    if (error == ECONNREFUSED) {
        throw NoAnswer(fmt::format(
            "no port mapper answers at {} (port {}): start rpcbind on the board, or name the "
            "program's port with --port",
            settings.host, PMAPPORT));
    }
    if (error == ETIMEDOUT) {
        throw NoAnswer(fmt::format(
            "the port mapper at {} did not answer within {} s: restart rpcbind on the board, or "
            "name the program's port with --port",
            settings.host, static_cast<double>(settings.timeout.count()) / 1000));
    }
    throw NoAnswer(fmt::format("the port mapper at {} cannot be reached: {}", settings.host,
                               std::generic_category().message(error)));
}

}  // namespace

std::uint16_t askPortMapper(const sockaddr_in& host, const Program& program,
                            const Settings& settings) {
    sockaddr_in address = host;
    address.sin_port = htons(PMAPPORT);
    pmap wanted{program.number, program.version,
                settings.protocol == Protocol::Tcp ? u_long{IPPROTO_TCP} : u_long{IPPROTO_UDP}, 0};
    u_short port = 0;
    try {
        const PipeSignalGuard guard;
        const Handle handle(address, settings.protocol, portMapper, settings.timeout);
        const clnt_stat status = clnt_call(
            handle.get(), PMAPPROC_GETPORT, reinterpret_cast<xdrproc_t>(xdr_pmap), &wanted,
            reinterpret_cast<xdrproc_t>(xdr_u_short), &port, toTimeval(settings.timeout));
        if (status == RPC_TIMEDOUT) {
            fail(settings, ETIMEDOUT);
        }
        if (status == RPC_CANTSEND || status == RPC_CANTRECV) {
            rpc_err error{};
            clnt_geterr(handle.get(), &error);
            fail(settings, error.re_errno);
        }
        if (status != RPC_SUCCESS) {
            throw NoAnswer(fmt::format("the port mapper at {} refuses to answer: {}", settings.host,
                                       clnt_sperrno(status)));
        }
    } catch (const std::system_error& error) {
        fail(settings, error.code().value());
    }
    if (port == 0) {
        throw NoAnswer(fmt::format(
            "the {} program ({:#x} version {}, {}) is not registered with the port mapper at {}: "
            "start the board's business-logic process (bllhost)",
            program.name, program.number, program.version,
            settings.protocol == Protocol::Tcp ? "TCP" : "UDP", settings.host));
    }
    return port;
}

}  // namespace mngctl
