#include "board/snmp/snmpdConfiguration.h"
#include "support/matchers.h"
#include "support/setText.h"

namespace {

TEST(SnmpdConfiguration, ServesTheInterface) {
    const auto both = snmp::configurationOf({}, "mng0", true);
    EXPECT_THAT(both.text, HasSubstr("agentaddress udp:0.0.0.0@mng0:161,udp6:[::]@mng0:161\n"));
    const auto ipv4 = snmp::configurationOf({}, "", false);
    EXPECT_THAT(ipv4.text, HasSubstr("agentaddress udp:0.0.0.0:161\n"));
}

TEST(SnmpdConfiguration, HasSystemTextsAsTheyAre) {
    snmp::Values values;
    setText(values.system.contact, R"(#1 "NOC" \ 'x')");
    setText(values.system.location, "view all included .1");
    setText(values.system.name, "n");
    const auto configuration = snmp::configurationOf(values, "mng0", false);
    EXPECT_THAT(configuration.text, HasSubstr("\nsysContact #1 \"NOC\" \\ 'x'\n"));
    EXPECT_THAT(configuration.text, HasSubstr("\nsysLocation view all included .1\n"));
    EXPECT_THAT(configuration.text, HasSubstr("\nsysName n\n"));
    EXPECT_THAT(configuration.text, Not(HasSubstr("override")));
}

TEST(SnmpdConfiguration, ReplacesTheObjectForTextsThatADirectiveWouldChange) {
    snmp::Values values;
    setText(values.system.contact, R"( "a\ )");
    setText(values.system.location, "");
    setText(values.system.name, "n");
    const auto configuration = snmp::configurationOf(values, "mng0", false);
    EXPECT_THAT(configuration.fixedPart,
                HasSubstr("override .1.3.6.1.2.1.1.4.0 octet_str \" \\\"a\\\\ \"\n"
                          "override .1.3.6.1.2.1.1.6.0 octet_str \"\"\n"));
    EXPECT_THAT(configuration.text, HasSubstr(configuration.fixedPart));
    EXPECT_THAT(configuration.text, Not(HasSubstr("sysContact")));
}

TEST(SnmpdConfiguration, IsFixedInWhatARunningAgentDoesNotTake) {
    snmp::Values values;
    setText(values.system.contact, "a");
    setText(values.system.location, "b");
    setText(values.system.name, "c");
    const std::string before = snmp::configurationOf(values, "mng0", false).fixedPart;
    setText(values.system.contact, "other");
    setText(values.communities.communities[0].name, "public");
    setText(values.communities.communities[0].access, "ro");
    values.trapManagers.port = 1162;
    values.trapManagers.managers[3].ipAddress = 0xC0000201;
    EXPECT_EQ(snmp::configurationOf(values, "mng0", false).fixedPart, before);
    setText(values.system.contact, "");
    EXPECT_NE(snmp::configurationOf(values, "mng0", false).fixedPart, before);
    EXPECT_NE(snmp::configurationOf(values, "mng1", false).fixedPart, before);
}

TEST(SnmpdConfiguration, GivesCommunitiesTheirRights) {
    snmp::Values values;
    auto& communities = values.communities.communities;
    setText(communities[0].name, R"("q#\)");
    setText(communities[0].access, "ro");
    setText(communities[5].name, "private");
    setText(communities[5].access, "rw");
    const std::string text = snmp::configurationOf(values, "mng0", true).text;
    EXPECT_THAT(text, HasSubstr("com2sec reader default \"\\\"q#\\\\\"\n"
                                "com2sec6 reader default \"\\\"q#\\\\\"\n"
                                "com2sec writer default \"private\"\n"
                                "com2sec6 writer default \"private\"\n"));
    EXPECT_THAT(snmp::configurationOf({}, "mng0", true).text, Not(HasSubstr("com2sec")));
}

TEST(SnmpdConfiguration, SendsTrapsToEveryManager) {
    snmp::Values values;
    values.trapManagers.port = 1162;
    values.trapManagers.managers[0].ipAddress = 0xC0000201;
    setText(values.trapManagers.managers[0].community, R"("t#\)");
    values.trapManagers.managers[9].ipAddress = 0xC6336407;
    setText(values.trapManagers.managers[9].community, "x");
    const std::string text = snmp::configurationOf(values, "mng0", false).text;
    EXPECT_THAT(text, HasSubstr("trap2sink udp:192.0.2.1:1162 \"t#\\\n"
                                "trap2sink udp:198.51.100.7:1162 x\n"));
}

TEST(SnmpdConfiguration, IsNotMadeOfALineEnd) {
    snmp::Values contact;
    setText(contact.system.contact, "a\nrwcommunity all");
    EXPECT_THROW(snmp::configurationOf(contact, "mng0", false), std::runtime_error);
    snmp::Values community;
    setText(community.communities.communities[0].name, "a\nb");
    EXPECT_THROW(snmp::configurationOf(community, "mng0", false), std::runtime_error);
    snmp::Values manager;
    manager.trapManagers.managers[0].ipAddress = 1;
    setText(manager.trapManagers.managers[0].community, "a\rb");
    EXPECT_THROW(snmp::configurationOf(manager, "mng0", false), std::runtime_error);
}

TEST(SnmpdConfiguration, TakesTextsThatFillTheirFields) {
    snmp::Values values;
    setText(values.system.contact, std::string(100, 'c'));
    setText(values.communities.communities[0].name, std::string(100, 'n'));
    setText(values.communities.communities[0].access, "rwrw");
    const std::string text = snmp::configurationOf(values, "mng0", false).text;
    EXPECT_THAT(text, HasSubstr("sysContact " + std::string(32, 'c') + "\n"));
    EXPECT_THAT(text, HasSubstr("writer default \"" + std::string(30, 'n') + "\"\n"));
}

}  // namespace
