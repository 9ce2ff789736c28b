#include "mngctl/commands/vlanId.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

constexpr unsigned highestVlan = 4094;

}  // namespace

unsigned parseVlanId(const std::string& text) {
    unsigned vlan = 0;
    try {
        vlan = parseUnsigned(text);
    } catch (const UsageError&) {
        // One sentence for all that is no VLAN id.
    }
    if (vlan < 1 || vlan > highestVlan) {
        throw UsageError(
            fmt::format("expected a VLAN id from 1 to {}, not '{}'", highestVlan, printable(text)));
    }
    return vlan;
}

}  // namespace mngctl
