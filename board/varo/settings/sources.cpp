#include "board/varo/settings/sources.h"

#include <fmt/format.h>

namespace varo {

int storedSource(int source) {
    if (source != fromCli && source != fromDhcp) {
        throw Failure(noSuchSource, fmt::format("there is no configuration source {}", source));
    }
    return source;
}

}  // namespace varo
