#include "framework/PortSecurity.h"

#include "board/support/addresses.h"
#include "board/switchboard/Switch.h"

#include <fmt/format.h>

#include <system_error>

namespace {

using switchboard::Failure;
using switchboard::noHardwareAddress;
using switchboard::Switch;
using switchboard::VlanDatabase;

support::MacAddress addressOf(const std::string& interface) {
    try {
        const auto address = support::ethernetAddress(
            interface, fmt::format("cannot read the Ethernet address of {}", interface));
        if (!address) {
            throw Failure(noHardwareAddress, interface + " is no Ethernet interface");
        }
        return *address;
    } catch (const std::system_error& error) {
        throw Failure(noHardwareAddress, error.what());
    }
}

}  // namespace

template class singleton<PortSecurity>;

PortSecurity::PortSecurity() = default;
PortSecurity::~PortSecurity() = default;

int PortSecurity::updateMngStaticEntry() {
    return switchboard::answer("PortSecurity::updateMngStaticEntry", [] {
        Switch& theSwitch = Switch::instance();
        const auto address = addressOf(theSwitch.managementInterface());
        theSwitch.change([&](VlanDatabase& database) { database.refreshManagementEntry(address); });
    });
}
