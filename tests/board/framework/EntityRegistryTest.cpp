#include "board/framework/EntityRegistry.h"
#include "doubles.h"
#include "support/matchers.h"

#include <chrono>
#include <latch>
#include <memory>
#include <stdexcept>

using framework::EntityRegistry;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using test::Journal;
using test::ScriptedEntity;

namespace {

/// Long enough never to be waited for.
constexpr seconds ample{60};

class EntityRegistryTest : public testing::Test {
protected:
    ScriptedEntity& add(const std::string& name, std::list<std::string> dependencies = {}) {
        entities.push_back(
            std::make_unique<ScriptedEntity>(name, std::move(dependencies), journal));
        registry.add(*entities.back());
        return *entities.back();
    }

    std::vector<std::string> states() const {
        std::vector<std::string> result;
        for (const auto& [name, state] : registry.status()) {
            result.push_back(name + " " + toString(state));
        }
        return result;
    }

    Journal journal;
    Journal reports;
    std::vector<std::unique_ptr<ScriptedEntity>> entities;
    EntityRegistry registry{[this](const std::string& message) { reports.add(message); }};
};

}  // namespace

TEST_F(EntityRegistryTest, StartsInTheOrderOfDependenciesAndStopsInReverse) {
    add("network", {"bridge", "interfaces"});
    add("interfaces");
    add("bridge");
    EXPECT_THAT(states(),
                ElementsAre("network registered", "interfaces registered", "bridge registered"));

    EXPECT_TRUE(registry.startAll());
    EXPECT_THAT(states(), ElementsAre("network started", "interfaces started", "bridge started"));

    EXPECT_TRUE(registry.stopAll(ample));
    EXPECT_THAT(states(), ElementsAre("network stopped", "interfaces stopped", "bridge stopped"));
    EXPECT_THAT(journal.lines(), ElementsAre("start bridge", "start interfaces", "start network",
                                             "stop network", "stop interfaces", "stop bridge"));
    EXPECT_THAT(reports.lines(), IsEmpty());
}

TEST_F(EntityRegistryTest, RefusesANameThatIsTaken) {
    add("a");
    ScriptedEntity other("a", {}, journal);
    EXPECT_FALSE(registry.add(other));
    EXPECT_THAT(reports.lines(), ElementsAre("entity \"a\" is not registered: there is one of that "
                                             "name already"));
    EXPECT_THAT(states(), ElementsAre("a registered"));
}

TEST_F(EntityRegistryTest, RefusesAnEmptyName) {
    ScriptedEntity nameless("", {}, journal);
    EXPECT_FALSE(registry.add(nameless));
    EXPECT_THAT(reports.lines(), ElementsAre("an entity without a name is not registered"));
    EXPECT_THAT(states(), IsEmpty());
}

TEST_F(EntityRegistryTest, LeavesOutWhatNeedsAnUnknownEntity) {
    add("a", {"nobody"});
    add("b", {"a"});
    add("c");
    EXPECT_FALSE(registry.startAll());
    EXPECT_THAT(journal.lines(), ElementsAre("start c"));
    EXPECT_THAT(states(), ElementsAre("a failed", "b failed", "c started"));
    EXPECT_THAT(reports.lines(),
                ElementsAre("entity \"a\" needs \"nobody\", which is not registered",
                            "entity \"b\" is not started: it needs \"a\", which does not run"));
}

TEST_F(EntityRegistryTest, LeavesOutACircleAndWhatDependsOnIt) {
    add("user", {"b"});
    add("a", {"b"});
    add("b", {"a"});
    add("free");
    EXPECT_FALSE(registry.startAll());
    EXPECT_THAT(journal.lines(), ElementsAre("start free"));
    EXPECT_THAT(states(), ElementsAre("user failed", "a failed", "b failed", "free started"));
    EXPECT_THAT(reports.lines(),
                ElementsAre("entities depend on each other in a circle: b -> a -> b",
                            "entity \"user\" is not started: it needs \"b\", which does not run"));
}

TEST_F(EntityRegistryTest, ReportsAFailedStartAndLeavesOutDependents) {
    add("a").onStart = [] { return 0; };
    add("b", {"a"});
    add("c", {"b"});
    add("d");
    EXPECT_FALSE(registry.startAll());
    EXPECT_THAT(journal.lines(), ElementsAre("start a", "start d"));
    EXPECT_THAT(states(), ElementsAre("a failed", "b failed", "c failed", "d started"));
    EXPECT_THAT(reports.lines(),
                ElementsAre("entity \"a\" could not start: it returned 0",
                            "entity \"b\" is not started: it needs \"a\", which does not run",
                            "entity \"c\" is not started: it needs \"b\", which does not run"));
}

TEST_F(EntityRegistryTest, TakesAnExceptionForAFailure) {
    add("a").onStart = []() -> int { throw std::runtime_error("no device"); };
    add("b").onDependencies = [] { throw std::runtime_error("no list"); };
    add("c").onStart = []() -> int { throw 1; };
    EXPECT_FALSE(registry.startAll());
    EXPECT_THAT(reports.lines(),
                ElementsAre("entity \"b\" does not tell its dependencies: no list",
                            "entity \"a\" could not start: no device",
                            "entity \"c\" could not start: it threw an unknown exception"));
    EXPECT_THAT(states(), ElementsAre("a failed", "b failed", "c failed"));
}

TEST_F(EntityRegistryTest, StartsLaterWhatIsRegisteredLater) {
    add("a");
    EXPECT_TRUE(registry.startAll());
    add("b", {"a"});
    EXPECT_THAT(states(), ElementsAre("a started", "b registered"));
    EXPECT_TRUE(registry.startAll());
    EXPECT_THAT(journal.lines(), ElementsAre("start a", "start b"));
}

TEST_F(EntityRegistryTest, StopsOnlyWhatRuns) {
    add("a").onStart = [] { return 0; };
    add("b");
    registry.startAll();
    EXPECT_TRUE(registry.stopAll(ample));
    EXPECT_THAT(journal.lines(), ElementsAre("start a", "start b", "stop b"));
    EXPECT_THAT(states(), ElementsAre("a failed", "b stopped"));
}

TEST_F(EntityRegistryTest, GoesOnPastAStopThatNeverReturns) {
    std::latch release(1);
    std::latch left(1);
    add("first");
    add("stuck", {"first"}).onStop = [&] {
        release.wait();
        left.count_down();
        return 1;
    };
    add("last", {"stuck"});
    registry.startAll();

    EXPECT_FALSE(registry.stopAll(milliseconds(200)));
    EXPECT_THAT(journal.lines(), ElementsAre("start first", "start stuck", "start last",
                                             "stop last", "stop stuck", "stop first"));
    EXPECT_THAT(states(), ElementsAre("first stopped", "stuck failed", "last stopped"));
    EXPECT_THAT(reports.lines(),
                ElementsAre(MatchesRegex("entity \"stuck\" has not stopped within [0-9]+ ms and is "
                                         "left to itself")));
    release.count_down();
    left.wait();
}

TEST_F(EntityRegistryTest, BoundsTheWholeStop) {
    constexpr int count = 20;
    std::latch release(1);
    std::latch left(count);
    for (int number = 0; number < count; ++number) {
        add("stuck" + std::to_string(number)).onStop = [&] {
            release.wait();
            left.count_down();
            return 1;
        };
    }
    registry.startAll();
    const auto begin = steady_clock::now();
    EXPECT_FALSE(registry.stopAll(milliseconds(400)));
    EXPECT_LT(steady_clock::now() - begin, seconds(10));
    EXPECT_EQ(reports.lines().size(), count);
    release.count_down();
    left.wait();
}

TEST_F(EntityRegistryTest, ReportsAStopThatFails) {
    add("a").onStop = [] { return 0; };
    add("b").onStop = []() -> int { throw std::runtime_error("still in use"); };
    registry.startAll();
    EXPECT_FALSE(registry.stopAll(ample));
    EXPECT_THAT(states(), ElementsAre("a failed", "b failed"));
    EXPECT_THAT(reports.lines(),
                ElementsAre("entity \"b\" did not stop as it should: still in use",
                            "entity \"a\" did not stop as it should: it returned 0"));
}

TEST_F(EntityRegistryTest, AppliesDefaultsInTheOrderOfStart) {
    add("b", {"a"});
    add("a");
    registry.startAll();
    EXPECT_THAT(registry.applyDefaults(), IsEmpty());
    EXPECT_THAT(journal.lines(), ElementsAre("start a", "start b", "defaults a", "defaults b"));
}

TEST_F(EntityRegistryTest, NamesEveryFailureToApplyDefaults) {
    add("a").onDefaults = [] { return 0; };
    add("b").onDefaults = []() -> int { throw std::runtime_error("disk full"); };
    add("c");
    add("d").onStart = [] { return 0; };
    add("e").onDefaults = [] { return -1; };
    registry.startAll();
    EXPECT_THAT(registry.applyDefaults(),
                ElementsAre("\"a\": it returned 0", "\"b\": disk full", "\"e\": it returned -1",
                            "\"d\": it does not run (failed)"));
    EXPECT_THAT(journal.lines(),
                ElementsAre("start a", "start b", "start c", "start d", "start e", "defaults a",
                            "defaults b", "defaults c", "defaults e"));
}

TEST_F(EntityRegistryTest, AppliesNoDefaultsWhileItStops) {
    add("a");
    std::vector<std::string> failures;
    add("b").onDefaults = [&] {
        registry.stopAll(ample);
        return 1;
    };
    add("c");
    registry.startAll();
    EXPECT_THAT(registry.applyDefaults(), ElementsAre("\"c\": it is being stopped"));
}
