#include "board/framework/Framework.h"
#include "board/host/Host.h"
#include "board/host/Options.h"
#include "board/host/surroundings.h"
#include "board/varo/link/dhcpEvent.h"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <utility>
#include <variant>

namespace host {

namespace {

int say(const std::exception& failure) {
    std::fprintf(stderr, "bllhost: %s\n", failure.what());
    return couldNotStart;
}

/// Ends the process while threads that never end may still run: nothing is destroyed under them.
[[noreturn]] void leave(int status) {
    framework::endLogMessage();
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(status);
}

[[noreturn]] void run(Options options) {
    int status = orderlyEnd;
    try {
        // Never destroyed, since the process leaves by its own door.
        Host& host = *new Host(std::move(options));
        host.prepare();
        try {
            host.start();
            std::fputs("bllhost: ready\n", stderr);
            host.wait();
        } catch (const StartFailure& failure) {
            status = say(failure);
        }
        host.stop();
    } catch (const std::exception& failure) {
        status = say(failure);
    }
    leave(status);
}

}  // namespace

}  // namespace host

int main(int argumentCount, char** arguments) {
    // The DHCP client runs this program at its events, too.
    if (varo::isDhcpEvent(argumentCount, arguments)) {
        return varo::passDhcpEvent(arguments);
    }
    auto options = host::readOptions(argumentCount, arguments);
    if (const int* const status = std::get_if<int>(&options)) {
        return *status;
    }
    host::run(std::get<host::Options>(std::move(options)));
}
