#include "board/varo/link/dhcpEvent.h"

#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/linkLocalAddress.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

namespace varo {

namespace {

constexpr const DhcpEventForm* forms[] = {&udhcpc.events, &dhclient.events};

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

void append(std::string& report, const std::string& text) {
    report += text;
    report += '\0';
}

std::string report(const std::string& event, std::span<const char* const> names) {
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

/// The client needs its interface's link-local address.
int awaitStart() {
    // The client may be ended while this waits.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string interface = variable("interface");
    if (!awaitLinkLocalAddress(interface)) {
        std::fprintf(stderr, "%s has no link-local address yet\n", interface.c_str());
    }
    return EXIT_SUCCESS;
}

/// How this process was told of an event; null: it was not.
const DhcpEventForm* formOf(int argumentCount, const char* const* arguments) {
    for (const DhcpEventForm* form : forms) {
        if (form->eventVariable == nullptr
                ? argumentCount == 2 && arguments[1][0] != '-'
                : argumentCount == 1 && std::getenv(form->eventVariable) != nullptr) {
            return form;
        }
    }
    return nullptr;
}

}  // namespace

bool isDhcpEvent(int argumentCount, const char* const* arguments) {
    return std::getenv(dhcpEventVariable) != nullptr && formOf(argumentCount, arguments) != nullptr;
}

int passDhcpEvent(const char* const* arguments) {
    const DhcpEventForm& form = *formOf(arguments[1] == nullptr ? 1 : 2, arguments);
    const std::string event =
        form.eventVariable == nullptr ? arguments[1] : variable(form.eventVariable);
    if (form.beforeStart != nullptr && event == form.beforeStart) {
        return awaitStart();
    }
    return pass(event, report(event, form.values));
}

}  // namespace varo
