// What the DHCP client tells about itself: vendor class and option 82 with the circuit id, which is
// made of the shelf's identity, the board's position and the management VLAN.

#include "framework/sysInfo.h"
#include "network/Network.h"
#include "network/dhcpRecord.h"
#include "varo/varoLib.h"

#include <cstdio>
#include <string>

int Network::setVendor(bool dhcp, bool vendor) {
    return withExclusiveLock([&] {
        varoLib_s_dhcp record = readDhcpForUpdate(varoGetDhcp);
        // The vendor class may switch the client on, and never off.
        if (dhcp && vendor) {
            record.dhcpEnabled = 1;
        }
        record.vendorClassEnabled = vendor ? 1 : 0;
        const int status = varoUpdateDhcp(&record);
        trace("[networkBLE]: setVendor: return value: %d\n", status);
        return resultOf(status);
    });
}

int Network::setOption82(bool, bool option82) {
    return withExclusiveLock([&] {
        varoLib_s_dhcp record = readDhcpForUpdate(varoGetDhcp);
        // Switched off, the record keeps its circuit id.
        if (option82) {
            singleton<Network>::instance().setCircuitId(&record);
        }
        record.option82Enabled = option82 ? 1 : 0;
        const int status = varoUpdateDhcp(&record);
        trace("[networkBLE]: setOption82: return value: %d\n", status);
        return resultOf(status);
    });
}

int Network::setCircuitId(varoLib_s_dhcp* dhcp) {
    std::string shelfId;
    singleton<sysInfo>::instance().getShelfId(shelfId);
    // A long identity is cut; what becomes of it is no failure.
    std::snprintf(dhcp->circuitId, sizeof dhcp->circuitId, "%s:%s eth %u:%u:", "VANTORIX",
                  shelfId.c_str(), boardPos, mngVlanId);
    return 0;
}

void Network::dhcpCehckBeforeSetOption82(varoLib_s_dhcp* dhcp) {
    varoLib_s_dhcp read{};
    if (dhcp == nullptr) {
        varoGetDhcp(&read);
        dhcp = &read;
    }
    if (dhcp->option82Enabled != 0) {
        singleton<Network>::instance().setOption82(dhcp->dhcpEnabled != 0, true);
    }
}
