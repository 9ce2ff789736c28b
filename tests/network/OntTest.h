#pragma once

#include "network/EntityTest.h"
#include "network/exports.h"

#include <net/if.h>

#include <string>

inline constexpr unsigned int ontAddress = 0xc0000205;  // 192.0.2.5
inline constexpr unsigned int ontMask = 0xffffff00;

/// The entity's own state, read before anything is changed.
inline const Entries boardsInfoRead =
    sharing("varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=0 circuitId=\"\"}",
            "interfaceMngGet() -> 0 1", R"(interfaceLinuxnameGet(1, 9) -> 0 "mng0")",
            R"(varoGetIfcMAC("mng0") -> 0 02:00:00:00:00:07)",
            R"(varoGetInterface("mng0") -> 0 {192.0.2.10/255.255.255.0 in network byte order})",
            "defConnectGetDefVid() -> 1", "defConnectGetDefModeNative() -> 0");

inline const std::string opened = "socket(2, 2, 0) -> 1000";
inline const std::string closed = "close(1000) -> 0";
inline const std::string addressSet = R"(ioctl(1000, SIOCSIFADDR, "ont0" 2 192.0.2.5:0) -> 0)";
inline const std::string addressCleared = R"(ioctl(1000, SIOCSIFADDR, "ont0" 2 0.0.0.0:0) -> 0)";
inline const std::string maskSet = R"(ioctl(1000, SIOCSIFNETMASK, "ont0" 2 255.255.255.0:0) -> 0)";
inline const std::string flagsRead = R"(ioctl(1000, SIOCGIFFLAGS, "ont0") -> 0)";
inline const std::string systemMacRead = "mngSystemMacGet() -> 0";
inline const std::string macSet = R"(ioctl(1000, SIOCSIFHWADDR, "ont0" 1 02:00:00:ab:cd:ef) -> 0)";
inline const std::string vlanSet = "gponOntMngVlanSet(77) -> 0";

// Up, broadcast, running, multicast; and the same down.
inline constexpr short upFlags = 0x1043;
inline const std::string setDown = R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1042) -> 0)";
inline const std::string setUp = R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1043) -> 0)";

inline const std::string flagsRefused =
    error("setOntMng: Could not set the flags. Errorcode : 1 Operation not permitted");

/// Tests of the ONT's interface, on a board on which it is up.
class OntTest : public EntityTest {
protected:
    OntTest() {
        platform.addressing.interfaces["mng0"] = {0xc000020a, 0xffffff00};
        platform.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
        platform.ont.flags = upFlags;
    }

    bool isUp() const { return (platform.ont.flags & IFF_UP) != 0; }
};
