#pragma once

#include <memory>

struct nl_sock;

namespace varo {

/// Hears from the kernel that interfaces come, change or go (rtnetlink(7)), in the network
/// namespace of the thread that makes it.
class LinkMonitor {
public:
    /// Everything from here on is heard. Throws Failure (systemFailed).
    LinkMonitor();

    /// Readable when something was heard.
    int descriptor() const;
    /// Takes what was heard; what it was is not told, as messages may have been lost.
    void drain();

private:
    struct Close {
        void operator()(nl_sock* socket) const;
    };
    std::unique_ptr<nl_sock, Close> socket;
};

}  // namespace varo
