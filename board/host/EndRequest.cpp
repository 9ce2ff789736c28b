#include "board/host/EndRequest.h"

#include "board/host/Options.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace host {

namespace {

// What a handler may use. The descriptor stays open as long as the process lives.
std::atomic<int> event{-1};
std::atomic<bool> isSignalled{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void raiseEvent() {
    const std::uint64_t one = 1;
    // Fails only while the event is raised already, some 2^64 times.
    [[maybe_unused]] const ssize_t written = write(event, &one, sizeof one);
}

extern "C" void onEndSignal(int number) {
    const int error = errno;
    if (isSignalled.exchange(true)) {
        _exit(endedBySignal + number);
    }
    raiseEvent();
    errno = error;
}

extern "C" void onBrokenPipe(int) {}

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void handle(int number, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    if (sigaction(number, &action, nullptr) != 0) {
        fail("sigaction");
    }
}

}  // namespace

EndRequest::EndRequest() {
    event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event == -1) {
        fail("eventfd");
    }
    handle(SIGINT, onEndSignal);
    handle(SIGTERM, onEndSignal);
    handle(SIGPIPE, onBrokenPipe);

    // The process may have been started with them blocked.
    sigset_t handled;
    sigemptyset(&handled);
    sigaddset(&handled, SIGINT);
    sigaddset(&handled, SIGTERM);
    sigaddset(&handled, SIGPIPE);
    if (const int error = pthread_sigmask(SIG_UNBLOCK, &handled, nullptr); error != 0) {
        errno = error;
        fail("pthread_sigmask");
    }
}

void EndRequest::raise() const { raiseEvent(); }

void EndRequest::wait() const {
    pollfd raised{event, POLLIN, 0};
    while (poll(&raised, 1, -1) != 1) {
        if (errno != EINTR) {
            fail("poll");
        }
    }
}

}  // namespace host
