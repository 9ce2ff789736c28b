#include "wire/Client.h"

#include "support/loopback.h"

#include <algorithm>
#include <cstdarg>
#include <stdexcept>

namespace {

/// Longer than any call takes, so that none is ever repeated.
constexpr timeval patience{60, 0};

constexpr unsigned int bufferSize = 8800;

/// The filter of a sequence of units, which carries as many as the sequence holds.
bool_t filterUnits(XDR* xdrs, ...) {
    std::va_list arguments;
    va_start(arguments, xdrs);
    auto& units = *va_arg(arguments, Units*);
    va_end(arguments);
    return xdrs->x_op == XDR_FREE || std::ranges::all_of(units, [xdrs](std::uint32_t& unit) {
               return xdr_u_int(xdrs, &unit) != FALSE;
           });
}

}  // namespace

Client::Client(Transport transport, unsigned short port, unsigned long program,
               unsigned long version) {
    sockaddr_in address = loopbackAddress(port);
    int descriptor = RPC_ANYSOCK;
    handle = transport == Transport::udp
                 ? clntudp_bufcreate(&address, program, version, patience, &descriptor, bufferSize,
                                     bufferSize)
                 : clnttcp_create(&address, program, version, &descriptor, 0, 0);
    if (handle == nullptr) {
        throw std::runtime_error(clnt_spcreateerror("no client"));
    }
}

Client::~Client() {
    auth_destroy(handle->cl_auth);
    clnt_destroy(handle);
}

clnt_stat Client::call(unsigned int procedure, const Units& argument, std::size_t resultSize) {
    Units sent = argument;
    units.assign(resultSize, 0);
    return clnt_call(handle, procedure, filterUnits, &sent, filterUnits, &units, patience);
}

rpc_err Client::error() const {
    rpc_err error{};
    clnt_geterr(handle, &error);
    return error;
}
