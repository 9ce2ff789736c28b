#pragma once

#include "board/support/Descriptor.h"

namespace process {

/// Hears from the kernel that interfaces come, change or go (rtnetlink(7)), in the network
/// namespace of the thread that makes it.
class LinkMonitor {
public:
    /// Everything from here on is heard. Throws std::system_error.
    LinkMonitor();

    /// Readable when something was heard.
    int descriptor() const { return socket.get(); }
    /// Takes what was heard; what it was is not told, as messages may have been lost.
    void drain() const;

private:
    support::Descriptor socket;
};

}  // namespace process
