#include "mngctl/rpc/client.h"

#include "mngctl/outcome.h"
#include "mngctl/rpc/rpcHandle.h"

#include <fmt/format.h>
#include <netdb.h>

#include <system_error>

namespace mngctl {

namespace {

/// The filter of no value. The library's own has a type that its calls do not take.
bool_t filterNothing(XDR* /*stream*/, void* /*value*/) { return TRUE; }

double seconds(std::chrono::milliseconds duration) {
    return static_cast<double>(duration.count()) / 1000;
}

}  // namespace

void Client::configure(const Settings& settings) {
    if (settings.host != current.host || settings.protocol != current.protocol ||
        settings.port != current.port || settings.controlPort != current.controlPort) {
        handles.clear();
    }
    current = settings;
}

std::uint16_t Client::givenPort(const Program& program) const {
    return program.number == controlProgram.number ? current.controlPort : current.port;
}

sockaddr_in Client::resolve() const {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(current.host.c_str(), nullptr, &hints, &found);
    if (error != 0) {
        throw UsageError(fmt::format("--host {}: no IPv4 address is known for this name ({})",
                                     current.host, ::gai_strerror(error)));
    }
    sockaddr_in address{};
    std::memcpy(&address, found->ai_addr, sizeof address);
    ::freeaddrinfo(found);
    return address;
}

Handle& Client::connected(const Program& program, bool& kept) {
    const auto known = handles.find(program.number);
    if (known != handles.end() && !known->second.stale()) {
        kept = true;
        known->second.setTimeout(current.timeout);
        return known->second;
    }
    handles.erase(program.number);
    sockaddr_in address = resolve();
    std::uint16_t port = givenPort(program);
    if (port == 0) {
        port = askPortMapper(address, program, current);
    }
    address.sin_port = htons(port);
    try {
        return handles
            .try_emplace(program.number, address, current.protocol, program, current.timeout)
            .first->second;
    } catch (const std::system_error& error) {
        unreachable(program, port, error.code().value());
    }
}

void Client::unreachable(const Program& program, std::uint16_t port, int error) const {
    if (error == ECONNREFUSED && givenPort(program) != 0) {
        throw NoAnswer(fmt::format(
            "nothing listens at {} port {}: check the port given for the {} program, or leave it "
            "out to ask the port mapper",
            current.host, port, program.name));
    }
    if (error == ECONNREFUSED) {
        throw NoAnswer(fmt::format(
            "the port mapper at {} names port {} for the {} program, but nothing listens there: "
            "the board's business-logic process has ended; start it again",
            current.host, port, program.name));
    }
    if (error == ETIMEDOUT) {
        throw NoAnswer(fmt::format(
            "no connection to {} port {} within {} s: check --host and the way to it, or allow "
            "more time with --timeout",
            current.host, port, seconds(current.timeout)));
    }
    throw NoAnswer(fmt::format("{} port {} cannot be reached: {}", current.host, port,
                               std::generic_category().message(error)));
}

Client::Attempt Client::failed(const Program& program, clnt_stat status, bool mayRepeat) {
    rpc_err error{};
    const auto handle = handles.extract(program.number);
    clnt_geterr(handle.mapped().get(), &error);
    std::uint16_t port = 0;
    sockaddr_in address{};
    if (clnt_control(handle.mapped().get(), CLGET_SERVER_ADDR, &address)) {
        port = ntohs(address.sin_port);
    }
    // Over TCP a text that can be encoded at all fails only where it could not be sent.
    if (status == RPC_CANTENCODEARGS && current.protocol == Protocol::Tcp) {
        status = RPC_CANTSEND;
    }
    switch (status) {
        case RPC_TIMEDOUT:
            throw NoAnswer(fmt::format(
                "the board did not answer within {} s: it may be busy and still do what was asked; "
                "look before you repeat, and allow more time with --timeout",
                seconds(current.timeout)));
        case RPC_CANTSEND:
        case RPC_CANTRECV:
            // A datagram that was turned away reached nobody.
            if (current.protocol == Protocol::Udp && error.re_errno == ECONNREFUSED) {
                if (mayRepeat) {
                    return Attempt::NotDelivered;
                }
                unreachable(program, port, ECONNREFUSED);
            }
            throw NoAnswer(
                "the connection to the board broke before the answer came: whether the request was "
                "carried out is not known; look before you repeat");
        case RPC_CANTENCODEARGS:
            throw UsageError(
                fmt::format("the arguments do not fit into one datagram of {} bytes: "
                            "use --tcp",
                            UDPMSGSIZE));
        case RPC_CANTDECODERES:
            throw NoAnswer(
                "the board's answer cannot be read: the board and mngctl are of different "
                "versions, "
                "or another program answers at this port");
        case RPC_PROGUNAVAIL:
        case RPC_PROGVERSMISMATCH:
            throw NoAnswer(fmt::format(
                "what answers at {} port {} is not the {} program ({:#x} version {}): check the "
                "port, or leave it out to ask the port mapper",
                current.host, port, program.name, program.number, program.version));
        case RPC_PROCUNAVAIL:
            throw Refused("the board does not know this procedure: it runs an older version");
        case RPC_CANTDECODEARGS:
            throw Refused("the board could not read the arguments");
        default:
            throw Refused(fmt::format("the board refused the call: {}", clnt_sperrno(status)));
    }
}

void Client::ping(const Program& program) {
    perform(program, [&](CLIENT* handle) {
        const auto nothing = reinterpret_cast<xdrproc_t>(filterNothing);
        return clnt_call(handle, NULLPROC, nothing, nullptr, nothing, nullptr,
                         toTimeval(current.timeout));
    });
}

}  // namespace mngctl
