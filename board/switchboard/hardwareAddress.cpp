#include "board/switchboard/hardwareAddress.h"

#include "board/support/Descriptor.h"
#include "board/switchboard/Failure.h"

#include <fmt/format.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace switchboard {

namespace {

[[noreturn]] void fail(const std::string& interface, int error) {
    throw Failure(noHardwareAddress,
                  fmt::format("cannot read the Ethernet address of {}: {}", interface,
                              std::generic_category().message(error)));
}

}  // namespace

std::array<unsigned char, 6> hardwareAddress(const std::string& interface) {
    ifreq request{};
    if (interface.size() >= sizeof request.ifr_name) {
        fail(interface, ENODEV);
    }
    std::copy(interface.begin(), interface.end(), request.ifr_name);
    // Any socket serves to ask, see netdevice(7).
    const support::Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket || ::ioctl(socket.get(), SIOCGIFHWADDR, &request) != 0) {
        fail(interface, errno);
    }
    if (request.ifr_hwaddr.sa_family != ARPHRD_ETHER) {
        throw Failure(noHardwareAddress, interface + " is no Ethernet interface");
    }
    std::array<unsigned char, 6> address{};
    std::copy_n(reinterpret_cast<const unsigned char*>(request.ifr_hwaddr.sa_data), address.size(),
                address.begin());
    return address;
}

}  // namespace switchboard
