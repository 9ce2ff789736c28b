#include "board/host/dhcpIdentity.h"

#include "board/framework/reporters.h"
#include "varo/varoLib.h"

#include <cstring>
#include <stdexcept>

namespace host {

namespace {

framework::DhcpIdentity readIdentity(const std::string& vendorClass) {
    varoLib_s_dhcp dhcp{};
    if (const int result = varoGetDhcp(&dhcp); result != 0) {
        throw std::runtime_error("the DHCP settings cannot be read: result " +
                                 std::to_string(result));
    }
    return {dhcp.vendorClassEnabled != 0, vendorClass, dhcp.option82Enabled != 0,
            std::string(dhcp.circuitId, strnlen(dhcp.circuitId, sizeof dhcp.circuitId))};
}

}  // namespace

void reportDhcpIdentity(const std::string& vendorClass) {
    framework::dhcpIdentityReporter().set([vendorClass] { return readIdentity(vendorClass); });
}

}  // namespace host
