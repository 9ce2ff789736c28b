// The framework's classes, as an entity library sees them.

#include "board/framework/Framework.h"
#include "doubles.h"
#include "framework/BLLManager.h"
#include "framework/CliConfig.h"
#include "framework/Interfaces.h"
#include "framework/sysInfo.h"
#include "platform/features.h"
#include "platform/zubridge.h"
#include "support/files.h"
#include "support/matchers.h"

#include <pthread.h>

#include <array>
#include <chrono>
#include <future>
#include <optional>
#include <thread>

namespace {

BLLManager& manager() { return singleton<BLLManager>::instance(); }

class FrameworkTest : public testing::Test {
protected:
    FrameworkTest() {
        framework::framework().settings.load(directory.path(), [](int, const std::string&) {});
    }
    ~FrameworkTest() override {
        framework::framework().configurationLock.setWaitLimit(std::chrono::seconds(10));
    }

    TemporaryDirectory directory;
};

template <class Lock>
bool isObtainedElsewhere() {
    return std::async(std::launch::async, [] { return Lock().isObtained(); }).get();
}

/// The entity, as the framework drives it.
void expectQuiet(BLEntity& entity, const std::string& name) {
    EXPECT_EQ(entity.getName(), name);
    std::list<std::string> names{"left over"};
    entity.getDependencies(names);
    EXPECT_THAT(names, IsEmpty());
    entity.applyConfiguration(nullptr);
    entity.saveConfiguration(nullptr);
    EXPECT_EQ(entity.start(), 1);
    EXPECT_EQ(entity.applyDefaultSettings(), 1);
    EXPECT_EQ(entity.stop(), 1);
}

}  // namespace

TEST_F(FrameworkTest, ConfigurationLockIsOneForTheProcess) {
    framework::framework().configurationLock.setWaitLimit(std::chrono::milliseconds::zero());
    std::optional<BLLManager::exclusiveLock_t> exclusive(std::in_place);
    EXPECT_TRUE(exclusive->isObtained());
    EXPECT_TRUE(BLLManager::sharedLock_t().isObtained());
    EXPECT_TRUE(BLLManager::exclusiveLock_t().isObtained());
    EXPECT_FALSE(isObtainedElsewhere<BLLManager::sharedLock_t>());
    EXPECT_FALSE(isObtainedElsewhere<BLLManager::exclusiveLock_t>());
    exclusive.reset();

    std::optional<BLLManager::sharedLock_t> shared(std::in_place);
    EXPECT_TRUE(shared->isObtained());
    EXPECT_FALSE(BLLManager::exclusiveLock_t().isObtained());
    EXPECT_TRUE(isObtainedElsewhere<BLLManager::sharedLock_t>());
    EXPECT_FALSE(isObtainedElsewhere<BLLManager::exclusiveLock_t>());
    shared.reset();
    EXPECT_TRUE(isObtainedElsewhere<BLLManager::exclusiveLock_t>());
}

TEST_F(FrameworkTest, RegisteredEntitiesReachTheRegistry) {
    // They outlive the registry's use, as the contract asks for.
    static test::Journal journal;
    static test::ScriptedEntity entity("registered by a test", {}, journal);
    static const bool isRegistered = [] {
        manager().registerEntity(entity);
        return framework::framework().entities.startAll();
    }();
    EXPECT_TRUE(isRegistered);
    const auto status = framework::framework().entities.status();
    EXPECT_THAT(status, Contains(testing::Field(&framework::EntityRegistry::Status::name,
                                                "registered by a test")));

    const test::CapturedLog captured;
    manager().registerEntity(entity);
    EXPECT_THAT(captured.entries(),
                ElementsAre(Pair(LogImpl::levelError,
                                 "entity \"registered by a test\" is not registered: "
                                 "there is one of that name already")));
}

TEST_F(FrameworkTest, ThreadsAreNamedUntilTheyEnd) {
    pid_t thread = 0;
    std::jthread([&] {
        thread = gettid();
        manager().registerThread("a name of more than 15 bytes");
        std::array<char, 16> systemName{};
        pthread_getname_np(pthread_self(), systemName.data(), systemName.size());
        EXPECT_STREQ(systemName.data(), "a name of more ");
        EXPECT_EQ(framework::framework().threads.nameOf(thread), "a name of more than 15 bytes");
        manager().registerThread("short");
        EXPECT_EQ(framework::framework().threads.nameOf(thread), "short");
    }).join();
    EXPECT_EQ(framework::framework().threads.nameOf(thread), "");
}

TEST_F(FrameworkTest, FeaturesAreThoseOfTheSettings) {
    EXPECT_TRUE(manager().isFeatureSupported("httpserver"));
    EXPECT_FALSE(manager().isFeatureSupported("no such feature"));
    EXPECT_FALSE(isActive(5));
    EXPECT_FALSE(isActive(12));
    EXPECT_FALSE(isActive(-1));
    EXPECT_EQ(checkProfileMode(), 0);

    framework::framework().settings.setFeature("httpserver", false);
    framework::framework().settings.setFeature("5", true);
    framework::framework().settings.setProfileMode(true);
    EXPECT_FALSE(manager().isFeatureSupported("httpserver"));
    EXPECT_TRUE(isActive(5));
    EXPECT_FALSE(isActive(12));
    EXPECT_NE(checkProfileMode(), 0);
}

TEST_F(FrameworkTest, ShelfIdIsThatOfTheSettings) {
    std::string id = "left over";
    singleton<sysInfo>::instance().getShelfId(id);
    EXPECT_EQ(id, "");
    framework::framework().settings.setShelfId("shelf 7");
    singleton<sysInfo>::instance().getShelfId(id);
    EXPECT_EQ(id, "shelf 7");
}

TEST_F(FrameworkTest, TheCommandLineHasFactorySettings) {
    EXPECT_EQ(CliConfig::settings_t().maxSessions, 5u);
    EXPECT_FALSE(singleton<CliConfig>::instance().isClearConfigInProgress());
}

TEST_F(FrameworkTest, TheInterfacesEntityIsThereForOthersToDependOn) {
    expectQuiet(singleton<Interfaces>::instance(), "interfaces");
}

TEST_F(FrameworkTest, TheBridgeEntityNeedsNothingAndOwnsItsAccessLists) {
    expectQuiet(singleton<zubridge>::instance(), "bridge");
    EXPECT_EQ(&singleton<zubridge>::instance().aclContainer(),
              &singleton<zubridge>::instance().aclContainer());
}
