#include "board/varo/dhcpEvent.h"

#include <sys/socket.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace varo {

namespace {

/// The values of udhcpc that are looked at.
constexpr const char* values[] = {"ip", "subnet", "router", "dns", "domain", "lease", "serverid"};

void append(std::string& report, const std::string& text) {
    report += text;
    report += '\0';
}

}  // namespace

bool isDhcpEvent(int argumentCount, const char* const* arguments) {
    return argumentCount == 2 && arguments[1][0] != '-' &&
           std::getenv(dhcpEventVariable) != nullptr;
}

int passDhcpEvent(const char* const* arguments) {
    const std::string number = std::getenv(dhcpEventVariable);
    int socket = -1;
    std::from_chars(number.data(), number.data() + number.size(), socket);
    std::string report;
    append(report, arguments[1]);
    for (const char* name : values) {
        if (const char* const value = std::getenv(name); value != nullptr)
            append(report, std::string(name) + '=' + value);
    }
    if (::send(socket, report.data(), report.size(), MSG_NOSIGNAL) >= 0)
        return EXIT_SUCCESS;
    std::fprintf(stderr, "the DHCP event %s cannot be reported: %s\n", arguments[1],
                 std::strerror(errno));
    return EXIT_FAILURE;
}

}  // namespace varo
