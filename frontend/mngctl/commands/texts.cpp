#include "mngctl/commands/texts.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

/// Characters of a name that the board shows; it keeps more.
constexpr std::size_t longestShown = 99;

}  // namespace

std::string sourceName(int source) {
    switch (source) {
        case 0:
            return "unknown";
        case 1:
            return "dhcp";
        case 2:
            return "cli";
        default:
            return fmt::format("source {}", source);
    }
}

unsigned parseUpTo(unsigned greatest, std::string_view expected, const std::string& text) {
    unsigned number = 0;
    try {
        number = parseUnsigned(text);
    } catch (const UsageError&) {
        // One sentence for all that is none.
    }
    if (number < 1 || number > greatest) {
        throw UsageError(
            fmt::format("{} from 1 to {}, not '{}'", expected, greatest, printable(text)));
    }
    return number;
}

std::string tellCutName(std::string_view name) {
    return name.size() <= longestShown
               ? ""
               : fmt::format(
                     "mngctl: the board keeps all {} characters of this name but shows the "
                     "first {} only\n",
                     name.size(), longestShown);
}

}  // namespace mngctl
