#include "board/framework/startOrder.h"
#include "support/matchers.h"

using framework::findStartOrder;

TEST(StartOrder, IsTheOrderOfRegistrationWithoutDependencies) {
    const auto result = findStartOrder({{"a", {}}, {"b", {}}, {"c", {}}});
    EXPECT_THAT(result.order, ElementsAre(0, 1, 2));
    EXPECT_THAT(result.impossible, IsEmpty());
    EXPECT_THAT(result.problems, IsEmpty());
}

TEST(StartOrder, OfNothingIsEmpty) { EXPECT_THAT(findStartOrder({}).order, IsEmpty()); }

TEST(StartOrder, PutsDependenciesFirst) {
    const auto result = findStartOrder(
        {{"top", {"left", "right"}}, {"left", {"base"}}, {"right", {"base"}}, {"base", {}}});
    EXPECT_THAT(result.order, ElementsAre(3, 1, 2, 0));
    EXPECT_THAT(result.problems, IsEmpty());
}

TEST(StartOrder, MayNameADependencyTwice) {
    const auto result = findStartOrder({{"a", {"b", "b"}}, {"b", {}}});
    EXPECT_THAT(result.order, ElementsAre(1, 0));
    EXPECT_THAT(result.problems, IsEmpty());
}

TEST(StartOrder, NamesADependencyThatDoesNotExist) {
    const auto result = findStartOrder({{"a", {"x", "y"}}, {"b", {}}});
    EXPECT_THAT(result.order, ElementsAre(0, 1));
    EXPECT_THAT(result.impossible, ElementsAre(0));
    EXPECT_THAT(result.problems, ElementsAre("entity \"a\" needs \"x\", which is not registered",
                                             "entity \"a\" needs \"y\", which is not registered"));
}

TEST(StartOrder, NamesACircleInItsOrder) {
    const auto result = findStartOrder(
        {{"outside", {"b"}}, {"a", {"b"}}, {"b", {"c"}}, {"c", {"a"}}, {"free", {}}});
    EXPECT_THAT(result.impossible, ElementsAre(1, 2, 3));
    EXPECT_THAT(result.problems, ElementsAre("entities depend on each other in a circle: "
                                             "b -> c -> a -> b"));
    EXPECT_THAT(result.order, ElementsAre(1, 3, 2, 0, 4));
}

TEST(StartOrder, TakesAnEntityThatNeedsItselfForACircle) {
    const auto result = findStartOrder({{"a", {"a"}}});
    EXPECT_THAT(result.impossible, ElementsAre(0));
    EXPECT_THAT(result.problems, ElementsAre("entities depend on each other in a circle: a -> a"));
}

TEST(StartOrder, ReportsEveryCircleThatAnEntityClosesItself) {
    const auto result = findStartOrder({{"a", {"b", "c"}}, {"b", {"a"}}, {"c", {"a"}}});
    EXPECT_THAT(result.impossible, ElementsAre(0, 1, 2));
    EXPECT_THAT(result.problems,
                ElementsAre("entities depend on each other in a circle: a -> b -> a",
                            "entities depend on each other in a circle: a -> c -> a"));
}
