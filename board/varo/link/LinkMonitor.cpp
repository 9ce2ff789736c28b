#include "board/varo/link/LinkMonitor.h"

#include "board/varo/Failure.h"

#include <fmt/format.h>
#include <netlink/netlink.h>
#include <sys/socket.h>

#include <cerrno>
#include <new>

namespace varo {

void LinkMonitor::Close::operator()(nl_sock* opened) const { nl_socket_free(opened); }

LinkMonitor::LinkMonitor() : socket(nl_socket_alloc()) {
    if (!socket) {
        throw std::bad_alloc();
    }
    int error = nl_connect(socket.get(), NETLINK_ROUTE);
    if (error == 0) {
        error = nl_socket_add_membership(socket.get(), RTNLGRP_LINK);
    }
    if (error < 0) {
        throw Failure(systemFailed,
                      fmt::format("cannot watch the interfaces: {}", nl_geterror(error)));
    }
}

int LinkMonitor::descriptor() const { return nl_socket_get_fd(socket.get()); }

void LinkMonitor::drain() {
    char ignored[16384];
    // ENOBUFS says that messages were lost, which makes no difference.
    while (::recv(descriptor(), ignored, sizeof ignored, MSG_DONTWAIT) > 0 || errno == ENOBUFS ||
           errno == EINTR) {
        errno = 0;
    }
}

}  // namespace varo
