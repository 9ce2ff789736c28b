#include "terminal.h"

#include "mngctlRun.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace mngctl::test {

Terminal::Terminal(const std::vector<std::string>& words,
                   const std::vector<std::pair<std::string, std::string>>& variables) {
    std::vector<std::string> command{MNGCTL};
    command.insert(command.end(), words.begin(), words.end());
    const auto list = pointers(command);
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 100;
    child = ::forkpty(&master, nullptr, nullptr, &size);
    if (child < 0) {
        throw std::runtime_error("no terminal");
    }
    if (child == 0) {
        for (const auto& [name, value] : variables) {
            ::setenv(name.c_str(), value.c_str(), 1);
        }
        ::execv(MNGCTL, list.data());
        ::_exit(127);
    }
}

Terminal::~Terminal() {
    if (child > 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    ::close(master);
}

void Terminal::type(const std::string& keys) {
    for (std::size_t done = 0; done < keys.size();) {
        const ssize_t written = ::write(master, keys.data() + done, keys.size() - done);
        if (written <= 0) {
            throw std::runtime_error("the terminal takes no keys");
        }
        done += static_cast<std::size_t>(written);
    }
}

void Terminal::type(const std::string& keys, const std::string& text) {
    type(keys);
    waitFor(text);
}

void Terminal::enter(const std::string& line, const std::string& text) {
    type(line + "\r", text);
    waitFor("mngctl> ");
}

int Terminal::leave(const std::string& keys) {
    type(keys);
    return exitCode();
}

Terminal::Read Terminal::readMore() {
    pollfd wait{master, POLLIN, 0};
    if (::poll(&wait, 1, 20'000) <= 0) {
        return Read::Nothing;
    }
    char buffer[4096];
    // At the end of the other side this is an error (EIO).
    const ssize_t got = ::read(master, buffer, sizeof buffer);
    if (got <= 0) {
        return Read::End;
    }
    seen.append(buffer, static_cast<std::size_t>(got));
    return Read::More;
}

std::string Terminal::waitFor(const std::string& text) {
    for (;;) {
        const std::size_t found = seen.find(text);
        if (found != std::string::npos) {
            std::string part = seen.substr(0, found + text.size());
            seen.erase(0, part.size());
            return part;
        }
        if (readMore() != Read::More) {
            throw std::runtime_error("'" + text + "' does not appear; there is: " + seen);
        }
    }
}

int Terminal::exitCode() {
    Read last = Read::More;
    while (last == Read::More) {
        last = readMore();
    }
    if (last == Read::Nothing) {
        throw std::runtime_error("mngctl does not end; there is: " + seen);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace mngctl::test
