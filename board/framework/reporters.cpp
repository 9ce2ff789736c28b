#include "board/framework/reporters.h"

namespace framework {

// Never destroyed: requests may be served until the process ends.

Reporter<VlanReport>& vlanReporter() {
    static auto& reporter = *new Reporter<VlanReport>("the board has no switch");
    return reporter;
}

Reporter<DhcpIdentity>& dhcpIdentityReporter() {
    static auto& reporter = *new Reporter<DhcpIdentity>("the board has no DHCP client");
    return reporter;
}

}  // namespace framework
