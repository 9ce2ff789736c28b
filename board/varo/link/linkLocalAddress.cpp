#include "board/varo/link/linkLocalAddress.h"

#include <linux/if_addr.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace varo {

namespace {

/// As the kernel writes it (include/net/ipv6.h).
constexpr unsigned linkScope = 0x20;

constexpr std::chrono::milliseconds pause{50};
constexpr std::chrono::seconds patience{5};

/// Each line is an address, then in hexadecimal the interface's index, the length of the prefix,
/// scope and flags, then the interface's name.
bool hasLinkLocalAddress(std::string_view interface) {
    std::ifstream table("/proc/net/if_inet6");
    std::string address;
    std::string name;
    unsigned index = 0;
    unsigned length = 0;
    unsigned scope = 0;
    unsigned flags = 0;
    while (table >> address >> std::hex >> index >> length >> scope >> flags >> name) {
        if (name == interface && scope == linkScope &&
            (flags & (IFA_F_TENTATIVE | IFA_F_DADFAILED)) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool awaitLinkLocalAddress(std::string_view interface) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!hasLinkLocalAddress(interface)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

}  // namespace varo
