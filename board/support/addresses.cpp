#include "board/support/addresses.h"

#include "board/support/Descriptor.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace support {

std::optional<MacAddress> ethernetAddress(const std::string& interface, const std::string& doing) {
    ifreq request{};
    if (interface.size() >= sizeof request.ifr_name) {
        throw std::system_error(ENODEV, std::generic_category(), doing);
    }
    interface.copy(request.ifr_name, interface.size());
    // Any socket serves to ask, see netdevice(7).
    const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket || ::ioctl(socket.get(), SIOCGIFHWADDR, &request) != 0) {
        throw std::system_error(errno, std::generic_category(), doing);
    }
    if (request.ifr_hwaddr.sa_family != ARPHRD_ETHER) {
        return {};
    }
    MacAddress address;
    std::memcpy(address.data(), request.ifr_hwaddr.sa_data, address.size());
    return address;
}

std::string ipv4Text(std::uint32_t address) {
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 0xff, address >> 8 & 0xff,
                       address & 0xff);
}

std::optional<std::uint32_t> parsedIpv4(std::string_view text) {
    in_addr address{};
    if (inet_pton(AF_INET, std::string(text).c_str(), &address) != 1) {
        return std::nullopt;
    }
    return ntohl(address.s_addr);
}

}  // namespace support
