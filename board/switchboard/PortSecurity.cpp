#include "framework/PortSecurity.h"

#include "board/switchboard/Switch.h"
#include "board/switchboard/hardwareAddress.h"

using switchboard::Switch;
using switchboard::VlanDatabase;

template class singleton<PortSecurity>;

PortSecurity::PortSecurity() = default;
PortSecurity::~PortSecurity() = default;

int PortSecurity::updateMngStaticEntry() {
    return switchboard::answer("PortSecurity::updateMngStaticEntry", [] {
        Switch& theSwitch = Switch::instance();
        const auto address = switchboard::hardwareAddress(theSwitch.managementInterface());
        theSwitch.change([&](VlanDatabase& database) { database.refreshManagementEntry(address); });
    });
}
