#include "rte/BLL/core/datagramBound.h"

#include <sys/socket.h>

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <limits>
#include <memory>
#include <type_traits>

namespace {

using Operations = std::remove_cv_t<std::remove_pointer_t<decltype(SVCXPRT::xp_ops)>>;

/// Stands in for the operations of one transport, which point to the first member.
struct BoundedTransport {
    Operations operations;
    const Operations* original;
    std::size_t datagramSize;
};

/// Bounds nothing: stands for a datagram that could not be looked at.
constexpr std::size_t unknownSize = std::numeric_limits<std::size_t>::max();

static_assert(std::is_standard_layout_v<BoundedTransport>);

BoundedTransport& boundedOf(SVCXPRT* transport) {
    return *reinterpret_cast<BoundedTransport*>(const_cast<Operations*>(transport->xp_ops));
}

/// An argument on its way through the library, which knows only the filter.
struct BoundedArgument {
    xdrproc_t filter;
    void* argument;
    std::size_t limit;
};

bool_t boundedFilter(XDR* xdrs, ...) {
    std::va_list arguments;
    va_start(arguments, xdrs);
    const auto* const bounded = static_cast<const BoundedArgument*>(va_arg(arguments, void*));
    va_end(arguments);
    const bool_t done = bounded->filter(xdrs, bounded->argument);
    if (done == FALSE || xdrs->x_op != XDR_DECODE || XDR_GETPOS(xdrs) <= bounded->limit) {
        return done;
    }
    xdr_free(bounded->filter, bounded->argument);
    return FALSE;
}

/// Looks at the size of the datagram that waits; the library does not tell it.
bool_t receive(SVCXPRT* transport, rpc_msg* message) {
    BoundedTransport& bounded = boundedOf(transport);
    std::byte nothing{};
    const ssize_t size =
        recv(transport->xp_fd, &nothing, sizeof nothing, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    bounded.datagramSize = size >= 0 ? static_cast<std::size_t>(size) : unknownSize;
    return bounded.original->xp_recv(transport, message);
}

bool_t getArguments(SVCXPRT* transport, xdrproc_t filter, void* argument) {
    const BoundedTransport& bounded = boundedOf(transport);
    BoundedArgument boundedArgument{filter, argument, bounded.datagramSize};
    return bounded.original->xp_getargs(transport, boundedFilter, &boundedArgument);
}

void destroy(SVCXPRT* transport) {
    const std::unique_ptr<BoundedTransport> bounded(&boundedOf(transport));
    transport->xp_ops = bounded->original;
    bounded->original->xp_destroy(transport);
}

}  // namespace

void boundArgumentsToDatagram(SVCXPRT* transport) {
    if (transport == nullptr || transport->xp_ops == nullptr) {
        return;
    }
    auto bounded = std::make_unique<BoundedTransport>(
        BoundedTransport{*transport->xp_ops, transport->xp_ops, 0});
    bounded->operations.xp_recv = receive;
    bounded->operations.xp_getargs = getArguments;
    bounded->operations.xp_destroy = destroy;
    // From here on the transport owns it. The loop may be using the transport already.
    std::atomic_ref(transport->xp_ops)
        .store(&bounded.release()->operations, std::memory_order_release);
}
