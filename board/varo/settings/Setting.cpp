#include "board/varo/settings/Setting.h"

#include <fmt/format.h>

namespace varo {

int storedSource(int source) {
    if (source != fromCli && source != fromDhcp) {
        throw Failure(noSuchSource, fmt::format("there is no configuration source {}", source));
    }
    return source;
}

void tellHost(const char* what, const std::function<void()>& applier) {
    try {
        applier();
    } catch (const std::exception& error) {
        throw Failure(applyFailed, fmt::format("the {} settings are stored, but not in force: {}",
                                               what, error.what()));
    }
}

}  // namespace varo
