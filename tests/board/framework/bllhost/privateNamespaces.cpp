#include "privateNamespaces.h"

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace test {

namespace {

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

void bringLoopbackUp() {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    check(descriptor != -1, "a socket");
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    check(ioctl(descriptor, SIOCSIFFLAGS, &request) == 0, "a loopback interface that is up");
    close(descriptor);
}

}  // namespace

void enterPrivateNamespaces() {
    check(unshare(CLONE_NEWNET | CLONE_NEWNS | CLONE_NEWIPC) == 0, "namespaces");
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
    check(mount("tmpfs", "/run", "tmpfs", MS_NOSUID | MS_NODEV, "mode=755") == 0, "an own /run");
    check(mkdir("/run/rpcbind", 0755) == 0, "/run/rpcbind");
    bringLoopbackUp();
}

}  // namespace test
