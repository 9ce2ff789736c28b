#include "board/services/Listener.h"
#include "support/loopback.h"
#include "support/matchers.h"
#include "support/withoutSockets.h"

#include <sys/socket.h>

#include <cerrno>
#include <stdexcept>
#include <string>

namespace {

using services::Listener;

constexpr std::uint16_t port = 23;

int connectError() {
    const support::Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = loopbackAddress(port);
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
               ? 0
               : errno;
}

TEST(Listener, HasASocketForEachFamily) {
    const Listener listener("lo", port);
    EXPECT_EQ(listener.sockets().size(), 2U);
}

TEST(Listener, ServesIpv4OnAKernelWithoutIpv6) {
    withoutSockets(AF_INET6, EAFNOSUPPORT, [] {
        const Listener listener("lo", port);
        EXPECT_EQ(listener.sockets().size(), 1U);
        EXPECT_EQ(connectError(), 0);
        EXPECT_EQ(listener.accept().peer, "127.0.0.1");
        EXPECT_FALSE(listener.accept().socket);
    });
    EXPECT_EQ(connectError(), ECONNREFUSED);
}

TEST(Listener, DoesWithoutIpv6ForNoOtherReason) {
    withoutSockets(AF_INET6, EMFILE, [] {
        try {
            const Listener listener("lo", port);
            FAIL() << "it listens with " << listener.sockets().size() << " sockets";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "cannot listen at TCP port 23 of lo: Too many open files");
        }
    });
}

}  // namespace
