#include "mngctl/commands/snmp.h"
#include "mngctl/outcome.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

extern char** environ;

namespace mngctl {

namespace {

namespace fs = std::filesystem;

// The notification that net-snmp reserves for examples and tests, with its one variable.
constexpr const char* notification = "1.3.6.1.4.1.8072.2.3.0.1";
constexpr const char* variable = "1.3.6.1.4.1.8072.2.3.2.2.0";

[[noreturn]] void cannot(const std::string& what, int error) {
    throw NoAnswer(
        fmt::format("no trap can be sent: {}: {}", what, std::generic_category().message(error)));
}

/// A directory that nobody else can read, removed with the object.
class PrivateDirectory {
public:
    PrivateDirectory() : path((fs::temp_directory_path() / "mngctl-XXXXXX").string()) {
        if (::mkdtemp(path.data()) == nullptr) {
            cannot(path, errno);
        }
    }
    ~PrivateDirectory() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;

    std::string path;
};

/// A file that closes itself.
class OpenFile {
public:
    OpenFile(const std::string& path, int flags) : number(::open(path.c_str(), flags, 0600)) {
        if (number < 0) {
            cannot(path, errno);
        }
    }
    ~OpenFile() { ::close(number); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const int number;
};

void writeTo(const std::string& path, const std::string& text) {
    const OpenFile file(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC);
    if (::write(file.number, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        cannot(path, errno);
    }
}

/// What the program has said last, without the line end; before that it may talk of its files.
std::string lastLineOf(const std::string& path) {
    const OpenFile file(path, O_RDONLY | O_CLOEXEC);
    char buffer[4096];
    const ssize_t size = ::read(file.number, buffer, sizeof buffer);
    std::string text(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
    text.erase(text.find_last_not_of('\n') + 1);
    return text.substr(text.rfind('\n') + 1);
}

/// A word of snmp.conf(5): quoted, with backslashes in it.
std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

/// The environment, with the program's own files in the directory and no MIB files.
std::vector<std::string> environmentFor(const std::string& directory) {
    std::vector<std::string> result{"MIBS=", "SNMPCONFPATH=" + directory,
                                    "SNMP_PERSISTENT_DIR=" + directory};
    const auto isOwn = [&](const char* each) {
        return std::strncmp(each, "MIBS=", 5) == 0 ||
               std::strncmp(each, "SNMPCONFPATH=", 13) == 0 ||
               std::strncmp(each, "SNMP_PERSISTENT_DIR=", 20) == 0;
    };
    for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
        if (!isOwn(*each)) {
            result.emplace_back(*each);
        }
    }
    return result;
}

/// Runs the program with its errors going to a file; returns its exit status.
int runSnmptrap(std::vector<std::string> words, const std::string& directory,
                const std::string& errors) {
    std::vector<std::string> environment = environmentFor(directory);
    const std::vector<char*> arguments = pointers(words);
    const std::vector<char*> variables = pointers(environment);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = -1;
    const int error =
        ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), variables.data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        cannot("snmptrap", error);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            cannot("snmptrap", errno);
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

TrapOutcome sendTestTrap(const TrapTarget& target, bool inform) {
    const PrivateDirectory directory;
    writeTo(directory.path + "/snmp.conf", "defCommunity " + quoted(target.community) + "\n");
    const std::string errors = directory.path + "/errors";
    std::vector<std::string> words{"snmptrap", "-v", "2c", "-t", "1", "-r", "1"};
    if (inform) {
        words.emplace_back("-Ci");
    }
    words.insert(words.end(), {fmt::format("udp:{}:{}", target.address, target.port), "",
                               notification, variable, "s", "test of the trap managers"});
    if (runSnmptrap(words, directory.path, errors) == 0) {
        return {inform ? TrapOutcome::Acknowledged : TrapOutcome::Sent, {}};
    }
    const std::string said = lastLineOf(errors);
    if (inform && said.find("Timeout") != std::string::npos) {
        return {TrapOutcome::NoAnswer, {}};
    }
    return {TrapOutcome::Failed, said};
}

}  // namespace mngctl
