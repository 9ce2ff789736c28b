#include "board/framework/vlanReport.h"

#include <mutex>
#include <stdexcept>
#include <utility>

namespace framework {

namespace {

struct Registered {
    std::mutex mutex;
    std::function<VlanReport()> reporter;
};

/// Never destroyed: requests may be served until the process ends.
Registered& registered() {
    static Registered& object = *new Registered;
    return object;
}

}  // namespace

void setVlanReporter(std::function<VlanReport()> reporter) {
    Registered& current = registered();
    const std::lock_guard lock(current.mutex);
    current.reporter = std::move(reporter);
}

VlanReport vlanReport() {
    std::function<VlanReport()> reporter;
    {
        Registered& current = registered();
        const std::lock_guard lock(current.mutex);
        reporter = current.reporter;
    }
    if (!reporter) {
        throw std::runtime_error("the board has no switch");
    }
    return reporter();
}

}  // namespace framework
