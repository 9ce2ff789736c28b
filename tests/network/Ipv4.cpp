// Setting the IPv4 address, and the event that goes with it.

#include "network/Ipv4Test.h"

#include <boost/function/function_base.hpp>

namespace {

const std::string noAddressRead =
    R"(varoGetInterface("mng0") -> 0 {0.0.0.0/0.0.0.0 in network byte order})";
const std::string oldDetached = R"(varoDettachIpFromIntf({192.0.2.10/255.255.255.0 "mng0"}) -> 0)";
const std::string newAttached = R"(varoAttachIpToIntf({198.51.100.10/255.255.255.0 "mng0"}) -> 0)";
const std::string gatewayAdded = "varoAddRoute({0.0.0.0 via 192.0.2.1}) -> 0";

/// DHCP switched off by setIp.
const Entries dhcpOff = {
    dhcpRead, R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=1 option82=0 circuitId="kept"}) -> 0)",
    trace("setIp: return value for varoUpdateDhcp: 0"),
    "varoDhcpRetreatAlrServNotResponding() -> 0",
    trace("setIp: return value for varoDhcpRetreatAlrServNotResponding: 0")};

const Entries newAddressSet = sequence(
    portNamed, newAttached, trace("setIp: new ip address attached!"), "varoSendSigToAcs(10) -> 0");

/// setGateway after the kernel dropped the default route with the old address.
const Entries gatewayRestored =
    exclusively(trace("setGateway: after lock"), noGatewayRead, gatewayAdded,
                trace("setGateway: new default gateway added!"));

/// The way up to the attachment of the new address.
const Entries oldAddressGone = sequence(infoRead(), dhcpOff, gatewayRead, portNamed, oldDetached,
                                        trace("setIp: old ip address detached!"));

class Ipv4Address : public Ipv4Test {
protected:
    /// The old address is not detached, by these steps, which is reported; the change goes on.
    void expectOldAddressToStay(const Entries& steps) {
        EXPECT_EQ(networkSetIp(newAddress, mask), 0);
        EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, gatewayRead, steps,
                                   error("setIp: faild to detach old ip address!"), newAddressSet,
                                   exclusively(trace("setGateway: after lock"), gatewayRead)));
    }

    void loseAddress() {
        platform.addressing.interfaces["mng0"] = {0, 0};
        platform.addressing.defaultGateway = 0;
    }
};

// Setting the address.

TEST_F(Ipv4Address, AddressIsReplacedAndTheGatewayInstalledAnew) {
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(oldAddressGone, newAddressSet, gatewayRestored));
    EXPECT_EQ(info().ipAddr, newAddress);
    EXPECT_EQ(info().netmask, mask);
    EXPECT_EQ(info().dhcpEnabled, 0U);
    EXPECT_EQ(gatewayNow(), gateway);
    EXPECT_EQ(entity().currentIpAddr, newAddress);
}

TEST_F(Ipv4Address, AddressAndMaskInPlaceAreFrozenAsStatic) {
    EXPECT_EQ(networkSetIp(oldAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff));
    EXPECT_EQ(info().dhcpEnabled, 0U);
    EXPECT_EQ(entity().currentIpAddr, 0U) << "nothing was attached";
}

TEST_F(Ipv4Address, AnotherMaskAloneReplacesTheAddressToo) {
    EXPECT_EQ(networkSetIp(oldAddress, 0xffff0000), 0);
    EXPECT_JOURNAL(exclusively(
        oldAddressGone, portNamed, R"(varoAttachIpToIntf({192.0.2.10/255.255.0.0 "mng0"}) -> 0)",
        trace("setIp: new ip address attached!"), "varoSendSigToAcs(10) -> 0", gatewayRestored));
}

TEST_F(Ipv4Address, FirstAddressHasNothingToDetachAndNoGatewayToRestore) {
    loseAddress();
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(noAddressRead), dhcpOff, noGatewayRead, newAddressSet,
                               exclusively(trace("setGateway: after lock"), noGatewayRead)));
}

TEST_F(Ipv4Address, GatewayThatTheKernelKeptIsLeftAlone) {
    platform.addressing.interfaces["mng0"] = {0, 0};
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(noAddressRead), dhcpOff, gatewayRead, newAddressSet,
                               exclusively(trace("setGateway: after lock"), gatewayRead)));
}

TEST_F(Ipv4Address, AddressZeroFailsOnceDhcpIsOff) {
    EXPECT_EQ(networkSetIp(0, mask), -1);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff));
    EXPECT_EQ(info().dhcpEnabled, 0U);
    EXPECT_EQ(info().ipAddr, oldAddress);
}

TEST_F(Ipv4Address, AddressZeroInPlaceIsFrozenToo) {
    loseAddress();
    EXPECT_EQ(networkSetIp(0, 0), 0);
    EXPECT_JOURNAL(exclusively(infoRead(noAddressRead), dhcpOff));
    EXPECT_EQ(networkSetIp(0, mask), -1);
    journal();
}

TEST_F(Ipv4Address, AddressWhoseCurrentStateCannotBeReadIsNotTouched) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(refused("sharedLock")));
    EXPECT_EQ(platform.addressing.dhcp.dhcpEnabled, 1U);
}

TEST_F(Ipv4Address, AddressIsReplacedThoughTheDhcpRecordCannotBeRead) {
    platform.fail("varoGetDhcp", 5);
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(
        exclusively(infoRead(addressRead, dhcpUnread("5")), "varoGetDhcp() -> 5",
                    R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=0 option82=0 circuitId=""}) -> 0)",
                    trace("setIp: return value for varoUpdateDhcp: 0"),
                    "varoDhcpRetreatAlrServNotResponding() -> 0",
                    trace("setIp: return value for varoDhcpRetreatAlrServNotResponding: 0"),
                    gatewayRead, portNamed, oldDetached, trace("setIp: old ip address detached!"),
                    newAddressSet, gatewayRestored));
}

TEST_F(Ipv4Address, DhcpThatCannotBeSwitchedOffEndsTheChange) {
    platform.fail("varoUpdateDhcp", -6);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(
        infoRead(), dhcpRead,
        R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=1 option82=0 circuitId="kept"}) -> -6)",
        trace("setIp: return value for varoUpdateDhcp: -6")));
    EXPECT_EQ(info().ipAddr, oldAddress);
    EXPECT_EQ(info().dhcpEnabled, 1U);
}

TEST_F(Ipv4Address, AlarmThatCannotBeTakenBackEndsTheChangeWithDhcpOff) {
    platform.fail("varoDhcpRetreatAlrServNotResponding", 7);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(
        infoRead(), dhcpRead,
        R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=1 option82=0 circuitId="kept"}) -> 0)",
        trace("setIp: return value for varoUpdateDhcp: 0"),
        "varoDhcpRetreatAlrServNotResponding() -> 7",
        trace("setIp: return value for varoDhcpRetreatAlrServNotResponding: 7")));
    EXPECT_EQ(info().ipAddr, oldAddress);
    EXPECT_EQ(info().dhcpEnabled, 0U);
}

TEST_F(Ipv4Address, GatewayThatCannotBeReadIsLost) {
    platform.fail("sharedLock", 1, 1, 1);  // the one in getGateway
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, refused("sharedLock"), portNamed, oldDetached,
                               trace("setIp: old ip address detached!"), newAddressSet,
                               exclusively(trace("setGateway: after lock"), noGatewayRead)));
    EXPECT_EQ(gatewayNow(), 0U);
}

TEST_F(Ipv4Address, OldAddressThatCannotBeDetachedIsReportedAndTheChangeGoesOn) {
    platform.fail("varoDettachIpFromIntf", 8);
    expectOldAddressToStay(
        sequence(portNamed, R"(varoDettachIpFromIntf({192.0.2.10/255.255.255.0 "mng0"}) -> 8)"));
}

TEST_F(Ipv4Address, PortThatCannotBeFoundForTheOldAddressIsReportedAndTheChangeGoesOn) {
    platform.fail("interfaceMngGet", 9, 1, 1);
    expectOldAddressToStay(sequence("interfaceMngGet() -> 9"));
}

TEST_F(Ipv4Address, PortWithoutANameForTheOldAddressIsReportedAndTheChangeGoesOn) {
    platform.fail("interfaceLinuxnameGet", 9, 1, 1);
    expectOldAddressToStay(
        sequence("interfaceMngGet() -> 0 1", "interfaceLinuxnameGet(1, 9) -> 9"));
}

TEST_F(Ipv4Address, AddressThatCannotBeAttachedLeavesTheInterfaceWithoutOne) {
    subscribe("a", true);
    platform.fail("varoAttachIpToIntf", 8);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, gatewayRead, "a is asked about 3325256714",
                               portNamed, oldDetached, trace("setIp: old ip address detached!"),
                               portNamed,
                               R"(varoAttachIpToIntf({198.51.100.10/255.255.255.0 "mng0"}) -> 8)",
                               error("setIp: faild to attach new ip address!")));
    EXPECT_EQ(info().ipAddr, 0U);
    EXPECT_EQ(info().dhcpEnabled, 0U);
    EXPECT_EQ(gatewayNow(), 0U);
    EXPECT_EQ(entity().currentIpAddr, 0U);
}

TEST_F(Ipv4Address, FirstAddressThatCannotBeAttachedLeavesNone) {
    loseAddress();
    subscribe("a", true);
    platform.fail("varoAttachIpToIntf", 8);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(infoRead(noAddressRead), dhcpOff, noGatewayRead,
                               "a is asked about 3325256714", portNamed,
                               R"(varoAttachIpToIntf({198.51.100.10/255.255.255.0 "mng0"}) -> 8)",
                               error("setIp: faild to attach new ip address!")));
    EXPECT_EQ(info().ipAddr, 0U);
    EXPECT_EQ(entity().currentIpAddr, 0U);
}

TEST_F(Ipv4Address, FirstAddressIsNotAttachedWithoutAPort) {
    loseAddress();
    platform.fail("interfaceMngGet", 9, 1, 1);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(infoRead(noAddressRead), dhcpOff, noGatewayRead,
                               "interfaceMngGet() -> 9",
                               error("setIp: faild to attach new ip address!")));
}

TEST_F(Ipv4Address, AddressThatCannotBeAttachedIsNotTheOneThatIsRemembered) {
    ASSERT_EQ(networkSetIp(newAddress, mask), 0);
    platform.fail("varoAttachIpToIntf", 8);
    EXPECT_EQ(networkSetIp(newAddress + 1, mask), -1);
    journal();
    EXPECT_EQ(info().ipAddr, 0U);
    EXPECT_EQ(entity().currentIpAddr, newAddress);
}

TEST_F(Ipv4Address, AddressIsNotAttachedWithoutAPort) {
    platform.fail("interfaceMngGet", 9, 1, 2);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(oldAddressGone, "interfaceMngGet() -> 9",
                               error("setIp: faild to attach new ip address!")));
    EXPECT_EQ(info().ipAddr, 0U);
}

TEST_F(Ipv4Address, AddressIsNotAttachedToAPortWithoutAName) {
    platform.fail("interfaceLinuxnameGet", 9, 1, 2);
    EXPECT_EQ(networkSetIp(newAddress, mask), -1);
    EXPECT_JOURNAL(exclusively(oldAddressGone, "interfaceMngGet() -> 0 1",
                               "interfaceLinuxnameGet(1, 9) -> 9",
                               error("setIp: faild to attach new ip address!")));
    EXPECT_EQ(info().ipAddr, 0U);
}

TEST_F(Ipv4Address, ChangeSucceedsThoughSignalAndGatewayFail) {
    platform.fail("varoSendSigToAcs", 3);
    platform.fail("varoAddRoute", 4);
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(
        exclusively(oldAddressGone, portNamed, newAttached,
                    trace("setIp: new ip address attached!"), "varoSendSigToAcs(10) -> 3",
                    exclusively(trace("setGateway: after lock"), noGatewayRead,
                                "varoAddRoute({0.0.0.0 via 192.0.2.1}) -> 4",
                                trace("setGateway: failed to add new default gateway"))));
    EXPECT_EQ(info().ipAddr, newAddress);
    EXPECT_EQ(gatewayNow(), 0U);
}

/// Another's operations in the slots of those that a change of the address calls.
struct OverriddenNetwork : Network {
    static void note(const char* operation) { fake::Platform::current().journal.write(operation); }
    int getNetworkInfo(NetworkInfo* info) override {
        note("getNetworkInfo");
        info->ipAddr = oldAddress;
        info->netmask = mask;
        return 0;
    }
    int getGateway(unsigned int* place) override {
        note("getGateway");
        *place = gateway;
        return 0;
    }
    int setGateway(unsigned int) override {
        note("setGateway");
        return 0;
    }
};

TEST_F(Ipv4Address, OtherOperationsAreCalledThroughTheVirtualInterface) {
    {
        OverriddenNetwork overridden;
        journal();
        EXPECT_EQ(overridden.Network::setIp(newAddress, mask), 0);
        EXPECT_JOURNAL(exclusively(
            "getNetworkInfo", dhcpRead,
            R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=1 option82=0 circuitId="kept"}) -> 0)",
            "varoDhcpRetreatAlrServNotResponding() -> 0", "getGateway", portNamed, oldDetached,
            portNamed, newAttached, "varoSendSigToAcs(10) -> 0", "setGateway"));
        EXPECT_EQ(overridden.Network::setGateway(gateway), 0);
        EXPECT_JOURNAL(exclusively("getGateway"));
    }
    journal();
}

// The event of the management address.

TEST_F(Ipv4Address, HandlersAreGivenTheNewAddressUnderTheLock) {
    subscribe("a", true);
    subscribe("b", true);
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, gatewayRead, "a is asked about 3325256714",
                               "b is asked about 3325256714", portNamed, oldDetached,
                               trace("setIp: old ip address detached!"), newAddressSet,
                               "a is told 3325256714", "b is told 3325256714", gatewayRestored));
}

TEST_F(Ipv4Address, RefusalOfAHandlerEndsTheAskingAndStopsNothing) {
    subscribe("a", false);
    subscribe("b", true);
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, gatewayRead, "a is asked about 3325256714",
                               portNamed, oldDetached, trace("setIp: old ip address detached!"),
                               newAddressSet, "a is told 3325256714", "b is told 3325256714",
                               gatewayRestored));
    EXPECT_EQ(info().ipAddr, newAddress);
}

TEST_F(Ipv4Address, HandlersAreNotAskedWhenNothingChanges) {
    subscribe("a", true);
    EXPECT_EQ(networkSetIp(oldAddress, mask), 0);
    EXPECT_EQ(networkSetIp(0, mask), -1);
    EXPECT_THAT(journal(), testing::Not(testing::Contains(testing::StartsWith("a is"))));
}

TEST_F(Ipv4Address, HandlersAreToldWhenTheNewAddressIsRemembered) {
    unsigned int remembered = 77;
    entity().mngAddrChanged.subscribePost(
        [&](unsigned int) { remembered = entity().currentIpAddr; });
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_EQ(remembered, newAddress);
    journal();
}

/// Runs a change that must end in the framework's error.
void expectBadCall() {
    try {
        networkSetIp(newAddress, mask);
        ADD_FAILURE() << "no error was raised";
    } catch (const boost::bad_function_call& raised) {
        EXPECT_STREQ(raised.what(), "call to empty boost::function");
    }
}

TEST_F(Ipv4Address, EmptyHandlerBeforeTheChangeRaisesTheFrameworksErrorAndReleasesTheLock) {
    entity().mngAddrChanged.subscribePre({});
    expectBadCall();
    EXPECT_JOURNAL(exclusively(infoRead(), dhcpOff, gatewayRead));
    EXPECT_EQ(info().ipAddr, oldAddress);
    EXPECT_EQ(info().dhcpEnabled, 0U);
}

TEST_F(Ipv4Address, EmptyHandlerAfterTheChangeRaisesTheFrameworksErrorWithTheGatewayGone) {
    entity().mngAddrChanged.subscribePost({});
    expectBadCall();
    EXPECT_JOURNAL(exclusively(oldAddressGone, newAddressSet));
    EXPECT_EQ(info().ipAddr, newAddress);
    EXPECT_EQ(entity().currentIpAddr, newAddress);
    EXPECT_EQ(gatewayNow(), 0U);
}

}  // namespace
