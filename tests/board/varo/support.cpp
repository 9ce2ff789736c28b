#include "tests/board/varo/support.h"

#include "tests/board/varo/TemporaryDirectory.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace varotest {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Namespaces need root; without it, a user namespace makes this process root in them.
void unshareAsRoot(int flags) {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (user == 0) {
        if (::unshare(flags) != 0) {
            fail("unshare");
        }
    } else {
        if (::unshare(flags | CLONE_NEWUSER) != 0) {
            fail("unshare with a user namespace");
        }
        writeFile("/proc/self/setgroups", "deny");
        writeFile("/proc/self/uid_map", fmt::format("0 {} 1", user));
        writeFile("/proc/self/gid_map", fmt::format("0 {} 1", group));
    }
    if ((flags & CLONE_NEWNS) != 0 &&
        ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        fail("make the mounts private");
    }
}

std::string readAll(int descriptor) {
    std::string content;
    char buffer[4096];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count > 0) {
            content.append(buffer, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return content;
        }
    }
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "varo-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        fail("mkdtemp");
    }
    directory = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

varo::Log LogLines::receiver() {
    return [this](int level, const std::string& text) {
        const std::lock_guard lock(mutex);
        collected.push_back(fmt::format("{} {}", level, text));
    };
}

std::vector<std::string> LogLines::lines() const {
    const std::lock_guard lock(mutex);
    return collected;
}

std::vector<std::string> LogLines::take() {
    const std::lock_guard lock(mutex);
    return std::exchange(collected, {});
}

std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& file, const std::string& content) {
    std::ofstream stream(file, std::ios::binary);
    stream << content << std::flush;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::vector<std::string> filesIn(const fs::path& directory) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string sql(const fs::path& file, const std::string& statements) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open(file.c_str(), &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errstr(result));
    }

    std::string output;
    const auto collect = [](void* context, int count, char** values, char**) {
        auto& rows = *static_cast<std::string*>(context);
        if (!rows.empty()) {
            rows += '\n';
        }
        for (int i = 0; i < count; ++i) {
            rows += std::string(i == 0 ? "" : "|") + (values[i] ? values[i] : "NULL");
        }
        return 0;
    };
    if (sqlite3_exec(opened, statements.c_str(), collect, &output, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(opened));
    }
    return output;
}

std::string inOwnNamespaces(int flags, const std::function<std::string()>& body) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        fail("pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        std::string answer;
        try {
            unshareAsRoot(flags);
            answer = body();
        } catch (const std::exception& error) {
            answer = std::string("exception: ") + error.what();
        }
        const ssize_t written = ::write(ends[1], answer.data(), answer.size());
        // Nothing of the test is to run twice: neither destructors nor leak checks.
        ::_exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    std::string answer = readAll(ends[0]);
    ::close(ends[0]);
    if (const int status = waitFor(child); status != 0) {
        answer += fmt::format(" [child ended with status {:#x}]", status);
    }
    return answer;
}

int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            fail("waitpid");
        }
    }
    return status;
}

void mountTmpfs(const fs::path& directory, std::size_t bytes) {
    if (::mount("tmpfs", directory.c_str(), "tmpfs", 0, fmt::format("size={}", bytes).c_str()) !=
        0) {
        fail("mount tmpfs");
    }
}

void bindMount(const fs::path& source, const fs::path& target) {
    if (::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        fail("bind mount");
    }
}

void remountReadOnly(const fs::path& directory) {
    if (::mount("", directory.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
        fail("remount read-only");
    }
}

}  // namespace varotest
