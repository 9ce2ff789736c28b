// The web server set and the unsupported web operations.

#include "network/EntityTest.h"
#include "network/exports.h"
#include "network/webEvents.h"
#include "support/CapturedOutput.h"

#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string mkdirCommand = "mkdir -p /var/run/hasses &>/dev/null";
const std::string lsCommand = "ls -l /etc/apache2 &>/dev/null";
const std::string hassesStart =
    "/opt/kalvor/neroot/active/web_em/bin/hasses -p=8080 -murl=/sse-event -ra "
    "-fifo=/var/run/hasses/SSE_EVENT -ssl -cert-file=/etc/apache2/server.crt "
    "-privatekey-file=/etc/apache2/server.key";
const std::string hassesStop = "killall hasses";
const std::string apacheStartCommand = "/etc/init.d/apache2 start";
const std::string apacheStopCommand = "/etc/init.d/apache2 stop";
const std::string httpdKillCommand = "killall httpd";
const std::string feederStart = "/opt/kalvor/neroot/active/web_em/bin/hassesMsg &";
const std::string feederResume = "killall  -s CONT /opt/kalvor/neroot/active/web_em/bin/hassesMsg";
const std::string feederPause = "killall  -s STOP /opt/kalvor/neroot/active/web_em/bin/hassesMsg";

// Wait statuses (wait(2)).
constexpr int exitedWith1 = 1 << 8;
constexpr int exitedWith127 = 127 << 8;
constexpr int killedBySignal9 = 9;
constexpr int dumpedCore = 0x80 | 11;
constexpr int noShell = -1;

std::string ran(const std::string& command, int status = 0) {
    return "system(\"" + command + "\") -> " + std::to_string(status);
}

const Entries switchedOn =
    exclusively(ran(mkdirCommand), ran(hassesStart), ran(apacheStartCommand), ran(feederStart),
                "sleep(1)", ran(feederResume), "pthread_create() -> 0");

const Entries noSemaphores = {R"(sem_open("hassesKpiSem", 0) -> errno 2)",
                              R"(sem_open("hassesEventsSem", 0) -> errno 2)"};

Entries switchedOff(const Entries& drained = noSemaphores) {
    return exclusively(ran(hassesStop), drained, ran(apacheStopCommand), ran(httpdKillCommand),
                       ran(feederStart), "sleep(1)", ran(feederPause));
}

const std::string pid = std::to_string(getpid());
const std::string startBanner = "--> HassComm: pid: [" + pid +
                                "] - init\n"
                                "--> HassComm: version (1): 'hassComm_0.0.1'\n";
const std::string stopBanner = "--> HassComm: pid: [" + pid + "] - stop\n";

class WebServer : public EntityTest {
protected:
    void TearDown() override {
        if (!HasFailure()) {
            EXPECT_EQ(output.take(), "");
        }
        EntityTest::TearDown();
    }

    /// What the remembered state is, without a trace in the journal.
    bool isOn() {
        bool on = false;
        EXPECT_EQ(networkHttpGet(&on), 0);
        EXPECT_JOURNAL(sharing());
        return on;
    }

    void switchOn() {
        ASSERT_EQ(networkHttpServerSet(1), 0);
        journal();
        output.take();
    }

    CapturedOutput output;
};

TEST_F(WebServer, IsOffAtFirst) { EXPECT_FALSE(isOn()); }

TEST_F(WebServer, IsSwitchedOnInOrder) {
    EXPECT_EQ(networkHttpServerSet(1), 0);
    EXPECT_JOURNAL(switchedOn);
    EXPECT_EQ(output.take(), startBanner);
    ASSERT_EQ(platform.threadRequests.size(), 1U);
    EXPECT_EQ(platform.threadRequests[0].function, &Network::hassComm_Proc);
    EXPECT_EQ(platform.threadRequests[0].argument, &entity());
    EXPECT_TRUE(isOn());
}

TEST_F(WebServer, IsSwitchedOffInOrder) {
    switchOn();
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(switchedOff());
    EXPECT_EQ(output.take(), stopBanner);
    EXPECT_FALSE(isOn());
}

TEST_F(WebServer, IsOnForAnyNumberButZero) {
    EXPECT_EQ(networkHttpServerSet(-256), 0);
    EXPECT_JOURNAL(switchedOn);
    output.take();
    EXPECT_EQ(networkHttpServerSet(2), 0);
    EXPECT_JOURNAL(exclusively());
    EXPECT_TRUE(isOn());
}

TEST_F(WebServer, RunsNothingInTheStateThatItIsIn) {
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(exclusively());
    switchOn();
    EXPECT_EQ(networkHttpServerSet(1), 0);
    EXPECT_JOURNAL(exclusively());
    EXPECT_EQ(output.take(), "");
    EXPECT_EQ(networkHttpServerSet(0), 0);
    journal();
    output.take();
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(exclusively());
}

TEST_F(WebServer, GoesOnAndOffAgainAndAgain) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(networkHttpServerSet(1), 0);
        EXPECT_JOURNAL(switchedOn);
        EXPECT_EQ(networkHttpServerSet(0), 0);
        EXPECT_JOURNAL(switchedOff());
    }
    EXPECT_EQ(platform.threadRequests.size(), 3U);
    output.take();
}

TEST_F(WebServer, HoldsTheLockWhileTheFeederComesUp) {
    platform.onSleep = [this](unsigned int) {
        bool obtained = true;
        std::thread other([&] { obtained = platform.lock.acquire(fake::FakeLock::Mode::shared); });
        other.join();
        EXPECT_FALSE(obtained);
    };
    switchOn();
}

TEST_F(WebServer, RefusedLockIsReported) {
    platform.fail("exclusiveLock", 1);
    EXPECT_EQ(networkHttpServerSet(1), -1);
    EXPECT_JOURNAL(refused("exclusiveLock"));
    EXPECT_FALSE(isOn());
}

// Failing steps.

class FailedCommand : public WebServer, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Statuses, FailedCommand,
                         testing::Values(exitedWith1, exitedWith127, killedBySignal9, dumpedCore,
                                         noShell));

TEST_P(FailedCommand, OfTheEventServersStartEndsTheSwitch) {
    platform.commandStatus[hassesStart] = GetParam();
    EXPECT_EQ(networkHttpServerSet(1), -1);
    EXPECT_JOURNAL(exclusively(ran(mkdirCommand), ran(hassesStart, GetParam()),
                               commandFailed("4053", hassesStart)));
    EXPECT_FALSE(isOn());
    EXPECT_THAT(platform.threadRequests, IsEmpty());
}

// The parts and the order in which they come; elsewhere the message is one entry.
TEST_F(WebServer, FailedCommandIsWrittenToTheFrameworksLogValueByValue) {
    platform.commandStatus[hassesStart] = exitedWith1;
    EXPECT_EQ(networkHttpServerSet(1), -1);
    EXPECT_THAT(platform.logParts,
                ElementsAre("network", ": ", "network", ": ", "networkHttpServerSet", ": ", "4053",
                            ": ", "Error executing system command: ", hassesStart, "\n"));
    journal();
}

TEST_P(FailedCommand, OfApachesStartLeavesTheEventServerStarted) {
    platform.commandStatus[apacheStartCommand] = GetParam();
    EXPECT_EQ(networkHttpServerSet(1), -1);
    EXPECT_JOURNAL(exclusively(ran(mkdirCommand), ran(hassesStart),
                               ran(apacheStartCommand, GetParam()),
                               commandFailed("4084", apacheStartCommand)));
    EXPECT_FALSE(isOn());
    // The same request runs everything again.
    platform.commandStatus.clear();
    EXPECT_EQ(networkHttpServerSet(1), 0);
    EXPECT_JOURNAL(switchedOn);
    EXPECT_TRUE(isOn());
    output.take();
}

TEST_P(FailedCommand, OfTheEventServersStopEndsTheSwitch) {
    switchOn();
    platform.commandStatus[hassesStop] = GetParam();
    EXPECT_EQ(networkHttpServerSet(0), -1);
    EXPECT_JOURNAL(exclusively(ran(hassesStop, GetParam()), commandFailed("4053", hassesStop)));
    EXPECT_TRUE(isOn());
}

TEST_P(FailedCommand, OfApachesStopLeavesTheEventServerStopped) {
    switchOn();
    platform.commandStatus[apacheStopCommand] = GetParam();
    EXPECT_EQ(networkHttpServerSet(0), -1);
    EXPECT_JOURNAL(exclusively(ran(hassesStop), noSemaphores, ran(apacheStopCommand, GetParam()),
                               commandFailed("4084", apacheStopCommand)));
    EXPECT_TRUE(isOn());
    platform.commandStatus.clear();
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(switchedOff());
    output.take();
}

TEST_P(FailedCommand, OfAnythingElseOnTheWayOnIsPassedOver) {
    for (const std::string& command : {mkdirCommand, feederStart, feederResume}) {
        platform.commandStatus[command] = GetParam();
    }
    platform.fail("pthread_create", 11);
    EXPECT_EQ(networkHttpServerSet(1), 0);
    EXPECT_JOURNAL(exclusively(ran(mkdirCommand, GetParam()), ran(hassesStart),
                               ran(apacheStartCommand), ran(feederStart, GetParam()), "sleep(1)",
                               ran(feederResume, GetParam()), "pthread_create() -> 11"));
    EXPECT_EQ(output.take(), startBanner);
    EXPECT_TRUE(isOn());
}

TEST_P(FailedCommand, OfAnythingElseOnTheWayOffIsPassedOver) {
    switchOn();
    for (const std::string& command : {httpdKillCommand, feederStart, feederPause}) {
        platform.commandStatus[command] = GetParam();
    }
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(exclusively(ran(hassesStop), noSemaphores, ran(apacheStopCommand),
                               ran(httpdKillCommand, GetParam()), ran(feederStart, GetParam()),
                               "sleep(1)", ran(feederPause, GetParam())));
    EXPECT_EQ(output.take(), stopBanner);
    EXPECT_FALSE(isOn());
}

// Semaphores of the event server.

TEST_F(WebServer, DrainsTheSemaphoresToZero) {
    platform.ipc.semaphores["hassesKpiSem"] = {2};
    platform.ipc.semaphores["hassesEventsSem"] = {0};
    switchOn();
    EXPECT_EQ(networkHttpServerSet(0), 0);
    EXPECT_JOURNAL(switchedOff({
        R"(sem_open("hassesKpiSem", 0) -> 0)",
        R"(sem_trywait("hassesKpiSem") -> 0)",
        R"(sem_trywait("hassesKpiSem") -> 0)",
        R"(sem_trywait("hassesKpiSem") -> errno 11)",
        R"(sem_close("hassesKpiSem") -> 0)",
        R"(sem_open("hassesEventsSem", 0) -> 0)",
        R"(sem_trywait("hassesEventsSem") -> errno 11)",
        R"(sem_close("hassesEventsSem") -> 0)",
    }));
    EXPECT_EQ(platform.ipc.semaphores.at("hassesKpiSem").value, 0U);
    EXPECT_EQ(platform.ipc.semaphores.size(), 2U);
    output.take();
}

TEST_F(WebServer, PassesOverASemaphoreThatCannotBeOpened) {
    platform.ipc.semaphores["hassesKpiSem"] = {5};
    platform.ipc.semaphores["hassesEventsSem"] = {1};
    platform.fail("sem_open hassesKpiSem", 13);
    drainEventServerSemaphores();
    EXPECT_JOURNAL(
        R"(sem_open("hassesKpiSem", 0) -> errno 13)", R"(sem_open("hassesEventsSem", 0) -> 0)",
        R"(sem_trywait("hassesEventsSem") -> 0)", R"(sem_trywait("hassesEventsSem") -> errno 11)",
        R"(sem_close("hassesEventsSem") -> 0)");
    EXPECT_EQ(platform.ipc.semaphores.at("hassesKpiSem").value, 5U);
}

TEST_F(WebServer, DrainCreatesNoSemaphore) {
    drainEventServerSemaphores();
    EXPECT_JOURNAL(noSemaphores);
    EXPECT_THAT(platform.ipc.semaphores, IsEmpty());
}

TEST_F(WebServer, DrainEndsWithAnyFailedWait) {
    platform.ipc.semaphores["hassesKpiSem"] = {5};
    platform.fail("sem_trywait", 4);
    drainEventServerSemaphores();
    EXPECT_JOURNAL(R"(sem_open("hassesKpiSem", 0) -> 0)",
                   R"(sem_trywait("hassesKpiSem") -> errno 4)", R"(sem_close("hassesKpiSem") -> 0)",
                   R"(sem_open("hassesEventsSem", 0) -> errno 2)");
}

// State query and looks at the file system.

TEST_F(WebServer, StateIsTheRememberedOneAndRunsNothing) {
    bool on = true;
    EXPECT_EQ(entity().networkHttpGet(on), 0);
    EXPECT_FALSE(on);
    EXPECT_JOURNAL(sharing());
    switchOn();
    EXPECT_EQ(networkHttpGet(&on), 0);
    EXPECT_TRUE(on);
    EXPECT_JOURNAL(sharing());
}

TEST_F(WebServer, StateIsLeftAloneWhenTheLockIsRefused) {
    switchOn();
    platform.fail("sharedLock", 1);
    bool on = false;
    EXPECT_EQ(networkHttpGet(&on), -1);
    EXPECT_FALSE(on);
    EXPECT_JOURNAL(refused("sharedLock"));
}

TEST_F(WebServer, IsInstalledIfTheShellFindsItsDirectory) {
    EXPECT_TRUE(entity().isHttpServerInstalled());
    EXPECT_JOURNAL(ran(lsCommand));
    for (const int status : {2 << 8, exitedWith1, killedBySignal9, noShell}) {
        platform.commandStatus[lsCommand] = status;
        EXPECT_FALSE(entity().isHttpServerInstalled());
        EXPECT_JOURNAL(ran(lsCommand, status));
    }
}

TEST_F(WebServer, EventServersDirectoryIsMadeByTheShellWhoseStatusIsNegated) {
    EXPECT_EQ(entity().createHassesServerDir(), 1);
    EXPECT_JOURNAL(ran(mkdirCommand));
    for (const int status : {exitedWith1, killedBySignal9, noShell}) {
        platform.commandStatus[mkdirCommand] = status;
        EXPECT_EQ(entity().createHassesServerDir(), 0);
        EXPECT_JOURNAL(ran(mkdirCommand, status));
    }
}

// Unsupported operations.

TEST_F(WebServer, UnsupportedOperationsFailAndDoNothing) {
    logEverything();
    switchOn();
    for (const unsigned int port : {0U, 443U, 4294967295U}) {
        EXPECT_EQ(networkSetHttpSPort(port), -1);
    }
    for (const auto protocol :
         {Network::sprotocolTls, Network::sprotocolSsl, Network::sprotocolBoth}) {
        EXPECT_EQ(networkSetHttpSProto(protocol), -1);
    }
    for (const bool on : {false, true}) {
        EXPECT_EQ(networkHttpServerEnable(on), -1);
        EXPECT_EQ(networkHttpSServerEnable(on), -1);
    }
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_TRUE(isOn());
}

TEST_F(WebServer, UnsupportedInformationIsNotGiven) {
    Network::HttpInfo info{true, false, 77, Network::sprotocolBoth};
    EXPECT_EQ(networkGetHttpInfo(&info), -1);
    EXPECT_TRUE(info.httpEnabled);
    EXPECT_FALSE(info.httpsEnabled);
    EXPECT_EQ(info.httpsPort, 77U);
    EXPECT_EQ(info.httpsProtocol, Network::sprotocolBoth);
    EXPECT_EQ(networkGetHttpInfo(nullptr), -1);
    EXPECT_THAT(journal(), IsEmpty());
}

}  // namespace
