#include "board/services/Listener.h"
#include "support/loopback.h"
#include "support/matchers.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using services::Listener;

constexpr std::uint16_t port = 23;

/// Runs an action on a thread for which socket(2) fails for IPv6, as a kernel makes it fail.
void withoutIpv6(unsigned error, const std::function<void()>& action) {
    std::thread([&] {
        sock_filter instructions[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 3),
            // The lower half of the first argument, the family.
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_INET6, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const sock_fprog filter{std::size(instructions), instructions};
        ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
        ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
        ASSERT_EQ(::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0), -1);
        action();
    }).join();
}

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
    withoutIpv6(EAFNOSUPPORT, [] {
        const Listener listener("lo", port);
        EXPECT_EQ(listener.sockets().size(), 1U);
        EXPECT_EQ(connectError(), 0);
        EXPECT_EQ(listener.accept().peer, "127.0.0.1");
        EXPECT_FALSE(listener.accept().socket);
    });
    EXPECT_EQ(connectError(), ECONNREFUSED);
}

TEST(Listener, DoesWithoutIpv6ForNoOtherReason) {
    withoutIpv6(EMFILE, [] {
        try {
            const Listener listener("lo", port);
            FAIL() << "it listens with " << listener.sockets().size() << " sockets";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "cannot listen at TCP port 23 of lo: Too many open files");
        }
    });
}

}  // namespace
