// Serves the program over loopback sockets, with faked exported functions, until its input ends.
// Prints the ports of its transports to standard output, and then answers commands, one a line:
//
//   journal                   the number of entries of the serving thread, and the entries
//   memory                    bytes of the heap in use
//   status FUNCTION NUMBER    an empty line; from then on the exported function returns the number

#include "fake/Platform.h"
#include "framework/BLLManager.h"
#include "network/rpc/networkProgram.h"
#include "rte/BLL/core/datagramBound.h"
#include "rte/BLL/core/rpcProxy.h"
#include "support/loopback.h"

#include <malloc.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <semaphore>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

const std::string loopName = "BLLManager_mng";

unsigned short ports[2];
std::binary_semaphore isServing{0};

/// A transport on a free port of the loopback address, unknown to any port mapper.
unsigned short serveOver(int type, SVCXPRT* (*create)(int descriptor)) {
    const int descriptor = socket(AF_INET, type, 0);
    sockaddr_in address = loopbackAddress();
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    const bool isBound = bind(descriptor, generic, size) == 0 &&
                         getsockname(descriptor, generic, &size) == 0 &&
                         (type != SOCK_STREAM || listen(descriptor, 128) == 0);
    SVCXPRT* const transport = isBound ? create(descriptor) : nullptr;
    if (transport == nullptr ||
        !svc_register(transport, networkRpcProgram, networkRpcVersion, rpcNetworkDispatch, 0)) {
        std::cerr << "cannot serve\n";
        std::exit(1);
    }
    return ntohs(address.sin_port);
}

void* startService(void*) {
    ports[0] = serveOver(SOCK_DGRAM, [](int descriptor) {
        SVCXPRT* const transport = svcudp_create(descriptor);
        if (transport != nullptr) {
            boundArgumentsToDatagram(transport);
        }
        return transport;
    });
    ports[1] =
        serveOver(SOCK_STREAM, [](int descriptor) { return svctcp_create(descriptor, 0, 0); });
    isServing.release();
    return nullptr;
}

/// Standard output as it is at the start. From then on what is printed there, as the RPC library
/// does now and then, goes to standard error.
int takeOverOutput() {
    const int output = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return output;
}

void send(int output, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(output, text.data(), text.size());
        if (written <= 0) {
            std::exit(1);
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string answer(const std::string& command, fake::Platform& platform) {
    std::istringstream words(command);
    std::string word;
    words >> word;
    std::string text;
    if (word == "journal") {
        const std::vector<std::string> entries = platform.journal.takeOf(loopName);
        text = std::to_string(entries.size()) + "\n";
        for (const std::string& entry : entries) {
            text += entry + "\n";
        }
    } else if (word == "memory") {
        const struct mallinfo2 heap = mallinfo2();
        text = std::to_string(heap.uordblks + heap.hblkhd) + "\n";
    } else if (word == "status") {
        std::string function;
        int status = 0;
        words >> function >> status;
        platform.fail(function, status);
        text = "\n";
    }
    return text;
}

/// Signals go to the serving thread, where they end waits but nothing else.
void directSignals() {
    struct sigaction ignored{};
    ignored.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignored, nullptr);
    struct sigaction noticed{};
    noticed.sa_handler = [](int) {};
    sigaction(SIGUSR1, &noticed, nullptr);
}

void blockSignals() {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

}  // namespace

int main() {
    const int output = takeOverOutput();
    directSignals();
    fake::Platform platform;
    singleton<BLLManager>::instance();
    RPCProxy loop(startService, loopName);
    if (!loop.start()) {
        return 1;
    }
    blockSignals();
    isServing.acquire();
    send(output, std::to_string(ports[0]) + " " + std::to_string(ports[1]) + "\n");
    std::string command;
    while (std::getline(std::cin, command)) {
        send(output, answer(command, platform));
    }
    return loop.stop(false) ? 0 : 1;
}
