// Settings of the SNMP agent: trap managers, communities, system texts.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr unsigned int managerA = 0xc0000201;  // 192.0.2.1
constexpr unsigned int managerB = 0xc0000202;  // 192.0.2.2

class Snmp : public EntityTest {};

// Trap managers.

TEST_F(Snmp, ManagerIsAdded) {
    EXPECT_EQ(networkSnmptrapAdd("public", managerA, 1), 0);
    EXPECT_JOURNAL(sharing(R"(varoAddSubag("public", 192.0.2.1) -> 0)"));
}

TEST_F(Snmp, ManagerIsRemovedByTheSameOperation) {
    EXPECT_EQ(networkSnmptrapAdd("public", managerA, -1), 0);
    EXPECT_EQ(networkSnmptrapAdd("public", managerA, 0), 0);
    EXPECT_JOURNAL(sharing(R"(varoAddSubag("public", 192.0.2.1) -> 0)"),
                   sharing(R"(varoDeleteSubag("public", 192.0.2.1) -> 0)"));
    EXPECT_EQ(platform.snmp.managers.managers[0].ipAddress, 0U);
}

TEST_F(Snmp, WhatTheLibraryRefusesOfManagersFailsSilently) {
    EXPECT_EQ(networkSnmptrapAdd("public", managerA, 0), -1);
    EXPECT_JOURNAL(sharing(R"(varoDeleteSubag("public", 192.0.2.1) -> refused)"));
    EXPECT_EQ(networkSnmptrapAdd("public", 0, 1), -1);
    EXPECT_JOURNAL(sharing(R"(varoAddSubag("public", 0.0.0.0) -> refused)"));
    EXPECT_EQ(networkSnmptrapAdd(nullptr, managerA, 1), -1);
    EXPECT_JOURNAL(sharing("varoAddSubag(null, 192.0.2.1) -> refused"));
    EXPECT_EQ(networkSnmptrapAdd("", managerA, 1), -1);
    EXPECT_JOURNAL(sharing(R"(varoAddSubag("", 192.0.2.1) -> refused)"));
}

TEST_F(Snmp, ManagersCommunityGoesToTheLibraryWhole) {
    for (const auto& [length, result] : {std::pair{31, 0}, {32, -1}, {100, -1}, {5000, -1}}) {
        const std::string community(static_cast<std::size_t>(length), 'c');
        EXPECT_EQ(networkSnmptrapAdd(community.c_str(), managerA, 1), result) << length;
        std::string call = "varoAddSubag(\"";
        call += community;
        call += result == 0 ? R"(", 192.0.2.1) -> 0)" : R"(", 192.0.2.1) -> refused)";
        EXPECT_JOURNAL(sharing(call));
    }
}

TEST_F(Snmp, EleventhManagerIsRefusedByTheLibrary) {
    for (unsigned int number = 0; number < 10; ++number) {
        EXPECT_EQ(networkSnmptrapAdd("public", managerA + number, 1), 0);
    }
    journal();
    EXPECT_EQ(networkSnmptrapAdd("public", managerA + 10, 1), -1);
    EXPECT_JOURNAL(sharing(R"(varoAddSubag("public", 192.0.2.11) -> refused)"));
    rpcSnmpTrapConfig config{};
    EXPECT_EQ(networkGetSnmptrapConfig(&config), 0);
    EXPECT_EQ(config.managers[9].ipAddress, managerA + 9);
    journal();
}

TEST_F(Snmp, ManagerMovesWithItsCommunity) {
    EXPECT_EQ(networkSnmptrapAdd("public", managerA, 1), 0);
    journal();
    EXPECT_EQ(networkSnmptrapChange("public", managerA, managerB), 0);
    EXPECT_JOURNAL(sharing(R"(varoChangeSubag("public", 192.0.2.1, "public", 192.0.2.2) -> 0)"));
    EXPECT_EQ(networkSnmptrapChange("other", managerB, managerA), -1);
    EXPECT_JOURNAL(
        sharing(R"(varoChangeSubag("other", 192.0.2.2, "other", 192.0.2.1) -> refused)"));
}

TEST_F(Snmp, TrapPortGoesToTheLibraryAsItIs) {
    EXPECT_EQ(networkSnmptrapPort(65535), 0);
    EXPECT_JOURNAL(sharing("varoChangePortSubag(65535) -> 0"));
    EXPECT_EQ(platform.snmp.managers.port, 65535);
    for (const unsigned int port : {0U, 65536U, 0xffffffffU}) {
        EXPECT_EQ(networkSnmptrapPort(port), -1);
        EXPECT_JOURNAL(sharing("varoChangePortSubag(" + std::to_string(port) + ") -> refused"));
    }
}

TEST_F(Snmp, CodesOfTheLibraryBecomeMinusOne) {
    for (const int code : {1, 5, -7}) {
        for (const char* const function :
             {"varoAddSubag", "varoDeleteSubag", "varoChangeSubag", "varoChangePortSubag",
              "varoAddSnmpCommunity", "varoDeleteSnmpCommunity", "varoChangeSnmpCommunity"}) {
            platform.fail(function, code);
        }
        platform.snmp.managers.managers[0] = {managerA, "public"};
        platform.snmp.communities.communities[0] = {"public", "ro"};
        EXPECT_EQ(networkSnmptrapAdd("new", managerB, 1), -1);
        EXPECT_EQ(networkSnmptrapAdd("public", managerA, 0), -1);
        EXPECT_EQ(networkSnmptrapChange("public", managerA, managerB), -1);
        EXPECT_EQ(networkSnmptrapPort(1162), -1);
        EXPECT_EQ(networkSnmpCommunityAdd("new", rpcSnmpCommunityReadOnly, 1), -1);
        EXPECT_EQ(networkSnmpCommunityAdd("public", rpcSnmpCommunityReadOnly, 0), -1);
        EXPECT_EQ(networkSnmpCommunityChange("public", rpcSnmpCommunityReadWrite), -1);
        const std::string result = " -> " + std::to_string(code);
        EXPECT_JOURNAL(
            sharing(R"(varoAddSubag("new", 192.0.2.2))" + result),
            sharing(R"(varoDeleteSubag("public", 192.0.2.1))" + result),
            sharing(R"(varoChangeSubag("public", 192.0.2.1, "public", 192.0.2.2))" + result),
            sharing("varoChangePortSubag(1162)" + result),
            sharing(R"(varoAddSnmpCommunity("new", 1))" + result),
            sharing(R"(varoDeleteSnmpCommunity("public", 1))" + result),
            sharing(R"(varoChangeSnmpCommunity("public", 2))" + result));
    }
}

TEST_F(Snmp, ManagersAreReadWithEmptyEntriesAsTheyAre) {
    varoLib_s_subag& agent = platform.snmp.managers;
    agent.port = 1162;
    agent.managers[0] = {managerA, "public"};
    agent.managers[1] = {0, "left behind"};
    agent.managers[9] = {0xffffffff, ""};
    put(agent.managers[4].community, std::string(31, 'c'));
    auto config = untouched<rpcSnmpTrapConfig>();
    EXPECT_EQ(networkGetSnmptrapConfig(&config), 0);
    rpcSnmpTrapConfig expected{};
    expected.port = 1162;
    for (std::size_t index = 0; index < 10; ++index) {
        expected.managers[index].ipAddress = agent.managers[index].ipAddress;
        put(expected.managers[index].community, agent.managers[index].community);
    }
    EXPECT_TRUE(areSame(config, expected));
    EXPECT_JOURNAL(
        sharing(R"(varoGetSubag() -> 0 {port=1162 {192.0.2.1 "public"} {0.0.0.0 "left behind"})"
                R"( {} {} {0.0.0.0 "ccccccccccccccccccccccccccccccc"} {} {} {} {})"
                R"( {255.255.255.255 ""}})"));
}

TEST_F(Snmp, ManagersCommunityWithoutItsEndIsReadWithinItsField) {
    std::memset(platform.snmp.managers.managers[3].community, 'x', 32);
    platform.snmp.managers.managers[4].ipAddress = 0x61616161;
    auto config = untouched<rpcSnmpTrapConfig>();
    EXPECT_EQ(networkGetSnmptrapConfig(&config), 0);
    EXPECT_EQ(std::string(config.managers[3].community), std::string(31, 'x'));
    journal();
}

TEST_F(Snmp, ManagersThatCannotBeReadLeaveTheRecordAlone) {
    platform.fail("varoGetSubag", 5);
    auto config = untouched<rpcSnmpTrapConfig>();
    EXPECT_EQ(networkGetSnmptrapConfig(&config), -1);
    EXPECT_TRUE(isUntouched(config));
    EXPECT_JOURNAL(sharing("varoGetSubag() -> 5"));
}

// Communities.

TEST_F(Snmp, CommunityIsAddedChangedAndRemoved) {
    EXPECT_EQ(networkSnmpCommunityAdd("public", rpcSnmpCommunityReadOnly, 1), 0);
    EXPECT_EQ(networkSnmpCommunityChange("public", rpcSnmpCommunityReadWrite), 0);
    EXPECT_STREQ(platform.snmp.communities.communities[0].access, "rw");
    EXPECT_EQ(networkSnmpCommunityAdd("public", rpcSnmpCommunityReadWrite, 0), 0);
    EXPECT_JOURNAL(sharing(R"(varoAddSnmpCommunity("public", 1) -> 0)"),
                   sharing(R"(varoChangeSnmpCommunity("public", 2) -> 0)"),
                   sharing(R"(varoDeleteSnmpCommunity("public", 2) -> 0)"));
    EXPECT_STREQ(platform.snmp.communities.communities[0].name, "");
}

TEST_F(Snmp, CommunityIsAddedByAnyNumberButZero) {
    for (const int add : {1, 2, -1, 256}) {
        platform.snmp.communities = {};
        EXPECT_EQ(networkSnmpCommunityAdd("public", rpcSnmpCommunityReadOnly, add), 0) << add;
        EXPECT_JOURNAL(sharing(R"(varoAddSnmpCommunity("public", 1) -> 0)"));
    }
}

TEST_F(Snmp, CommunitysAccessGoesToTheLibraryWhateverItIs) {
    platform.snmp.communities.communities[0] = {"public", "ro"};
    for (int access = -2; access <= 4; ++access) {
        const int result = access == 1 || access == 2 ? 0 : -1;
        const std::string end =
            ", " + std::to_string(access) + (result == 0 ? ") -> 0" : ") -> refused");
        const auto given = static_cast<rpcSnmpCommunityAccess>(access);
        const std::string name = "community" + std::to_string(access);
        EXPECT_EQ(networkSnmpCommunityAdd(name.c_str(), given, 1), result);
        EXPECT_EQ(networkSnmpCommunityChange("public", given), result);
        std::string call = "varoAddSnmpCommunity(\"";
        call += name;
        call += '"';
        call += end;
        EXPECT_JOURNAL(sharing(call), sharing(R"(varoChangeSnmpCommunity("public")" + end));
    }
    // Of a community that goes, the library does not mind the access.
    EXPECT_EQ(networkSnmpCommunityAdd("public", rpcSnmpCommunityNone, 0), 0);
    EXPECT_JOURNAL(sharing(R"(varoDeleteSnmpCommunity("public", -1) -> 0)"));
}

TEST_F(Snmp, CommunitysNameGoesToTheLibraryWhole) {
    for (const auto& [length, result] : {std::pair{29, 0}, {30, -1}, {31, -1}, {100, -1}}) {
        const std::string name(static_cast<std::size_t>(length), 'n');
        EXPECT_EQ(networkSnmpCommunityAdd(name.c_str(), rpcSnmpCommunityReadOnly, 1), result);
        std::string call = "varoAddSnmpCommunity(\"";
        call += name;
        call += result == 0 ? R"(", 1) -> 0)" : R"(", 1) -> refused)";
        EXPECT_JOURNAL(sharing(call));
    }
}

TEST_F(Snmp, SeventhCommunityIsRefusedByTheLibrary) {
    for (int number = 1; number <= 6; ++number) {
        EXPECT_EQ(
            networkSnmpCommunityAdd(std::to_string(number).c_str(), rpcSnmpCommunityReadOnly, 1),
            0);
    }
    journal();
    EXPECT_EQ(networkSnmpCommunityAdd("7", rpcSnmpCommunityReadOnly, 1), -1);
    EXPECT_JOURNAL(sharing(R"(varoAddSnmpCommunity("7", 1) -> refused)"));
    rpcSnmpCommunityConfig config{};
    EXPECT_EQ(networkSnmpCommunityGet(&config), 0);
    EXPECT_STREQ(config.communities[5].name, "6");
    journal();
}

TEST_F(Snmp, AccessIsToldByItsText) {
    auto& communities = platform.snmp.communities.communities;
    communities[0] = {"a", "ro"};
    communities[1] = {"b", "rw"};
    communities[2] = {"c", ""};
    communities[3] = {"d", "RO"};
    communities[4] = {"e", "r"};
    communities[5] = {"f", "rox"};
    auto config = untouched<rpcSnmpCommunityConfig>();
    EXPECT_EQ(networkSnmpCommunityGet(&config), 0);
    rpcSnmpCommunityConfig expected{};
    const int accesses[] = {1, 2, -1, 2, 2, 2};
    for (std::size_t index = 0; index < 6; ++index) {
        put(expected.communities[index].name, communities[index].name);
        expected.communities[index].access = static_cast<rpcSnmpCommunityAccess>(accesses[index]);
    }
    EXPECT_TRUE(areSame(config, expected));
    EXPECT_JOURNAL(
        sharing(R"(varoGetSnmpCommunity() -> 0 {communities {"a" "ro"} {"b" "rw"} {"c" ""})"
                R"( {"d" "RO"} {"e" "r"} {"f" "rox"}})"));
}

TEST_F(Snmp, EmptyCommunityEntriesAreReadAsNone) {
    rpcSnmpCommunityConfig config{};
    EXPECT_EQ(networkSnmpCommunityGet(&config), 0);
    for (const rpcSnmpCommunity& community : config.communities) {
        EXPECT_STREQ(community.name, "");
        EXPECT_EQ(community.access, rpcSnmpCommunityNone);
    }
    EXPECT_JOURNAL(sharing("varoGetSnmpCommunity() -> 0 {communities}"));
}

TEST_F(Snmp, CommunityWithoutItsEndIsReadWithinItsField) {
    auto& community = platform.snmp.communities.communities[5];
    std::memset(community.name, 'n', sizeof community.name);
    std::memset(community.access, 'r', sizeof community.access);
    rpcSnmpCommunityConfig config{};
    EXPECT_EQ(networkSnmpCommunityGet(&config), 0);
    EXPECT_EQ(std::string(config.communities[5].name), std::string(29, 'n'));
    EXPECT_EQ(config.communities[5].access, rpcSnmpCommunityReadWrite);
    journal();
}

TEST_F(Snmp, CommunitiesThatCannotBeReadLeaveTheRecordAlone) {
    platform.fail("varoGetSnmpCommunity", 5);
    auto config = untouched<rpcSnmpCommunityConfig>();
    EXPECT_EQ(networkSnmpCommunityGet(&config), -1);
    EXPECT_TRUE(isUntouched(config));
    EXPECT_JOURNAL(sharing("varoGetSnmpCommunity() -> 5"));
}

// System texts.

TEST_F(Snmp, SystemTextsAreToldToTheRelayAgentsToo) {
    EXPECT_EQ(networkSnmpSystemChange("ops@example.net", rpcSnmpSystemContact), 0);
    EXPECT_EQ(networkSnmpSystemChange("rack 7", rpcSnmpSystemLocation), 0);
    EXPECT_EQ(networkSnmpSystemChange("", rpcSnmpSystemName), 0);
    EXPECT_JOURNAL(sharing(R"(varoChangeSnmpSystem("ops@example.net", 1) -> 0)",
                           R"(dhcpra::setSystemContact("ops@example.net"))",
                           R"(pppoeia::setSystemContact("ops@example.net"))"),
                   sharing(R"(varoChangeSnmpSystem("rack 7", 2) -> 0)",
                           R"(dhcpra::setSystemLocation("rack 7"))",
                           R"(pppoeia::setSystemLocation("rack 7"))"),
                   sharing(R"(varoChangeSnmpSystem("", 3) -> 0)", R"(dhcpra::setSystemName(""))",
                           R"(pppoeia::setSystemName(""))"));
}

TEST_F(Snmp, SystemTextThatTheLibraryRefusesIsToldToNobody) {
    platform.fail("varoChangeSnmpSystem", 5);
    for (const int selector : {1, 2, 3}) {
        EXPECT_EQ(networkSnmpSystemChange("text", static_cast<rpcSnmpSystemSelector>(selector)),
                  -1);
        EXPECT_JOURNAL(
            sharing(R"(varoChangeSnmpSystem("text", )" + std::to_string(selector) + ") -> 5"));
    }
}

TEST_F(Snmp, UnknownSelectorsReachTheLibraryAndNobodyElse) {
    for (const bool isAccepted : {true, false}) {
        platform.snmp.takesUnknownSelectors = isAccepted;
        for (const int selector : {-2, -1, 0, 4, std::numeric_limits<int>::max()}) {
            EXPECT_EQ(networkSnmpSystemChange("text", static_cast<rpcSnmpSystemSelector>(selector)),
                      isAccepted ? 0 : -1);
            EXPECT_JOURNAL(sharing(R"(varoChangeSnmpSystem("text", )" + std::to_string(selector) +
                                   (isAccepted ? ") -> 0" : ") -> refused")));
        }
    }
}

TEST_F(Snmp, SystemTextGoesToTheLibraryWhole) {
    for (const auto& [length, result] : {std::pair{31, 0}, {32, -1}, {100, -1}}) {
        const std::string text(static_cast<std::size_t>(length), 't');
        EXPECT_EQ(networkSnmpSystemChange(text.c_str(), rpcSnmpSystemName), result);
        std::string shown = "\"";
        shown += text;
        shown += '"';
        EXPECT_JOURNAL(result == 0 ? sharing("varoChangeSnmpSystem(" + shown + ", 3) -> 0",
                                             "dhcpra::setSystemName(" + shown + ")",
                                             "pppoeia::setSystemName(" + shown + ")")
                                   : sharing("varoChangeSnmpSystem(" + shown + ", 3) -> refused"));
    }
}

TEST_F(Snmp, SystemTextsAreRead) {
    platform.snmp.system = {"contact", "location", "name"};
    auto config = untouched<rpcSnmpSystemConfig>();
    EXPECT_EQ(networkSnmpSystemGet(&config), 0);
    EXPECT_TRUE(areSame(config, rpcSnmpSystemConfig{"contact", "location", "name"}));
    EXPECT_JOURNAL(sharing(R"(varoGetSnmpSystem() -> 0 {"contact" "location" "name"})"));
}

TEST_F(Snmp, SystemTextsWithoutTheirEndAreReadWithinTheirFields) {
    std::memset(&platform.snmp.system, 's', sizeof platform.snmp.system);
    rpcSnmpSystemConfig config{};
    EXPECT_EQ(networkSnmpSystemGet(&config), 0);
    for (const char* const text : {config.contact, config.location, config.name}) {
        EXPECT_EQ(std::string(text), std::string(31, 's'));
    }
    journal();
}

TEST_F(Snmp, SystemTextsThatCannotBeReadLeaveTheRecordAlone) {
    platform.fail("varoGetSnmpSystem", 5);
    auto config = untouched<rpcSnmpSystemConfig>();
    EXPECT_EQ(networkSnmpSystemGet(&config), -1);
    EXPECT_TRUE(isUntouched(config));
    EXPECT_JOURNAL(sharing("varoGetSnmpSystem() -> 5"));
}

}  // namespace
