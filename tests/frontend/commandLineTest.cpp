#include "mngctl/application.h"
#include "mngctl/wire/values.h"
#include "mngctlRun.h"

#include <sstream>

namespace mngctl::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, NamesTheCommandsThatExist) {
    auto nouns = documentedNouns();
    ASSERT_GT(nouns.size(), 20U);
    nouns.resize(nouns.size() - 2);
    EXPECT_EQ(run({"reboot"}), wrongUsage("there is no command 'mngctl reboot'; expected " +
                                          joinNames(nouns) + "\nTry 'mngctl --help'."));
    EXPECT_EQ(run({"dns", "shw"}),
              wrongUsage("there is no command 'mngctl dns shw'; expected show, set or clear\n"
                         "Try 'mngctl dns --help'."));
    EXPECT_EQ(run({"dns"}),
              wrongUsage("'mngctl dns' lacks what to do; expected show, set or clear\n"
                         "Try 'mngctl dns --help'."));
}

TEST(CommandLine, RefusesWhatACommandDoesNotTake) {
    EXPECT_EQ(run({"dns", "show", "now"}), wrongUsage("'mngctl dns show' does not expect 'now'\n"
                                                      "Try 'mngctl dns show --help'."));
    EXPECT_EQ(run({"dns", "show", "--colour=red"}),
              wrongUsage("'mngctl dns show' has no option '--colour'\n"
                         "Try 'mngctl dns show --help'."));
    EXPECT_EQ(run({"--colour"}), wrongUsage("'mngctl' has no option '--colour'\n"
                                            "Try 'mngctl --help'."));
    EXPECT_EQ(run({"domain", "set"}), wrongUsage("NAME is required\n"
                                                 "Try 'mngctl domain set --help'."));
    EXPECT_EQ(run({"domain", "set", "a", "b"}),
              wrongUsage("'mngctl domain set' does not expect 'b'\n"
                         "Try 'mngctl domain set --help'."));
    EXPECT_EQ(run({"dns", "show", "domain", "show"}),
              wrongUsage("'mngctl dns show' does not expect 'domain'\n"
                         "Try 'mngctl dns show --help'."));
}

TEST(CommandLine, ChecksTheCommonOptions) {
    for (const char* const wrong : {"0", "-1", "abc", "nan", "inf", "3601", "1s", ""}) {
        EXPECT_EQ(run({"dns", "show", "--timeout", wrong}),
                  wrongUsage(std::string("--timeout: expected seconds from 0.01 to 3600, not '") +
                             wrong + "'\nTry 'mngctl dns show --help'."));
    }
    for (const char* const wrong : {"0", "65536", "rpc"}) {
        const Outcome outcome = run({"dns", "show", "--port", wrong});
        EXPECT_EQ(outcome, wrongUsage(std::string("--port: Value ") + wrong +
                                      " not in range 1 to 65535\n"
                                      "Try 'mngctl dns show --help'."));
    }
    EXPECT_EQ(run({"dns", "show", "--tcp", "--udp"}),
              wrongUsage("--tcp excludes --udp\nTry 'mngctl dns show --help'."));
    EXPECT_EQ(run({"--host", "no.such.host.invalid", "dns", "show"}).exit, Exit::Usage);
    EXPECT_THAT(run({"--host", "::1", "dns", "show"}).err,
                StartsWith("mngctl: --host ::1: no IPv4 address is known for this name ("));
}

TEST(CommandLine, HelpsEverywhereWithExamples) {
    std::istringstream commands(
        "|ip|ip show|ip set|gateway|gateway show|gateway set|gateway clear|dhcp|dhcp show|"
        "dhcp on|dhcp off|dhcp vendor-class|dhcp option82|dhcp circuit-id|ipv6|ipv6 show|"
        "ipv6 set|ipv6 clear|ipv6 gateway set|ipv6 dhcp on|access|access list|access permit|"
        "access deny|access remove|access clear|access test|dns|dns show|dns set|dns clear|"
        "domain|domain show|domain set|domain clear|vlan|vlan show|vlan set|vlan default|"
        "vlan default show|vlan default set|web|web show|web on|web off|events|snmp|snmp show|"
        "snmp contact|snmp location|snmp name|snmp community|snmp community list|"
        "snmp community add|snmp community access|snmp community remove|snmp trap|"
        "snmp trap list|snmp trap add|snmp trap remove|snmp trap move|snmp trap port|"
        "snmp trap test|ntp|ntp show|ntp server|ntp server add|ntp server remove|ntp on|"
        "ntp off|board|board status|board message|board shelf|board feature|board profile|"
        "board clear-config|board stop|factory-defaults|rpc|help");
    for (std::string command; std::getline(commands, command, '|');) {
        auto line = words(command);
        line.push_back("--help");
        const Outcome outcome = run(line);
        EXPECT_EQ(outcome.exit, Exit::Done) << command;
        EXPECT_EQ(outcome.err, "") << command;
        EXPECT_THAT(
            outcome.out,
            HasSubstr("Usage: mngctl" + std::string(command.empty() ? "" : " ") + command + " ["));
        EXPECT_THAT(outcome.out, HasSubstr("Examples:\n  mngctl "));
        EXPECT_THAT(outcome.out, HasSubstr("--timeout SECONDS"));

        auto byName = words(command);
        byName.insert(byName.begin(), "help");
        EXPECT_EQ(run(byName), outcome) << command;
    }
}

TEST(CommandLine, HelpOfNothingNamesWhatThereIs) {
    EXPECT_EQ(run({"help", "dns", "shw"}),
              wrongUsage("there is no command 'mngctl dns shw'; expected show, set or clear"));
    EXPECT_EQ(run({"help", "dns", "show", "me"}),
              wrongUsage("there is no command 'mngctl dns show me'"));
}

TEST(CommandLine, TellsItsVersion) {
    EXPECT_EQ(run({"--version"}).exit, Exit::Done);
    EXPECT_THAT(run({"--version"}).out, StartsWith("mngctl "));
}

TEST(CommandLine, CommonOptionsStandAnywhere) {
    const CannedBoard board;
    const std::string port = board.port();
    const Outcome expected = board.run("dns show --json");
    EXPECT_EQ(expected.exit, Exit::Done);
    EXPECT_EQ(run({"--json", "--port", port, "dns", "show"}), expected);
    EXPECT_EQ(run({"dns", "--json", "show", "--port", port}), expected);
    EXPECT_EQ(run({"dns", "show", "--port=" + port, "--json"}), expected);
}

TEST(CommandLine, ReportsOutputThatCannotBeWritten) {
    std::istringstream in;
    std::ostream closed(nullptr);
    std::ostringstream err;
    EXPECT_EQ(runApplication({"--version"}, {in, closed, err, false}), Exit::Refused);
    EXPECT_EQ(err.str(), "mngctl: the output could not be written\n");
}

}  // namespace
}  // namespace mngctl::test
