// Construction, start, stop and events of the entity. The poll flag and the events are reached past
// their access (-fno-access-control, for this file).

#include "framework/sysInfo.h"
#include "network/EntityTest.h"

#include <chrono>
#include <future>
#include <semaphore>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string noManagementInterface = R"(varoGetInterface("mng0") -> 1)";

/// The announcement of the last restart, on the queue of the entity before.
const auto toldOfRestart = testing::StartsWith(R"(msgsnd(500, 1001 "events={\n)");

using Lifecycle = EntityTest;

TEST_F(Lifecycle, ConstructionAndDestructionKeepTheirOrder) {
    remakeEntity();
    EXPECT_THAT(
        journal(),
        ElementsAre("varoLibDestroy()", R"(~ACLContainer_t("br0", "acl"))",
                    R"(~BLEntity("network"))", R"(BLEntity("network"))",
                    R"(ACLContainer_t("br0", "acl"))", "varoGetMyBoardPos() -> 0 5", toldOfRestart,
                    "varoLibInit() -> 0", "varoGetInternalConfig() -> 0 {severity=3}"));
}

TEST_F(Lifecycle, ConstructionTakesVaroLibsThreshold) {
    platform.internalConfig.severity = 6;
    remakeEntity();
    journal();
    entity().networkBleSyslog(6, "six\n");
    entity().networkBleSyslog(7, "seven\n");
    EXPECT_JOURNAL(R"(syslog(6, "six\n"))");
}

TEST_F(Lifecycle, ConstructionKeepsThreeWhenVaroLibCannotBeRead) {
    platform.internalConfig.severity = 6;
    platform.fail("varoLibInit", 4);
    platform.fail("varoGetInternalConfig", 4);
    remakeEntity();
    EXPECT_THAT(journal(),
                testing::IsSupersetOf({"varoLibInit() -> 4", "varoGetInternalConfig() -> 4"}));
    entity().networkBleSyslog(3, "three\n");
    entity().networkBleSyslog(4, "four\n");
    EXPECT_JOURNAL(R"(syslog(3, "three\n"))");
}

TEST_F(Lifecycle, ConstructionGoesOnWithoutThePositionOfTheBoard) {
    platform.fail("varoGetMyBoardPos", 4);
    remakeEntity();
    EXPECT_THAT(
        journal(),
        ElementsAre("varoLibDestroy()", R"(~ACLContainer_t("br0", "acl"))",
                    R"(~BLEntity("network"))", R"(BLEntity("network"))",
                    R"(ACLContainer_t("br0", "acl"))", "varoGetMyBoardPos() -> 4",
                    error("getIpmiBoardPos: varoGetMyBoardPos has failed: rv=4"), toldOfRestart,
                    "varoLibInit() -> 0", "varoGetInternalConfig() -> 0 {severity=3}"));
    EXPECT_EQ(entity().boardPos, 0U);
}

TEST_F(Lifecycle, ANewEntityHasItsFirstValues) {
    EXPECT_EQ(entity().getName(), "network");
    EXPECT_EQ(entity().mngVlanId, 1U);
    EXPECT_EQ(entity().boardPos, 5U);
    EXPECT_STREQ(entity().aclName, "");
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_EQ(entity().ruleIdx, 0U);
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().aclAssigned, 0U);
    EXPECT_EQ(entity().webServerOn, false);
    EXPECT_EQ(entity().pollThread, 0U);
    EXPECT_EQ(entity().pollStop, false);
    EXPECT_EQ(entity().currentIpAddr, 0U);
    EXPECT_EQ(entity().lockErrorMsg, "Network BLE: Lock cant be obtained.\n");
}

TEST_F(Lifecycle, ConfigurationOfTheFrameworkIsNotUsed) {
    entity().applyConfiguration({});
    entity().saveConfiguration({});
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Lifecycle, DependsOnBridgeAndInterfacesInThatOrder) {
    std::list<std::string> names = {"something", "else"};
    entity().getDependencies(names);
    EXPECT_THAT(names, ElementsAre("bridge", "interfaces"));
    EXPECT_THAT(journal(), IsEmpty());
}

/// The remote-access list comes with the start and goes with the stop.
const Entries listCreated = {"interfaceMngGet() -> 0 1",
                             R"(interfaceLinuxnameGet(1, 37) -> 0 "mng0")",
                             R"(createACL("RA_mng0", 4) -> 0)",
                             R"(createRule("RA_mng0", deny, 201) -> 0 101)",
                             R"(addCondition("RA_mng0", 101, {1 20 0 0.0.0.0 0.0.0.0}) -> 0)",
                             "fflush(all)"};
/// The events of the shelf and of the framework are subscribed to, or left.
const Entries eventsReached = {"shelfIdChanged()", "externalMessage()"};
const Entries listDestroyed = {R"(delCondition("RA_mng0", 101, 1) -> 0)",
                               R"(delRuleById("RA_mng0", 101) -> 0)",
                               R"(deleteACL("RA_mng0") -> 0)"};

TEST_F(Lifecycle, StartRegistersTheServiceCreatesTheListAndAsksForThePollThread) {
    EXPECT_EQ(entity().start(), 1);
    EXPECT_JOURNAL(listCreated, eventsReached, "pthread_create() -> 0");
    entity().rpcProxy.stop(false);
    EXPECT_THAT(platform.journal.takeOf("Network_mng"),
                ElementsAre(R"(registerThread("Network_mng"))", "pmap_unset(536870921, 1) -> 0",
                            "socket(2, 2, 17) -> 1000", "bind(1000, 2 127.0.0.1:0, 16) -> 0",
                            "svcudp_create(1000) -> 0", "svc_register(1000, 536870921, 1, 17) -> 0",
                            "socket(2, 1, 6) -> 1001", "bind(1001, 2 127.0.0.1:0, 16) -> 0",
                            "listen(1001, 128) -> 0", "svctcp_create(1001, 0, 0) -> 0",
                            "svc_register(1001, 536870921, 1, 6) -> 0"));
}

TEST_F(Lifecycle, StartGoesOnWithoutTheList) {
    platform.fail("createACL", 5);
    EXPECT_EQ(entity().start(), 1);
    EXPECT_JOURNAL("interfaceMngGet() -> 0 1", R"(interfaceLinuxnameGet(1, 37) -> 0 "mng0")",
                   R"(createACL("RA_mng0", 4) -> 5)",
                   error("initNetworkAcl: createACL(RA_mng0): faild! Remote access "
                         "filtering will not be able to work! Return value: 5"),
                   error("start: initNetworkAcl has failed!"), eventsReached,
                   "pthread_create() -> 0");
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL("pthread_join()", eventsReached);
    platform.journal.takeAll();
}

class StartedEntity : public Lifecycle {
protected:
    void SetUp() override {
        ASSERT_EQ(entity().start(), 1);
        entity().rpcProxy.stop(false);
        platform.journal.takeAll();
    }

    /// What the framework does with a message from outside.
    static void sendExternalMessage(const std::string& name, const std::string& value) {
        std::ostringstream reply;
        singleton<BLLManager>::instance().externalMessageEvent.firePost(name, value, &reply,
                                                                        "test");
    }

    /// What the shelf tells when it is given another identity.
    void renameShelf(const std::string& id) {
        platform.shelf.shelfId = id;
        singleton<sysInfo>::instance().shelfIdEvent.firePost(id);
    }

    void TearDown() override {
        if (entity().pollThread != 0) {
            entity().stop();
            platform.journal.takeAll();
        }
        Lifecycle::TearDown();
    }
};

TEST_F(StartedEntity, FollowsExternalMessages) {
    sendExternalMessage("networkBle_severity", "4");
    entity().networkBleSyslog(4, "four\n");
    EXPECT_JOURNAL(R"(syslog(4, "four\n"))");
}

TEST_F(StartedEntity, WritesANewIdentityOfTheShelfIntoOption82) {
    platform.addressing.dhcp.option82Enabled = 1;
    renameShelf("7");
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId=""})";
    EXPECT_JOURNAL(exclusively(
        read,
        exclusively(
            read, R"(getShelfId() -> "7")",
            R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=0 option82=1 circuitId="VANTORIX:7 eth 5:1:"}) -> 0)")));
}

TEST_F(StartedEntity, DoesNotFollowTheShelfAfterItsStop) {
    platform.addressing.dhcp.option82Enabled = 1;
    EXPECT_EQ(entity().stop(), 1);
    journal();
    renameShelf("7");
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(StartedEntity, StartingAgainFailsAndDoesNothing) {
    // The thread has ended and has been joined, so that the proxy may start again; while it is
    // joinable it may not.
    ASSERT_TRUE(entity().rpcProxy.start());
    EXPECT_EQ(entity().start(), 0);
    EXPECT_THAT(journal(), IsEmpty());
    entity().rpcProxy.stop(false);
    platform.journal.takeAll();
}

TEST_F(StartedEntity, StopJoinsThePollThreadAndLeavesTheEvents) {
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL("pthread_join()", listDestroyed, eventsReached);
    sendExternalMessage("networkBle_severity", "7");
    entity().networkBleSyslog(7, "seven\n");
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(StartedEntity, StopGoesOnThoughTheListStays) {
    platform.fail("deleteACL", 6);
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL("pthread_join()", R"(delCondition("RA_mng0", 101, 1) -> 0)",
                   R"(delRuleById("RA_mng0", 101) -> 0)", R"(deleteACL("RA_mng0") -> 6)",
                   error("destroyNetworkAcl: deleteACL(RA_mng0): faild! Remote access "
                         "filtering will not be able to work anymore! Return value: 6"),
                   error("start: destroyNetworkAcl has failed!"), eventsReached);
    sendExternalMessage("networkBle_severity", "7");
    renameShelf("7");
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(StartedEntity, AnotherStopFindsNothingLeftToDo) {
    EXPECT_EQ(entity().stop(), 1);
    journal();
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL(eventsReached);
}

TEST_F(StartedEntity, StopStoresTheValueOnWhichTheLoopRuns) {
    entity().pollStop = true;
    entity().stop();
    EXPECT_EQ(entity().pollStop, false);
    journal();
}

TEST_F(Lifecycle, StopWithoutAPollThreadJoinsNothing) {
    platform.fail("pthread_create", 11);
    EXPECT_EQ(entity().start(), 1);
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL(listCreated, eventsReached, "pthread_create() -> 11", listDestroyed,
                   eventsReached);
    platform.journal.takeAll();
}

TEST_F(Lifecycle, StopOfAnEntityThatNeverStartedSucceeds) {
    EXPECT_EQ(entity().stop(), 1);
    EXPECT_JOURNAL(eventsReached);
}

TEST_F(Lifecycle, MayBeStartedAgainAfterItsStop) {
    for (int round = 0; round < 3; ++round) {
        platform.accessLists = {};
        EXPECT_EQ(entity().start(), 1);
        EXPECT_EQ(entity().stop(), 1);
        EXPECT_JOURNAL(listCreated, eventsReached, "pthread_create() -> 0", "pthread_join()",
                       listDestroyed, eventsReached);
    }
    platform.journal.takeAll();
}

// However long its registration takes: a stop that gave up after a while would let go of the list.
TEST_F(Lifecycle, StopWaitsUntilTheServicesThreadHasEnded) {
    std::binary_semaphore mayRegister{0};
    platform.onRegisterThread = [&] { mayRegister.acquire(); };
    ASSERT_EQ(entity().start(), 1);
    auto stopped = std::async(std::launch::async, [] { return entity().stop(); });
    EXPECT_EQ(stopped.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
    mayRegister.release();
    EXPECT_EQ(stopped.get(), 1);
    platform.journal.takeAll();
}

// The poll thread is a real one here. It runs on after stop() has been called, because stop()
// stores the value that keeps it running; the test ends the loop itself.
TEST_F(Lifecycle, StopWaitsUntilThePollLoopEndsByItself) {
    std::binary_semaphore polledOnce{0};
    std::binary_semaphore goOn{0};
    std::binary_semaphore joining{0};
    std::atomic<int> sleeps = 0;
    std::atomic<bool> stopReturned = false;
    platform.runsThreads = true;
    platform.onSleep = [&](unsigned int) {
        ++sleeps;
        polledOnce.release();
        goOn.acquire();
    };
    platform.onJoin = [&] { joining.release(); };
    ASSERT_EQ(entity().start(), 1);
    polledOnce.acquire();

    std::thread framework([&] {
        entity().stop();
        stopReturned = true;
    });
    joining.acquire();
    // Three more rounds, which a loop that stop() had ended would not make.
    for (int round = 0; round < 3; ++round) {
        goOn.release();
        polledOnce.acquire();
        EXPECT_FALSE(stopReturned);
    }
    entity().pollStop = true;
    goOn.release();
    framework.join();
    EXPECT_TRUE(stopReturned);
    EXPECT_EQ(sleeps, 4);
    EXPECT_THAT(platform.journal.takeOf("thread 1"),
                ElementsAre(noManagementInterface, "sleep(5)", noManagementInterface, "sleep(5)",
                            noManagementInterface, "sleep(5)", noManagementInterface, "sleep(5)"));
    platform.journal.takeAll();
}

}  // namespace
