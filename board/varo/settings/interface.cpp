#include "board/support/Descriptor.h"
#include "board/varo/Library.h"
#include "varo/varoLib.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace varo {

namespace {

static_assert(sizeof(varoLib_s_interface::name) == IFNAMSIZ);

ifreq requestFor(const varoLib_s_interface& interface) {
    if (strnlen(interface.name, IFNAMSIZ) == IFNAMSIZ) {
        throw Failure(invalidValue, "the interface name is not terminated within its field");
    }
    ifreq request{};
    std::memcpy(request.ifr_name, interface.name, IFNAMSIZ);
    return request;
}

/// One of the address queries of netdevice(7); network byte order, 0 when there is no address.
std::uint32_t query(const support::Descriptor& socket, unsigned long what, ifreq request) {
    if (::ioctl(socket.get(), what, &request) != 0) {
        if (errno == EADDRNOTAVAIL) {
            return 0;
        }
        const std::string reason = std::generic_category().message(errno);
        // A poll asks every few seconds: that the interface is not there is an answer, not a
        // failure.
        if (errno == ENODEV) {
            throw Failure(noSuchInterface,
                          fmt::format("there is no interface \"{}\"", request.ifr_name), LOG_DEBUG);
        }
        throw Failure(systemFailed, fmt::format("cannot read the address of interface \"{}\": {}",
                                                request.ifr_name, reason));
    }
    sockaddr_in address{};
    std::memcpy(&address, &request.ifr_addr, sizeof address);
    return address.sin_addr.s_addr;
}

}  // namespace

}  // namespace varo

int varoGetInterface(varoLib_s_interface* interface) {
    return varo::answer(__func__, [&] {
        varoLib_s_interface& record = varo::required(interface);
        const ifreq request = varo::requestFor(record);
        const support::Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
        if (!socket) {
            throw varo::Failure(
                varo::systemFailed,
                fmt::format("cannot open a socket: {}", std::generic_category().message(errno)));
        }
        const std::uint32_t address = varo::query(socket, SIOCGIFADDR, request);
        record.netmask = varo::query(socket, SIOCGIFNETMASK, request);
        record.ipAddr = address;
    });
}
