#pragma once

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <string>

inline constexpr unsigned int oldAddress = 0xc000020a;  // 192.0.2.10
inline constexpr unsigned int newAddress = 0xc633640a;  // 198.51.100.10
inline constexpr unsigned int mask = 0xffffff00;
inline constexpr unsigned int gateway = 0xc0000201;  // 192.0.2.1

inline const std::string dhcpRead =
    R"(varoGetDhcp() -> 0 {selector=0 dhcp=1 vendor=1 option82=0 circuitId="kept"})";
inline const std::string addressRead =
    R"(varoGetInterface("mng0") -> 0 {192.0.2.10/255.255.255.0 in network byte order})";
inline const std::string macRead = R"(varoGetIfcMAC("mng0") -> 0 02:00:00:00:00:07)";

/// The record cannot be read, by what is told of the management interface.
inline Entries dhcpUnread(const std::string& code) {
    return {"varoGetDhcp() -> " + code, error("getNetworkInfo: varoGetDhcp has failed: rv=" + code +
                                              ", DHCP default value is ON")};
}

/// Name of the management port, and its place in an interface record.
inline const Entries portNamed = {"interfaceMngGet() -> 0 1",
                                  R"(interfaceLinuxnameGet(1, 9) -> 0 "mng0")"};

inline const Entries gatewayRead =
    sharing("varoGetRouteByDst({0.0.0.0 via 0.0.0.0}) -> 0 192.0.2.1");
inline const Entries noGatewayRead = sharing("varoGetRouteByDst({0.0.0.0 via 0.0.0.0}) -> 1");

inline const Entries vlansRead = {trace("getNetworkInfo: vlanid=1 mngVlanMode=0"),
                                  "defConnectGetDefVid() -> 1", "defConnectGetDefModeNative() -> 0",
                                  trace("getNetworkInfo: defVid=1 defVlanMode=1")};

/// The whole of getNetworkInfo, by what two of its reads say.
inline Entries infoRead(const std::string& address = addressRead,
                        const Entries& dhcp = {dhcpRead}) {
    return sharing(dhcp, "interfaceMngGet() -> 0 1", trace("getNetworkInfo: portID: 1."),
                   R"(interfaceLinuxnameGet(1, 9) -> 0 "mng0")", macRead, address, vlansRead);
}

/// Tests of the IPv4 settings, on a board whose DHCP client has obtained an address. The helpers of
/// the operations are reached past their access (-fno-access-control).
class Ipv4Test : public EntityTest {
protected:
    Ipv4Test() {
        platform.addressing.interfaces["mng0"] = {oldAddress, mask};
        platform.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
        platform.addressing.defaultGateway = gateway;
        platform.addressing.dhcp.dhcpEnabled = 1;
        platform.addressing.dhcp.vendorClassEnabled = 1;
        put(platform.addressing.dhcp.circuitId, "kept");
        logEverything();
    }

    /// What the getters say; their own journal is of no interest then.
    Network::NetworkInfo info() {
        Network::NetworkInfo info{};
        EXPECT_EQ(entity().getNetworkInfo(&info), 0);
        journal();
        return info;
    }
    /// The information that is read into a record full of other values.
    static Network::NetworkInfo infoOverOldValues() {
        auto info = filled<Network::NetworkInfo>(0xff);
        EXPECT_EQ(entity().getNetworkInfo(&info), 0);
        return info;
    }
    unsigned int gatewayNow() {
        unsigned int now = 77;
        EXPECT_EQ(networkGetGateway(&now), 0);
        journal();
        return now;
    }
};
