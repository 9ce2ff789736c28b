#include "tests/board/varo/network/namespaces.h"

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

namespace varotest {

namespace {

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

std::string shell(const std::string& command) {
    FILE* const stream = ::popen((command + " 2>&1").c_str(), "re");
    check(stream != nullptr, "popen");
    std::string output;
    char buffer[1024];
    while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, stream)) {
        output.append(buffer, size);
    }
    const int status = ::pclose(stream);
    if (!output.empty() && output.back() == '\n') {
        output.pop_back();
    }
    if (status != 0) {
        throw std::runtime_error(command + ": " + output);
    }
    return output;
}

void enterNamespaces() {
    check(::unshare(CLONE_NEWNET | CLONE_NEWNS) == 0, "namespaces");
    check(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
    check(::mount("tmpfs", "/run", "tmpfs", MS_NOSUID | MS_NODEV, "mode=755") == 0, "an own /run");
    shell("ip link set lo up && ip netns add lan && ip -n lan link set lo up");
}

}  // namespace varotest
