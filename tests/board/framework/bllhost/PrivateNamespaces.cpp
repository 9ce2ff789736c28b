#include "PrivateNamespaces.h"

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace test {

namespace {

/// Returns the errno of bringing the loopback interface up, 0 when it is.
int bringLoopbackUp() {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor == -1) {
        return errno;
    }
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const int result = ioctl(descriptor, SIOCSIFFLAGS, &request);
    const int error = result == 0 ? 0 : errno;
    close(descriptor);
    return error;
}

}  // namespace

void PrivateNamespaces::SetUp() {
    ASSERT_EQ(unshare(CLONE_NEWNET | CLONE_NEWNS | CLONE_NEWIPC), 0)
        << "These tests need namespaces of their own (" << std::strerror(errno)
        << "): run them as root.";
    ASSERT_EQ(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0) << std::strerror(errno);
    ASSERT_EQ(mount("tmpfs", "/run", "tmpfs", MS_NOSUID | MS_NODEV, "mode=755"), 0)
        << std::strerror(errno);
    ASSERT_EQ(mkdir("/run/rpcbind", 0755), 0) << std::strerror(errno);
    const int error = bringLoopbackUp();
    ASSERT_EQ(error, 0) << std::strerror(error);
}

}  // namespace test
