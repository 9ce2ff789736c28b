// What the process keeps in its state directory, and what it makes of files that it cannot use.

#include "BllhostTest.h"
#include "ControlClient.h"

#include <csignal>
#include <filesystem>

using test::ControlClient;

TEST_F(BllhostTest, KeepsSettingsAcrossRestarts) {
    startHost();
    {
        ControlClient client;
        client.setShelfId("shelf 7");
        client.setFeature("httpserver", false);
        client.setClearConfig(true);
        client.stop();
    }
    EXPECT_EQ(host->awaitEnd(), 0);
    restartHost();
    EXPECT_THAT(ControlClient().status(),
                AllOf(Contains("shelfId shelf 7"), Contains("feature httpserver off"),
                      Contains("clearConfigInProgress off")));
}

TEST_F(BllhostTest, StartsWithFactorySettingsWhenTheirFileIsDamaged) {
    writeFile(state.path() / "framework.json", "{\"shelfId\": ");
    startHost();
    EXPECT_THAT(host->output(), HasSubstr("framework.json is damaged and was renamed to "
                                          "framework.json.damaged-"));
    EXPECT_THAT(ControlClient().status(), Contains("shelfId "));
}

TEST_F(BllhostTest, ReturnsTheManagementPortToVlanOneAndKeepsTheRestOfTheSwitch) {
    writeFile(state.path() / "switch.json",
              R"({"version":1,"vlans":[{"id":1,"ports":[100]},{"id":10,"ports":[1,100]}],)"
              R"("pvids":[{"port":1,"vlan":10},{"port":100,"vlan":10}],)"
              R"("defaultVlan":{"id":10,"native":true},"managementVlan":10,)"
              R"("managementEntry":null})");
    startHost();
    EXPECT_THAT(ControlClient().vlans(),
                ElementsAre("vlan 1: members 1 100, pvid 1", "vlan 10: members 100, pvid 100",
                            "default 10 native", "stored 10"));
    EXPECT_THAT(host->output(), HasSubstr("switch: the management port is back in VLAN 1"));
}

TEST_F(BllhostTest, RunsOnWithoutASwitchWhoseStateCannotBeUsed) {
    writeFile(state.path() / "switch.json", R"({"version":2})");
    startHost();
    const std::string reason =
        (state.path() / "switch.json").string() +
        " cannot be used: it has version 2, this release knows version 1; install the newer "
        "release again, or move the file away to start from factory values";
    EXPECT_THAT(host->output(), HasSubstr("switch: returnManagementPort: " + reason));
    EXPECT_THAT(ControlClient().vlans(),
                ElementsAre("-1: " + reason, "default 0 tagged", "stored 0"));
}

/// The entities of the test add rules as the network entity does.
TEST_F(BllhostTest, PutsStoredRulesBackIntoForceAndTellsWhatTheyMatch) {
    const std::string file = state.path() / "remote-access.json";
    const std::string stored = R"({
    "notInForce": [],
    "rules": [
        {
            "action": "permit",
            "address": "192.0.2.0",
            "wildcard": "0.0.0.255"
        },
        {
            "action": "deny",
            "address": "0.0.0.1",
            "wildcard": "0.0.0.0"
        },
        {
            "action": "deny",
            "address": "10.0.0.1",
            "wildcard": "0.0.0.0"
        }
    ],
    "version": 1
}
)";
    writeFile(file, stored);
    startHost();
    EXPECT_THAT(host->output(),
                HasSubstr("stored remote-access rule 2 (deny 0.0.0.1, wildcard 0.0.0.0) could not "
                          "be put into force (result -1); it stays in " +
                          file + "\n"));
    EXPECT_THAT(
        ControlClient().ruleCounters(),
        ElementsAre("status 0", "permit c0000200 ffffff00 0 packets 0 bytes",
                    "deny a000001 ffffffff 0 packets 0 bytes", "deny 0 0 0 packets 0 bytes"));
    EXPECT_EQ(readFile(file), stored);

    // The next process finds the same, also when this one was killed, and what it left in the
    // kernel does no harm.
    host->signal(SIGKILL);
    EXPECT_EQ(host->awaitEnd(), -SIGKILL);
    restartHost();
    EXPECT_EQ(ControlClient().ruleCounters().size(), 4U);
    EXPECT_EQ(readFile(file), stored);
}

TEST_F(BllhostTest, WithoutAFilterThereAreNoCounters) {
    portMapper.emplace();
    host.emplace(commandLine(ENTITIES, {"--filter-table", ""}));
    ASSERT_TRUE(host->awaitOutput("bllhost: ready\n")) << host->output();
    EXPECT_THAT(ControlClient().ruleCounters(), ElementsAre("status -1"));
}

TEST_F(BllhostTest, DoesNotStartWithStoredRulesThatCannotBeRead) {
    portMapper.emplace();
    std::filesystem::create_directory(state.path() / "remote-access.json");
    EXPECT_THAT(failedStart(commandLine(ENTITIES)),
                HasSubstr("bllhost: the remote-access rules cannot be read: cannot read " +
                          state.path().string() + "/remote-access.json: Is a directory."));
}

TEST_F(BllhostTest, DoesNotStartWithRulesOrSettingsOfALaterRelease) {
    portMapper.emplace();
    const auto refusal = [&](const char* what, const std::string& name) {
        const std::string later = R"({"version": 2})";
        const std::filesystem::path file = state.path() / name;
        writeFile(file, later);
        EXPECT_THAT(
            failedStart(commandLine(ENTITIES)),
            HasSubstr(std::string("bllhost: the ") + what + " cannot be read: " + file.string() +
                      " cannot be used: it has version 2, this release knows version 1; install "
                      "the newer release again, or move the file away to start from factory "
                      "values.\n"));
        EXPECT_EQ(readFile(file), later);
        std::filesystem::remove(file);
    };
    refusal("remote-access rules", "remote-access.json");
    refusal("framework's settings", "framework.json");
}
