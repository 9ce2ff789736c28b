#include "board/framework/LogOutput.h"

#include <algorithm>
#include <utility>

namespace framework {

void LogOutput::setSink(Sink newSink, LogImpl::logLevel_t leastSevere) {
    auto shared = newSink ? std::make_shared<const Sink>(std::move(newSink)) : nullptr;
    const std::lock_guard guard(mutex);
    threshold = shared ? std::max<int>(leastSevere, LogImpl::levelError) : nobodyListens;
    sink = std::move(shared);
}

bool LogOutput::listensTo(LogImpl::logLevel_t level) const {
    // A level more severe than the most severe one counts as that.
    return std::max<int>(level, LogImpl::levelError) <= threshold;
}

void LogOutput::write(LogImpl::logLevel_t level, const std::string& message) const {
    std::shared_ptr<const Sink> receiver;
    {
        const std::lock_guard guard(mutex);
        receiver = sink;
    }
    if (receiver) {
        (*receiver)(level, message);
    }
}

}  // namespace framework
