// What the bridge tells about the management of the ONTs: the system's MAC address and the VLAN.

#include "../framework/doubles.h"
#include "board/bridge/systemMac.h"
#include "board/framework/Framework.h"
#include "board/framework/boardIdentity.h"
#include "board/support/Descriptor.h"
#include "platform/zubridge.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>

namespace {

using namespace test;
using support::Descriptor;

constexpr zuHandle_t defaultBridge{};

/// What the bridge answers, as text; "failed" when the buffer was left alone.
std::string systemMac(const zuHandle_t& handle = defaultBridge) {
    std::array<unsigned char, 6> mac;
    mac.fill(0x55);
    if (zubridge::instance().mngSystemMacGet(handle, mac.data()) != 0) {
        EXPECT_EQ(mac[0], 0x55);
        return "failed";
    }
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2],
                  mac[3], mac[4], mac[5]);
    return text;
}

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

/// An Ethernet interface, which lives as long as the descriptor.
Descriptor makeInterface(const char* name, const std::array<unsigned char, 6>& mac) {
    Descriptor tap(open("/dev/net/tun", O_RDWR | O_CLOEXEC));
    ifreq request{};
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    request.ifr_flags = IFF_TAP | IFF_NO_PI;
    check(tap && ioctl(tap.get(), TUNSETIFF, &request) == 0, "a tap interface");
    const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    request.ifr_hwaddr.sa_family = ARPHRD_ETHER;
    std::memcpy(request.ifr_hwaddr.sa_data, mac.data(), mac.size());
    check(ioctl(socket.get(), SIOCSIFHWADDR, &request) == 0, "a MAC address");
    return tap;
}

class SystemMacTest : public testing::Test {
protected:
    ~SystemMacTest() override {
        bridge::setSystemMac({});
        framework::nameManagementPort("mng0");
    }

    CapturedLog log;
};

class OntVlanTest : public testing::Test {
protected:
    OntVlanTest() { load(); }
    /// The settings live as long as the process.
    ~OntVlanTest() override { zubridge::instance().gponOntMngVlanSet(1); }

    void load() {
        framework::framework().settings.load(directory.path(), [](int, const std::string&) {});
    }

    static unsigned int vlan() {
        unsigned int id = 9999;
        EXPECT_EQ(zubridge::instance().gponOntMngVlanGet(&id), 0);
        return id;
    }

    TemporaryDirectory directory;
    CapturedLog log;
};

}  // namespace

TEST_F(SystemMacTest, IsThatOfTheManagementPort) {
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNET,
                              [] {
                                  const auto port =
                                      makeInterface("mng0", {0x02, 0x1b, 0x21, 0x3c, 0x4d, 0xfe});
                                  return systemMac();
                              }),
              "02:1b:21:3c:4d:fe");
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNET,
                              [] {
                                  framework::nameManagementPort("tap7");
                                  const auto port = makeInterface("tap7", {0x02, 0, 0, 0, 0, 7});
                                  return systemMac();
                              }),
              "02:00:00:00:00:07");
}

TEST_F(SystemMacTest, IsTheOneThatIsSetWhateverThePortHas) {
    bridge::setSystemMac(bridge::MacAddress{0, 0x1b, 0x21, 0x3c, 0x4d, 0x5e});
    EXPECT_EQ(systemMac(), "00:1b:21:3c:4d:5e");
    EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(SystemMacTest, IsNotKnownWithoutAnEthernetPort) {
    framework::nameManagementPort("nosuch0");
    EXPECT_EQ(systemMac(), "failed");
    framework::nameManagementPort("lo");
    EXPECT_EQ(systemMac(), "failed");
    // Longer than a name can be.
    framework::nameManagementPort("sixteenlettersxx");
    EXPECT_EQ(systemMac(), "failed");
    EXPECT_THAT(log.entries(),
                ElementsAre(Pair(LogImpl::levelError,
                                 "the system's MAC address is not known: interface \"nosuch0\": No "
                                 "such device"),
                            Pair(LogImpl::levelError,
                                 "the system's MAC address is not known: interface \"lo\" is not "
                                 "an Ethernet interface"),
                            Pair(LogImpl::levelError,
                                 "the system's MAC address is not known: there is no management "
                                 "port")));
}

TEST_F(SystemMacTest, IsThatOfTheDefaultBridgeOnly) {
    bridge::setSystemMac(bridge::MacAddress{0, 0x1b, 0x21, 0x3c, 0x4d, 0x5e});
    EXPECT_EQ(systemMac({{0, 0, 0, 0, 0, 0, 0, 1}}), "failed");
    EXPECT_NE(zubridge::instance().mngSystemMacGet(defaultBridge, nullptr), 0);
    const auto refusal = Pair(LogImpl::levelError,
                              "the system's MAC address is not known: there is one bridge only");
    EXPECT_THAT(log.entries(), ElementsAre(refusal, refusal));
}

TEST(MacText, IsSixBytesOfAStation) {
    EXPECT_EQ(bridge::parseMac("00:1b:21:3C:4d:5e"),
              (bridge::MacAddress{0, 0x1b, 0x21, 0x3c, 0x4d, 0x5e}));
    for (const char* bad :
         {"", "00:1b:21:3c:4d", "00:1b:21:3c:4d:5e:6f", "00-1b-21-3c-4d-5e", "0:1b:21:3c:4d:5e",
          "00:1b:21:3c:4d:5g", "00:1b:21:3c:4d:5", "001b213c4d5e", "+0:1b:21:3c:4d:5e",
          "-1:1b:21:3c:4d:5e", " 0:1b:21:3c:4d:5e", "00:1b:21:3c:4d 5e", "01:00:5e:00:00:01",
          "ff:ff:ff:ff:ff:ff", "00:00:00:00:00:00"}) {
        EXPECT_EQ(bridge::parseMac(bad), std::nullopt) << bad;
    }
}

TEST_F(OntVlanTest, Is1FromTheFactory) { EXPECT_EQ(vlan(), 1u); }

TEST_F(OntVlanTest, IsKeptAcrossRestarts) {
    EXPECT_EQ(zubridge::instance().gponOntMngVlanSet(4094), 0);
    EXPECT_EQ(vlan(), 4094u);
    load();
    EXPECT_EQ(vlan(), 4094u);
    EXPECT_THAT(readFile(directory.path() / "framework.json"),
                HasSubstr("\"ontManagementVlan\": 4094"));
    EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(OntVlanTest, IsNoOtherNumber) {
    ASSERT_EQ(zubridge::instance().gponOntMngVlanSet(7), 0);
    for (const unsigned int bad : {0u, 4095u, 0xFFFFFFFFu}) {
        EXPECT_NE(zubridge::instance().gponOntMngVlanSet(bad), 0) << bad;
    }
    EXPECT_EQ(vlan(), 7u);
    EXPECT_EQ(log.entries().at(1).second,
              "the VLAN of the ONT's management is not changed: 4095 is not in 1 to 4094");
    EXPECT_NE(zubridge::instance().gponOntMngVlanGet(nullptr), 0);
}

TEST_F(OntVlanTest, StaysWhenItCannotBeStored) {
    ASSERT_EQ(zubridge::instance().gponOntMngVlanSet(7), 0);
    std::filesystem::create_directory(directory.path() / "framework.json.new");
    EXPECT_NE(zubridge::instance().gponOntMngVlanSet(8), 0);
    EXPECT_EQ(vlan(), 7u);
    std::filesystem::remove(directory.path() / "framework.json.new");
}
