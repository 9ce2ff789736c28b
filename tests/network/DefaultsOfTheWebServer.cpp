// The web server on the return to factory settings. The component lists are reached past their
// access (-fno-access-control, for this file).

#include "network/DefaultsTest.h"
#include "network/library.h"

#include <string>

namespace {

using testing::ElementsAreArray;

class DefaultsOfTheWebServer : public DefaultsLater {
protected:
    DefaultsOfTheWebServer() { platform.product.supportedFeatures.insert("httpserver"); }
};

std::string ran(const std::string& command, int status = 0) {
    return "system(\"" + command + "\") -> " + std::to_string(status);
}

TEST_F(DefaultsOfTheWebServer, SetIsSwitchedOnWhereThereIsOne) {
    testing::internal::CaptureStdout();
    journal();
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    const Entries entries = journal();
    testing::internal::GetCapturedStdout();
    journal();
    Groups groups;
    groups.webServer =
        sequence(R"(isFeatureSupported("httpserver") -> 1)",
                 exclusively(ran("mkdir -p " + eventServerDirectory + " &>/dev/null"),
                             ran(eventServerStart), ran(apacheStart),
                             ran("/opt/kalvor/neroot/active/web_em/bin/hassesMsg &"), "sleep(1)",
                             ran("killall  -s CONT /opt/kalvor/neroot/active/web_em/bin/hassesMsg"),
                             "pthread_create() -> 0"));
    EXPECT_THAT(entries, ElementsAreArray(groups.all()));
    bool on = false;
    EXPECT_EQ(entity().networkHttpGet(on), 0);
    EXPECT_TRUE(on);
    journal();
}

std::string webServerFailed(int statusOfGroupBefore) {
    return error("applyDefaultSettings: networkHttpServerSet 1 has failed! Return value: " +
                 std::to_string(statusOfGroupBefore));
}

/// How a board goes without its web server, whose lock is refused, and which status it tells.
Entries withoutWebServer(int statusOfGroupBefore) {
    return sequence(R"(isFeatureSupported("httpserver") -> 1)", refused("exclusiveLock"),
                    webServerFailed(statusOfGroupBefore));
}

TEST_F(DefaultsOfTheWebServer, SetThatCannotBeSwitchedOnIsReportedAndDoesNotCount) {
    platform.fail("exclusiveLock", 1);
    Groups groups;
    groups.webServer = withoutWebServer(0);
    expectDefaults(1, groups);
}

// The message gives the status of the last call for the group before.

TEST_F(DefaultsOfTheWebServer, MessageGivesTheLastStatusOfTheAutoConfigurationClient) {
    platform.fail("exclusiveLock", 1);
    const Groups works;
    platform.fail("varoUpdateAcs", 44, 1, 1);
    Groups groups;
    groups.acs = {works.acs[0], works.acs[1], works.acs[2], failing(works.acs[3], 44),
                  failed("varoUpdateAcs", 44)};
    groups.webServer = withoutWebServer(44);
    expectDefaults(0, groups);

    platform.fail("varoUpdateAcs", 45, 1);
    groups.acs = {works.acs[0], works.acs[1], failing(works.acs[2], 45),
                  failed("varoUpdateAcs", 45), works.acs[3]};
    groups.webServer = withoutWebServer(0);
    expectDefaults(0, groups);

    platform.fail("varoDefAcs", 46);
    groups.acs = {failing(works.acs[0], 46), failed("varoDefAcs", 46)};
    groups.webServer = withoutWebServer(46);
    expectDefaults(0, groups);
}

TEST_F(DefaultsOfTheWebServer, CommandThatFailsIsReportedAndDoesNotCount) {
    constexpr int exitedWith1 = 1 << 8;
    platform.commandStatus[eventServerStart] = exitedWith1;
    const std::string directoryMade = ran("mkdir -p " + eventServerDirectory + " &>/dev/null");
    Groups groups;
    groups.webServer = sequence(R"(isFeatureSupported("httpserver") -> 1)",
                                exclusively(directoryMade, ran(eventServerStart, exitedWith1),
                                            commandFailed("4053", eventServerStart)),
                                webServerFailed(0));
    expectDefaults(1, groups);

    platform.commandStatus = {{apacheStart, exitedWith1}};
    platform.fail("varoUpdateAcs", 44, 1, 1);
    append(groups.acs, failed("varoUpdateAcs", 44));
    groups.acs[3] = failing(groups.acs[3], 44);
    groups.webServer =
        sequence(R"(isFeatureSupported("httpserver") -> 1)",
                 exclusively(directoryMade, ran(eventServerStart), ran(apacheStart, exitedWith1),
                             commandFailed("4084", apacheStart)),
                 webServerFailed(44));
    expectDefaults(0, groups);
}

}  // namespace
