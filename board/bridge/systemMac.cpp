#include "board/bridge/systemMac.h"

#include "board/framework/Framework.h"
#include "board/support/Descriptor.h"
#include "platform/interfaces.h"
#include "platform/zubridge.h"

#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>

namespace bridge {

namespace {

constexpr std::size_t digitsPerByte = 2;
constexpr int hexadecimal = 16;
constexpr unsigned char groupBit = 0x01;  // IEEE 802

constexpr int failed = 1;

/// Never destroyed, so that calls are answered while the process ends.
struct Configured {
    std::mutex mutex;
    std::optional<MacAddress> address;
};

Configured& configured() {
    static Configured& instance = *new Configured;
    return instance;
}

std::string managementPortName() {
    int port = 0;
    char name[IFNAMSIZ] = {};
    if (interfaceMngGet(&port) != 0 || interfaceLinuxnameGet(port, IFNAMSIZ, name) != 0) {
        throw std::runtime_error("there is no management port");
    }
    return name;
}

/// Throws std::runtime_error.
MacAddress macOf(const std::string& interface) {
    const support::Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket) {
        throw std::system_error(errno, std::generic_category(), "socket");
    }
    ifreq request{};
    interface.copy(request.ifr_name, IFNAMSIZ - 1);
    if (::ioctl(socket.get(), SIOCGIFHWADDR, &request) != 0) {
        throw std::system_error(errno, std::generic_category(), "interface \"" + interface + '"');
    }
    if (request.ifr_hwaddr.sa_family != ARPHRD_ETHER) {
        throw std::runtime_error("interface \"" + interface + "\" is not an Ethernet interface");
    }
    MacAddress address;
    std::memcpy(address.data(), request.ifr_hwaddr.sa_data, address.size());
    return address;
}

MacAddress systemMac() {
    {
        Configured& fixed = configured();
        const std::lock_guard guard(fixed.mutex);
        if (fixed.address) {
            return *fixed.address;
        }
    }
    return macOf(managementPortName());
}

bool isDefault(const zuHandle_t& handle) {
    return std::all_of(std::begin(handle.bytes), std::end(handle.bytes),
                       [](unsigned char byte) { return byte == 0; });
}

}  // namespace

std::optional<MacAddress> parseMac(std::string_view text) {
    MacAddress address{};
    constexpr std::size_t step = digitsPerByte + 1;
    if (text.size() != address.size() * step - 1) {
        return {};
    }
    for (std::size_t index = 0; index < address.size(); ++index) {
        const char* const digits = text.data() + index * step;
        const char* const end = digits + digitsPerByte;
        const auto [stopped, error] = std::from_chars(digits, end, address[index], hexadecimal);
        if (error != std::errc() || stopped != end || (index + 1 < address.size() && *end != ':')) {
            return {};
        }
    }
    if ((address[0] & groupBit) != 0 || address == MacAddress{}) {
        return {};
    }
    return address;
}

void setSystemMac(std::optional<MacAddress> address) {
    Configured& fixed = configured();
    const std::lock_guard guard(fixed.mutex);
    fixed.address = address;
}

}  // namespace bridge

int zubridge::mngSystemMacGet(const zuHandle_t& handle, unsigned char* mac) {
    try {
        if (mac == nullptr || !bridge::isDefault(handle)) {
            throw std::runtime_error("there is one bridge only");
        }
        const bridge::MacAddress address = bridge::systemMac();
        std::copy(address.begin(), address.end(), mac);
        return 0;
    } catch (const std::exception& error) {
        framework::logLine(LogImpl::levelError,
                           std::string("the system's MAC address is not known: ") + error.what());
        return bridge::failed;
    }
}
