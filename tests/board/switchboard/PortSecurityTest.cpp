#include "SwitchTest.h"
#include "framework/PortSecurity.h"

#include <sched.h>

#include <cstdlib>

namespace {

using namespace switchboard;
using switchtest::mng;

class PortSecurityTest : public switchtest::SwitchTest {
protected:
    static int update() { return singleton<PortSecurity>::instance().updateMngStaticEntry(); }

    /// The entry as it is stored.
    std::string entry() const {
        const std::string text = readFile(file);
        return text.substr(text.find("\"managementEntry\""));
    }

    /// The result of a refresh, and the entry after it.
    std::string refreshed() const {
        const int result = update();
        return std::to_string(result) + " " + entry();
    }

    /// Runs the body where "mng0" is an Ethernet interface.
    static std::string withInterface(const std::function<std::string()>& body) {
        return inOwnNamespaces(CLONE_NEWNET, [&]() -> std::string {
            if (std::system(
                    "ip link add mng0 address 02:00:5e:10:00:ff type veth peer name far0") != 0) {
                return "no interface could be made";
            }
            return body();
        });
    }
};

TEST_F(PortSecurityTest, MakesTheEntryOfTheManagementPort) {
    EXPECT_EQ(withInterface([&] { return refreshed(); }),
              "0 \"managementEntry\":{\"port\":1,\"vlan\":1,\"address\":[2,0,94,16,0,255]}}\n");
    restart();
    EXPECT_EQ(find(1), success);
    EXPECT_THAT(log.lines(), ElementsAre());
}

TEST_F(PortSecurityTest, RefreshesTheEntryWithTheVlanAndTheAddressOfNow) {
    EXPECT_THAT(withInterface([&] {
                    update();
                    create(10);
                    remove(1, mng);
                    const std::string without = entry();
                    add(10, mng);
                    setPvid(10, mng);
                    if (std::system("ip link set mng0 address 02:00:5e:10:00:01") != 0) {
                        return std::string("no address could be set");
                    }
                    return without + refreshed();
                }),
                "\"managementEntry\":null}\n"
                "0 \"managementEntry\":{\"port\":1,\"vlan\":10,\"address\":[2,0,94,16,0,1]}}\n");
}

TEST_F(PortSecurityTest, TheEntryGoesWhenThePortIsReturned) {
    EXPECT_EQ(withInterface([&] {
                  create(10);
                  add(10, mng);
                  setPvid(10, mng);
                  update();
                  returnManagementPort();
                  return entry();
              }),
              "\"managementEntry\":null}\n");
}

TEST_F(PortSecurityTest, NeedsAVlan) {
    EXPECT_EQ(withInterface([&] {
                  remove(1, mng);
                  const int result = update();
                  return fmt::format("{} {}", result, fmt::join(log.take(), "\n"));
              }),
              "8 3 PortSecurity::updateMngStaticEntry: the management port has no PVID");
}

TEST_F(PortSecurityTest, NeedsAnEthernetInterface) {
    const auto updateOf = [&](const std::string& interface) {
        switchboard::configure({directory.path(), log.receiver(), interface});
        return update();
    };
    EXPECT_EQ(updateOf("lo"), noHardwareAddress);
    EXPECT_EQ(updateOf("missing0"), noHardwareAddress);
    EXPECT_EQ(updateOf("longer-than-a-name"), noHardwareAddress);
    const std::string call = "3 PortSecurity::updateMngStaticEntry: ";
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            call + "lo is no Ethernet interface",
            call + "cannot read the Ethernet address of missing0: No such device",
            call + "cannot read the Ethernet address of longer-than-a-name: No such device"));
}

}  // namespace
