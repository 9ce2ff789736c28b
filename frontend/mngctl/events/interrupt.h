#pragma once

#include <csignal>

namespace mngctl {

/// While it lives, Ctrl-C ends nothing but makes a descriptor readable.
class Interrupt {
public:
    /// Throws std::system_error.
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    int descriptor() const { return signals; }

    /// Whether Ctrl-C came since the last look.
    bool take();

private:
    sigset_t before{};
    int signals = -1;
};

}  // namespace mngctl
