#include "board/process/becomeProgram.h"

#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace process {

namespace {

void say(const char* text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, ::strlen(text));
}

}  // namespace

void becomeProgram(char* const* arguments, char* const* environment, pid_t parent) {
    for (int number = 1; number < NSIG; ++number) {
        ::signal(number, SIG_DFL);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before that.
    if (::getppid() != parent) {
        ::_exit(EXIT_FAILURE);
    }
    ::execvpe(arguments[0], arguments, environment);
    const char* const reason = ::strerrordesc_np(errno);
    say("cannot run ");
    say(arguments[0]);
    say(": ");
    say(reason != nullptr ? reason : "unknown error");
    say("\n");
    ::_exit(127);
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

}  // namespace process
