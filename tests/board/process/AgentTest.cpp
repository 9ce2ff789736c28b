#include "board/snmp/Agent.h"
#include "support/LogLines.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/setText.h"
#include "tests/board/process/scripts.h"

namespace {

using namespace daemontest;

/// An agent that says what snmpd says, and notes the configurations that it reads.
class AgentTest : public testing::Test {
protected:
    AgentTest() {
        writeScript(program,
                    "for last; do :; done\n"
                    "take() { cat \"$last\" >>" +
                        taken.string() + "; echo ==== >>" + taken.string() +
                        "; }\n"
                        "trap 'take; echo NET-SNMP version 5 restarted' HUP\n"
                        "trap 'exit 0' TERM\n"
                        "take\n"
                        "echo start >>" +
                        starts.string() +
                        "\necho NET-SNMP version 5\n"
                        "while :; do sleep 0.02; done\n");
        setText(system.contact, "a");
        setText(system.location, "b");
        setText(system.name, "c");
    }

    TemporaryDirectory directory;
    const std::filesystem::path program = directory / "agent";
    const std::filesystem::path taken = directory / "taken";
    const std::filesystem::path starts = directory / "starts";
    const std::filesystem::path files = directory / "snmp";
    varoLib_s_snmpSystem system{};
    LogLines lines;
};

TEST_F(AgentTest, StartsWithAllThreeRecords) {
    snmp::Agent agent({{program.string()}, files, ""}, lines.receiver());
    agent.apply(varoLib_s_subag{});
    agent.apply(varoLib_s_snmpCommunity{});
    EXPECT_FALSE(std::filesystem::exists(files));
    agent.apply(system);
    EXPECT_TRUE(eventually([&] { return linesOf(starts) == 1; }));
    EXPECT_THAT(contentOf(taken), HasSubstr("sysContact a\nsysLocation b\nsysName c\n"));
    const auto mode = std::filesystem::status(files).permissions();
    EXPECT_EQ(mode, std::filesystem::perms::owner_all) << "others can read communities";
}

TEST_F(AgentTest, HasTakenAChangeWhenTheCallReturns) {
    snmp::Agent agent({{program.string()}, files, ""}, lines.receiver());
    agent.apply(varoLib_s_subag{});
    agent.apply(varoLib_s_snmpCommunity{});
    agent.apply(system);
    setText(system.contact, "changed");
    agent.apply(system);
    EXPECT_THAT(contentOf(taken), HasSubstr("sysContact changed\n"));
    EXPECT_EQ(linesOf(starts), 1) << "it need not have been started anew";
    setText(system.contact, "");
    agent.apply(system);
    EXPECT_THAT(contentOf(taken), HasSubstr(".4.0 octet_str \"\"\n"));
    EXPECT_EQ(linesOf(starts), 2);
}

TEST_F(AgentTest, ThatIsMissingFailsTheCallsAfterTheFirst) {
    snmp::Agent agent({{"/no/such/snmpd"}, files, ""}, lines.receiver());
    agent.apply(varoLib_s_subag{});
    agent.apply(varoLib_s_snmpCommunity{});
    EXPECT_NO_THROW(agent.apply(system));
    EXPECT_TRUE(eventually([&] { return lines.contain("/no/such/snmpd"); }));
    setText(system.contact, "changed");
    try {
        agent.apply(system);
        FAIL() << "the agent is said to have taken it";
    } catch (const std::exception& error) {
        EXPECT_THAT(error.what(), HasSubstr("the SNMP agent has ended with status 127"));
    }
    EXPECT_THAT(contentOf(files / "snmpd.conf"), HasSubstr("sysContact changed\n"));
}

TEST_F(AgentTest, RefusesADirectoryThatItWouldTakeForTwo) {
    snmp::Agent agent({{program.string()}, directory / "a,b", ""}, lines.receiver());
    agent.apply(varoLib_s_subag{});
    agent.apply(varoLib_s_snmpCommunity{});
    EXPECT_THROW(agent.apply(system), std::runtime_error);
}

}  // namespace
