// What every implementation of the framework's interface keeps.

#include "contract/Environment.h"
#include "framework/BLLManager.h"
#include "framework/Interfaces.h"
#include "framework/Log.h"
#include "platform/zubridge.h"
#include "support/matchers.h"

#include <boost/bind/bind.hpp>

#include <list>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using Exclusive = BLLManager::exclusiveLock_t;
using Shared = BLLManager::sharedLock_t;

class FrameworkContract : public testing::Test {
protected:
    Environment environment;
};

/// Whether another thread is granted a hold now.
template <class Lock>
bool isGrantedToAnother() {
    bool granted = false;
    std::thread([&granted] { granted = Lock().isObtained(); }).join();
    return granted;
}

TEST_F(FrameworkContract, ExclusiveLockKeepsOthersOut) {
    {
        const Exclusive lock;
        ASSERT_TRUE(lock.isObtained());
        EXPECT_FALSE(isGrantedToAnother<Exclusive>());
        EXPECT_FALSE(isGrantedToAnother<Shared>());
    }
    EXPECT_TRUE(isGrantedToAnother<Exclusive>());
}

TEST_F(FrameworkContract, SharedLockAdmitsReadersOnly) {
    {
        const Shared lock;
        ASSERT_TRUE(lock.isObtained());
        EXPECT_TRUE(isGrantedToAnother<Shared>());
        EXPECT_FALSE(isGrantedToAnother<Exclusive>());
    }
    EXPECT_TRUE(isGrantedToAnother<Exclusive>());
}

TEST_F(FrameworkContract, HolderOfTheExclusiveLockIsGrantedMore) {
    {
        const Exclusive outer;
        const Exclusive inner;
        const Shared innermost;
        EXPECT_TRUE(outer.isObtained());
        EXPECT_TRUE(inner.isObtained());
        EXPECT_TRUE(innermost.isObtained());
        EXPECT_FALSE(isGrantedToAnother<Shared>());
    }
    EXPECT_TRUE(isGrantedToAnother<Exclusive>());
}

TEST_F(FrameworkContract, InnerReleaseKeepsTheOuterHold) {
    const Exclusive outer;
    {
        const Exclusive inner;
        const Shared innermost;
    }
    EXPECT_FALSE(isGrantedToAnother<Shared>());
}

TEST_F(FrameworkContract, HolderOfTheSharedLockIsGrantedItAgain) {
    const Shared outer;
    const Shared inner;
    EXPECT_TRUE(inner.isObtained());
    EXPECT_TRUE(isGrantedToAnother<Shared>());
}

TEST_F(FrameworkContract, SharedLockCannotBeTurnedIntoAnExclusiveOne) {
    const Shared outer;
    {
        const Exclusive inner;
        EXPECT_FALSE(inner.isObtained());
    }
    EXPECT_TRUE(isGrantedToAnother<Shared>());
}

TEST_F(FrameworkContract, RefusedLockHoldsNothing) {
    {
        const Exclusive lock;
        EXPECT_FALSE(isGrantedToAnother<Exclusive>());
    }
    EXPECT_TRUE(isGrantedToAnother<Exclusive>());
    const Exclusive again;
    EXPECT_TRUE(again.isObtained());
}

struct Receiver {
    void receive(const std::string& name, const std::string& value, std::ostringstream* reply) {
        messages.push_back(name + "=" + value);
        *reply << "seen";
    }
    std::vector<std::string> messages;
};

TEST_F(FrameworkContract, ExternalMessagesReachSubscribersUntilTheyUnsubscribe) {
    using namespace boost::placeholders;
    auto& event = singleton<BLLManager>::instance().externalMessage();
    Receiver first;
    Receiver second;
    const auto firstHandler = boost::bind(&Receiver::receive, &first, _1, _2, _3);
    const auto secondHandler = boost::bind(&Receiver::receive, &second, _1, _2, _3);
    event.subscribePost(firstHandler);
    event.subscribePost(secondHandler);
    std::ostringstream reply;
    event.firePost("knob", "7", &reply, "test");
    event.unsubscribePost(firstHandler);
    event.firePost("knob", "8", &reply, "test");
    event.unsubscribePost(secondHandler);
    event.firePost("knob", "9", &reply, "test");
    EXPECT_THAT(first.messages, ElementsAre("knob=7"));
    EXPECT_THAT(second.messages, ElementsAre("knob=7", "knob=8"));
    EXPECT_EQ(reply.str(), "seenseenseen");
}

TEST_F(FrameworkContract, SingletonsAreTheSameOnEveryCall) {
    EXPECT_EQ(&singleton<BLLManager>::instance(), &singleton<BLLManager>::instance());
    EXPECT_EQ(&singleton<Log>::instance(), &singleton<Log>::instance());
}

TEST_F(FrameworkContract, LogChains) {
    Log& log = singleton<Log>::instance();
    EXPECT_EQ(&log.setMsgLevel(LogImpl::levelDebug), &log);
    EXPECT_EQ(&(log << std::string("contract: ")), &log);
    EXPECT_EQ(&log.write<int>(1).write<const char*>(" and ").write(std::string("2\n")), &log);
}

TEST_F(FrameworkContract, BridgeAndInterfacesAreEntitiesThatDependOnNothing) {
    std::list<BLEntity*> entities = {&singleton<zubridge>::instance(),
                                     &singleton<Interfaces>::instance()};
    std::vector<std::string> names;
    for (BLEntity* const entity : entities) {
        names.push_back(entity->getName());
        std::list<std::string> dependencies = {"left over"};
        entity->getDependencies(dependencies);
        EXPECT_THAT(dependencies, IsEmpty());
        EXPECT_EQ(entity->start(), 1);
        EXPECT_EQ(entity->stop(), 1);
    }
    EXPECT_THAT(names, ElementsAre("bridge", "interfaces"));
}

TEST_F(FrameworkContract, ThreadsMayRegisterAnyName) {
    std::thread([] {
        for (const char* name : {"Network_mng", "", "a name longer than the kernel keeps"}) {
            singleton<BLLManager>::instance().registerThread(name);
        }
    }).join();
}

TEST_F(FrameworkContract, AccessListContainersMayBeMadeAndDestroyed) {
    const ACLContainer_t container("br0", "acl");
    const ACLContainer_t other("br0", "acl");
    EXPECT_NE(&container, &other);
}

}  // namespace
