#include "mngctl/events/interrupt.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace mngctl {

Interrupt::Interrupt() {
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    signals = ::signalfd(-1, &interrupt, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals < 0) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    ::pthread_sigmask(SIG_BLOCK, &interrupt, &before);
}

Interrupt::~Interrupt() {
    take();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::close(signals);
}

bool Interrupt::take() {
    signalfd_siginfo signal{};
    bool came = false;
    while (::read(signals, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) {
        came = true;
    }
    return came;
}

}  // namespace mngctl
