#include "support/privateNamespaces.h"

#include "support/files.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
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

std::string readAll(int descriptor) {
    std::string content;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(descriptor, buffer, sizeof buffer);
        if (count > 0) {
            content.append(buffer, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return content;
        }
    }
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

std::string inOwnNamespaces(int kinds, const std::function<std::string()>& body) {
    int ends[2];
    require(pipe2(ends, O_CLOEXEC) == 0, "making a pipe");
    const pid_t child = fork();
    require(child >= 0, "forking");
    if (child == 0) {
        std::string answer;
        try {
            enterPrivateNamespaces(kinds);
            answer = body();
        } catch (const std::exception& error) {
            answer = std::string("exception: ") + error.what();
        }
        const ssize_t written = write(ends[1], answer.data(), answer.size());
        // Nothing of the test is to run twice: neither destructors nor leak checks.
        _exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string answer = readAll(ends[0]);
    close(ends[0]);
    if (const int status = waitFor(child); status != 0) {
        answer += " [child ended with status " + std::to_string(status) + "]";
    }
    return answer;
}

int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        require(errno == EINTR, "waiting for a child");
    }
    return status;
}

void coverDirectory(const std::string& path) {
    require(mount("tmpfs", path.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=755") == 0,
            "covering " + path);
}

std::string shell(const std::string& command) {
    FILE* const stream = popen((command + " 2>&1").c_str(), "re");
    require(stream != nullptr, "popen");
    std::string output = readAll(fileno(stream));
    const int status = pclose(stream);
    if (!output.empty() && output.back() == '\n') {
        output.pop_back();
    }
    if (status != 0) {
        throw std::runtime_error(command + ": " + output);
    }
    return output;
}
