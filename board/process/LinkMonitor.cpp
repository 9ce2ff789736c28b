#include "board/process/LinkMonitor.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cerrno>
#include <system_error>

namespace process {

LinkMonitor::LinkMonitor() : socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {
    sockaddr_nl groups{};
    groups.nl_family = AF_NETLINK;
    groups.nl_groups = RTMGRP_LINK;
    if (!socket ||
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&groups), sizeof groups) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot watch the interfaces");
    }
}

void LinkMonitor::drain() const {
    char ignored[16384];
    // ENOBUFS says that messages were lost, which makes no difference.
    while (::recv(descriptor(), ignored, sizeof ignored, MSG_DONTWAIT) > 0 || errno == ENOBUFS ||
           errno == EINTR) {
        errno = 0;
    }
}

}  // namespace process
