#include "support/privateNamespaces.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

void require(bool works, const std::string& what) {
    if (!works) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

/// Makes an ordinary user root of a user namespace.
void enterUserNamespace(int kinds) {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    require(unshare(CLONE_NEWUSER | kinds) == 0, "entering a user namespace");
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + user + " 1");
    writeFile("/proc/self/gid_map", "0 " + group + " 1");
}

}  // namespace

void enterPrivateNamespaces(int kinds) {
    if (geteuid() == 0) {
        require(unshare(kinds) == 0, "entering private namespaces");
    } else {
        enterUserNamespace(kinds);
    }
    if ((kinds & CLONE_NEWNS) != 0) {
        require(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0,
                "keeping mounts private");
    }
}

void coverDirectory(const std::string& path) {
    require(mount("tmpfs", path.c_str(), "tmpfs", 0, "mode=755") == 0, "covering " + path);
}

void writeFile(const std::string& path, const std::string& content) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(file >= 0, "opening " + path);
    const ssize_t written = write(file, content.data(), content.size());
    const int error = errno;
    close(file);
    errno = error;
    require(written == static_cast<ssize_t>(content.size()), "writing " + path);
}
