#include "board/varo/link/dhcpEvent.h"

#include "board/varo/link/linkLocalAddress.h"

#include <signal.h>
#include <sys/prctl.h>
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

/// Those of dhclient, and the variable that names the event.
constexpr const char* values6[] = {"new_ip6_address",         "new_max_life",
                                   "new_preferred_life",      "new_dhcp6_name_servers",
                                   "new_dhcp6_domain_search", "old_ip6_address"};
constexpr const char* reason = "reason";
/// Before dhclient opens its socket on the link-local address.
constexpr const char* beforeStart = "PREINIT6";

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

void append(std::string& report, const std::string& text) {
    report += text;
    report += '\0';
}

template <std::size_t count>
std::string report(const std::string& event, const char* const (&names)[count]) {
    std::string text;
    append(text, event);
    for (const char* name : names) {
        if (const char* const value = std::getenv(name); value != nullptr) {
            append(text, std::string(name) + '=' + value);
        }
    }
    return text;
}

int pass(const std::string& event, const std::string& message) {
    const std::string number = variable(dhcpEventVariable);
    int socket = -1;
    std::from_chars(number.data(), number.data() + number.size(), socket);
    if (::send(socket, message.data(), message.size(), MSG_NOSIGNAL) >= 0) {
        return EXIT_SUCCESS;
    }
    std::fprintf(stderr, "the DHCP event %s cannot be reported: %s\n", event.c_str(),
                 std::strerror(errno));
    return EXIT_FAILURE;
}

}  // namespace

bool isDhcpEvent(int argumentCount, const char* const* arguments) {
    if (std::getenv(dhcpEventVariable) == nullptr) {
        return false;
    }
    return argumentCount == 2 ? arguments[1][0] != '-'
                              : argumentCount == 1 && std::getenv(reason) != nullptr;
}

int passDhcpEvent(const char* const* arguments) {
    if (arguments[1] != nullptr) {
        return pass(arguments[1], report(arguments[1], values));
    }
    const std::string event = variable(reason);
    if (event != beforeStart) {
        return pass(event, report(event, values6));
    }
    // The client may be ended while this waits.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string interface = variable("interface");
    if (!awaitLinkLocalAddress(interface)) {
        std::fprintf(stderr, "%s has no link-local address yet\n", interface.c_str());
    }
    return EXIT_SUCCESS;
}

}  // namespace varo
