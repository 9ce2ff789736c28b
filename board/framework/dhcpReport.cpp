#include "board/framework/dhcpReport.h"

#include <mutex>
#include <stdexcept>
#include <utility>

namespace framework {

namespace {

struct Registered {
    std::mutex mutex;
    std::function<DhcpReport()> reporter;
};

/// Never destroyed: requests may be served until the process ends.
Registered& registered() {
    static Registered& object = *new Registered;
    return object;
}

}  // namespace

void setDhcpReporter(std::function<DhcpReport()> reporter) {
    Registered& current = registered();
    const std::lock_guard lock(current.mutex);
    current.reporter = std::move(reporter);
}

DhcpReport dhcpReport() {
    std::function<DhcpReport()> reporter;
    {
        Registered& current = registered();
        const std::lock_guard lock(current.mutex);
        reporter = current.reporter;
    }
    if (!reporter) {
        throw std::runtime_error("the board has no DHCP client");
    }
    return reporter();
}

}  // namespace framework
