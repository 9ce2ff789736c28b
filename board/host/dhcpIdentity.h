#pragma once

#include <string>

namespace host {

/// Lets the control program tell what the DHCP client is told to send; the vendor class is that
/// which the client was configured with.
void reportDhcpIdentity(const std::string& vendorClass);

}  // namespace host
