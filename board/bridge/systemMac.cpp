#include "board/bridge/systemMac.h"

#include "board/framework/Framework.h"
#include "board/support/answer.h"
#include "platform/interfaces.h"
#include "platform/zubridge.h"

#include <net/if.h>

#include <algorithm>
#include <charconv>
#include <mutex>
#include <stdexcept>
#include <string>

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

MacAddress systemMac() {
    {
        Configured& fixed = configured();
        const std::lock_guard guard(fixed.mutex);
        if (fixed.address) {
            return *fixed.address;
        }
    }
    const std::string interface = "interface \"" + managementPortName() + '"';
    const auto address = support::ethernetAddress(managementPortName(), interface);
    if (!address) {
        throw std::runtime_error(interface + " is not an Ethernet interface");
    }
    return *address;
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
    return support::answer("the system's MAC address is not known", bridge::failed,
                           framework::writeLog, [&] {
                               if (mac == nullptr || !bridge::isDefault(handle)) {
                                   throw std::runtime_error("there is one bridge only");
                               }
                               std::ranges::copy(bridge::systemMac(), mac);
                           });
}
