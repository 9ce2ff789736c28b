// Requests to the kernel for a network interface (netdevice(7)), replaced when a test is linked (ld
// --wrap). There is one interface, "ont0".

#include "fake/Platform.h"
#include "fake/describe.h"

#include <fmt/format.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>

using fake::OntInterface;
using fake::Platform;

extern "C" int __real_ioctl(int descriptor, unsigned long request, ...);

namespace {

/// What the kernel gives an interface with its address.
constexpr std::uint32_t maskOfNewAddress = 0xffffffff;

constexpr const char* anotherRequest = "another request";

const char* nameOf(unsigned long request) {
    switch (request) {
        case SIOCSIFADDR:
            return "SIOCSIFADDR";
        case SIOCGIFADDR:
            return "SIOCGIFADDR";
        case SIOCSIFNETMASK:
            return "SIOCSIFNETMASK";
        case SIOCGIFNETMASK:
            return "SIOCGIFNETMASK";
        case SIOCSIFFLAGS:
            return "SIOCSIFFLAGS";
        case SIOCGIFFLAGS:
            return "SIOCGIFFLAGS";
        case SIOCSIFHWADDR:
            return "SIOCSIFHWADDR";
        default:
            return anotherRequest;
    }
}

sockaddr_in internetAddress(const sockaddr& address) {
    sockaddr_in internet{};
    std::memcpy(&internet, &address, sizeof internet);
    return internet;
}

/// What a request that sets something carries, behind a blank.
std::string argumentOf(unsigned long request, const ifreq& record) {
    switch (request) {
        case SIOCSIFADDR:
        case SIOCSIFNETMASK: {
            const sockaddr_in address = internetAddress(record.ifr_addr);
            return fmt::format(" {} {}:{}", address.sin_family,
                               fake::dotted(ntohl(address.sin_addr.s_addr)),
                               ntohs(address.sin_port));
        }
        case SIOCSIFFLAGS:
            return fmt::format(" 0x{:x}", static_cast<unsigned short>(record.ifr_flags));
        case SIOCSIFHWADDR: {
            unsigned char mac[6];
            std::memcpy(mac, record.ifr_hwaddr.sa_data, sizeof mac);
            return fmt::format(" {} {:02x}", record.ifr_hwaddr.sa_family, fmt::join(mac, ":"));
        }
        default:
            return "";
    }
}

void putAddress(ifreq& record, std::uint32_t address) {
    sockaddr_in internet{};
    internet.sin_family = AF_INET;
    internet.sin_addr.s_addr = htonl(address);
    std::memcpy(&record.ifr_addr, &internet, sizeof record.ifr_addr);
}

/// Does what the kernel does. Returns 0 or the error.
int perform(OntInterface& ont, unsigned long request, ifreq& record) {
    const std::uint32_t given = ntohl(internetAddress(record.ifr_addr).sin_addr.s_addr);
    switch (request) {
        case SIOCSIFADDR:
            ont.address.reset();
            ont.netmask = 0;
            if (given != 0) {
                ont.address = given;
                ont.netmask = maskOfNewAddress;
            }
            return 0;
        case SIOCSIFNETMASK:
            if (!ont.address) {
                return EADDRNOTAVAIL;
            }
            ont.netmask = given;
            return 0;
        case SIOCGIFADDR:
        case SIOCGIFNETMASK:
            if (!ont.address) {
                return EADDRNOTAVAIL;
            }
            putAddress(record, request == SIOCGIFADDR ? *ont.address : ont.netmask);
            return 0;
        case SIOCGIFFLAGS:
            record.ifr_flags = ont.flags;
            return 0;
        case SIOCSIFFLAGS:
            ont.flags = record.ifr_flags;
            return 0;
        case SIOCSIFHWADDR:
            if ((ont.flags & IFF_UP) != 0) {
                return EBUSY;
            }
            std::memcpy(ont.mac.data(), record.ifr_hwaddr.sa_data, ont.mac.size());
            return 0;
        default:
            return EINVAL;
    }
}

int errorOf(int descriptor, unsigned long request, ifreq& record) {
    Platform& platform = Platform::current();
    if (descriptor < 0) {
        return EBADF;
    }
    if (const int scripted = platform.script.failureOf(std::string("ioctl ") + nameOf(request))) {
        return scripted;
    }
    if (!platform.ont.exists || std::strcmp(record.ifr_name, "ont0") != 0) {
        return ENODEV;
    }
    return perform(platform.ont, request, record);
}

}  // namespace

/// Requests for an interface never reach the system, whatever the descriptor.
extern "C" int __wrap_ioctl(int descriptor, unsigned long request, ...) {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (descriptor >= 0 && descriptor < Platform::firstDescriptor &&
        nameOf(request) == anotherRequest) {
        return __real_ioctl(descriptor, request, argument);
    }
    ifreq& record = *static_cast<ifreq*>(argument);
    const std::string shown =
        fmt::format("ioctl({}, {}, {}{})", descriptor, nameOf(request),
                    fake::quotedField(record.ifr_name), argumentOf(request, record));
    const int error = errorOf(descriptor, request, record);
    Platform::current().journal.write(shown +
                                      (error != 0 ? fmt::format(" -> errno {}", error) : " -> 0"));
    if (error != 0) {
        errno = error;
        return -1;
    }
    return 0;
}
