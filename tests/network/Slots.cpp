// The entity's binary layout: slots of the virtual table and order of the members. Members are
// looked at past their access (-fno-access-control, for this file only).

#include "network/Network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

/// A pointer to a member function as the Itanium C++ ABI lays it out: of a virtual one, the offset
/// of its slot. Where code addresses may be odd (Arm), the mark of a virtual one is in the
/// adjustment.
struct MemberPointer {
    std::intptr_t pointer;
    std::ptrdiff_t adjustment;
};

constexpr std::size_t notVirtual = ~std::size_t{0};

template <class Function>
std::size_t slotOf(Function function) {
    MemberPointer layout;
    static_assert(sizeof layout == sizeof function);
    std::memcpy(&layout, &function, sizeof layout);
#if defined(__aarch64__)
    const bool isVirtual = (layout.adjustment & 1) != 0;
    const std::intptr_t offset = layout.pointer;
#else
    const bool isVirtual = (layout.pointer & 1) != 0;
    const std::intptr_t offset = layout.pointer - 1;
#endif
    return isVirtual ? static_cast<std::size_t>(offset) / sizeof(void*) : notVirtual;
}

template <class... Functions>
std::vector<std::size_t> slotsOf(Functions... functions) {
    return {slotOf(functions)...};
}

std::vector<std::size_t> range(std::size_t first, std::size_t last) {
    std::vector<std::size_t> numbers;
    for (; first <= last; ++first) {
        numbers.push_back(first);
    }
    return numbers;
}

using N = Network;

TEST(Slots, TheFrameworksOperationsStandInFront) {
    EXPECT_EQ(slotsOf(&Storage::StorageItem::applyConfiguration,
                      &Storage::StorageItem::saveConfiguration, &BLEntity::start,
                      &BLEntity::applyDefaultSettings, &BLEntity::stop, &BLEntity::getDependencies),
              range(0, 5));
    EXPECT_EQ(slotsOf(&N::applyConfiguration, &N::saveConfiguration, &N::start,
                      &N::applyDefaultSettings, &N::stop, &N::getDependencies),
              range(0, 5));
}

// Slots 6 and 7, which no member pointer can name, are the destructor's: nothing else is left for
// it.
TEST(Slots, AddressingFollowsTheDestructorPair) {
    EXPECT_EQ(slotsOf(&N::setIp, &N::setVlan, &N::setDefVlanMode, &N::getNetworkInfo,
                      &N::getNetworkInfoIpv6, &N::setGateway, &N::getGateway, &N::setProtocol,
                      &N::setVendor, &N::setOption82, &N::setCircuitId),
              range(8, 18));
}

TEST(Slots, RemoteAccessAndInventory) {
    EXPECT_EQ(slotsOf(&N::addRARule, &N::removeRARule, &N::iterateRules, &N::getSWData,
                      &N::getVerisonLineApl, &N::getVerisonLinePlat, &N::getPackageData),
              range(19, 25));
}

TEST(Slots, FtpArpAndUnsupportedWebOperations) {
    EXPECT_EQ(
        slotsOf(&N::enableFtp, &N::getFtpState, &N::getNextArp, &N::setHttpSPort, &N::setHttpSProto,
                &N::enableHttpSServer, &N::enableHttpServer, &N::getHttpInfo),
        range(26, 33));
}

TEST(Slots, NamesTimeAndNameServers) {
    EXPECT_EQ(slotsOf(&N::setDomainname, &N::getDomainname, &N::getDomainnameWS, &N::setHostname,
                      &N::getHostname, &N::setTimeInfo, &N::getTimeInfo, &N::setTimezoneOffset,
                      &N::setTimezoneName, &N::getTimezoneInfo, &N::setDnsServers,
                      &N::deleteDnsServers, &N::getDnsServers, &N::getDnsServersWS),
              range(34, 47));
}

TEST(Slots, TerminalServicesAndSntp) {
    EXPECT_EQ(slotsOf(&N::getTelnetConfig, &N::telnetEnable, &N::getSshConfig, &N::sshEnable,
                      &N::updateSntpConfig, &N::updateSntpConfigHost, &N::getSntpConfig,
                      &N::getSntpConfigWS, &N::getSntpConfigWSHost, &N::getSntpInfo,
                      &N::getSntpInfoWS, &N::getSntpInfoWSHost),
              range(48, 59));
}

TEST(Slots, SnmpSessionLimitAndSntpTimezone) {
    EXPECT_EQ(slotsOf(&N::snmptrapAdd, &N::getSnmptrapConfig, &N::snmptrapChange, &N::snmptrapPort,
                      &N::snmpCommunityAdd, &N::snmpCommunityChange, &N::snmpCommunityGet,
                      &N::snmpSystemChange, &N::snmpSystemGet, &N::ptyGetMaxSess, &N::ptySetMaxSess,
                      &N::setSntpTimezoneDstStart, &N::setSntpTimezoneDstEnd,
                      &N::setSntpTimezoneDstOffset, &N::setSntpTimezone, &N::getSntpTimezoneInfo),
              range(60, 75));
}

TEST(Slots, RuleCountAndIpv6StandLast) {
    EXPECT_EQ(slotsOf(&N::getAclIdx, &N::getIpv6Addr, &N::setIpv6Addr, &N::setIpv6Gw,
                      &N::removeIpv6Addr, &N::removeIpv6Gw, &N::setIPv6Domainname,
                      &N::getIPv6Domainname, &N::deleteIPv6DnsServers, &N::getIPv6DnsServers,
                      &N::setIPv6DnsServers, &N::getIPv6Proto, &N::setIPv6Proto),
              range(76, 88));
}

TEST(Slots, OtherOperationsAreNotVirtual) {
    EXPECT_THAT(slotsOf(&N::networkHttpServerSet, &N::networkHttpGet, &N::setOntMng, &N::getOntMng,
                        &N::externalMessage, &N::networkBleInit, &N::Poll),
                testing::Each(notVirtual));
}

TEST(Members, StandInTheirOrderBehindTheBases) {
    Network& network = singleton<Network>::instance();
    const std::vector<const void*> places = {static_cast<BLEntity*>(&network),
                                             &network.mngAddrChanged,
                                             &network.rpcProxy,
                                             &network.severity,
                                             &network.acl,
                                             &network.mngVlanId,
                                             &network.boardPos,
                                             &network.aclName,
                                             &network.ruleIds,
                                             &network.defaultRuleId,
                                             &network.ruleIdx,
                                             &network.aclInitialized,
                                             &network.aclAssigned,
                                             &network.webServerOn,
                                             &network.lockErrorMsg,
                                             &network.pollThread,
                                             &network.pollStop,
                                             &network.currentIpAddr,
                                             &network.webEvent};
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end(), std::less<const void*>{}));
    EXPECT_EQ(places.front(), &network);
}

TEST(Members, SharedFlagsAreAsLargeAsPlainOnes) {
    EXPECT_EQ(sizeof(Network::severity), sizeof(std::int16_t));
    EXPECT_EQ(sizeof(Network::pollStop), sizeof(bool));
    EXPECT_EQ(sizeof(Network::currentIpAddr), sizeof(std::uint32_t));
}

}  // namespace
