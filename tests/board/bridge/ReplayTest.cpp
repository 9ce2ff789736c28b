// Putting stored rules into force after a restart.

#include "BridgeTest.h"
#include "RemoteAccess.h"
#include "board/bridge/rulesDocument.h"

#include <vector>

using bridge::SavedRule;
using bridge::SavedRules;
using test::ip;

namespace {

constexpr SavedRule a{ip(192, 0, 2, 0), 0xff, true};
constexpr SavedRule b{ip(10, 0, 0, 1), 0, false};
constexpr SavedRule c{ip(10, 0, 0, 0), 0xffffff, true};

class ReplayTest : public test::BridgeTest {
protected:
    /// A process starts that finds these rules, and its product makes the empty list.
    void startWith(const SavedRules& rules) {
        product.reset();
        writeFile(savedFile(), bridge::rulesFormat.format(rules));
        restartProduct();
    }
    void restartProduct() {
        restart();
        product.emplace(acls());
        product->start();
    }

    int add(unsigned int address, unsigned int netmask, int permit, unsigned int place) {
        return product->add(address, netmask, permit != 0, place);
    }
    bridge::AddRemoteAccessRule adder() {
        return [this](auto... arguments) { return add(arguments...); };
    }

    SavedRules stored() const { return bridge::rulesFormat.parse(saved()); }

    std::optional<test::RemoteAccess> product;
};

}  // namespace

TEST_F(ReplayTest, StoredRulesComeBackInOrder) {
    startWith({{a, b, c}, {}});
    bridge::replayRemoteAccessRules(adder());
    EXPECT_THAT(product->rules(), ElementsAre("permit 192.0.2.0 0.0.0.255", "deny 10.0.0.1 0.0.0.0",
                                              "permit 10.0.0.0 0.255.255.255"));
    EXPECT_THAT(stored(), (SavedRules{{a, b, c}, {}}));
    EXPECT_THAT(newMessages(), IsEmpty());

    EXPECT_EQ(product->remove(2), 0);
    EXPECT_THAT(stored(), (SavedRules{{a, c}, {}}));
}

TEST_F(ReplayTest, MasksAreHandedOverAsMasksAndPlacesAsTheEnd) {
    startWith({{a, b}, {}});
    std::vector<std::vector<unsigned int>> calls;
    bridge::replayRemoteAccessRules(
        [&](unsigned int address, unsigned int netmask, int permit, unsigned int place) {
            calls.push_back({address, netmask, static_cast<unsigned int>(permit), place});
            return add(address, netmask, permit, place);
        });
    EXPECT_THAT(calls, ElementsAre(ElementsAre(0xc0000200U, 0xffffff00U, 1U, 0U),
                                   ElementsAre(0x0a000001U, 0xffffffffU, 0U, 0U)));
}

TEST_F(ReplayTest, TheFileIsUntouchedUntilTheReplayIsComplete) {
    startWith({{a, b, c}, {}});
    const std::string before = saved();
    bridge::replayRemoteAccessRules([&](auto... arguments) {
        const int result = add(arguments...);
        EXPECT_EQ(saved(), before);
        return result;
    });
    EXPECT_EQ(saved(), before);
}

TEST_F(ReplayTest, AProcessThatEndsHalfWayHasLostNothing) {
    startWith({{a, b, c}, {}});
    bridge::replayRemoteAccessRules([&, isFirst = true](auto... arguments) mutable {
        if (!std::exchange(isFirst, false)) {
            return -1;
        }
        // What the next process finds.
        const int result = add(arguments...);
        EXPECT_THAT(stored(), (SavedRules{{a, b, c}, {}}));
        return result;
    });
}

TEST_F(ReplayTest, ARuleThatIsRefusedStaysStoredInItsPlace) {
    startWith({{a, b, c}, {}});
    bridge::replayRemoteAccessRules(
        [&](unsigned int address, unsigned int netmask, int permit, unsigned int place) {
            return address == b.address ? -1 : add(address, netmask, permit, place);
        });
    EXPECT_THAT(newMessages(),
                ElementsAre("stored remote-access rule 2 (deny 10.0.0.1, wildcard 0.0.0.0) could "
                            "not be put into force (result -1); it stays in " +
                            savedFile()));
    EXPECT_EQ(product->rules().size(), 2U);
    EXPECT_THAT(stored().all(), ElementsAre(a, b, c));

    EXPECT_EQ(product->remove(1), 0);
    EXPECT_THAT(stored(), (SavedRules{{c}, {{2, b}}}));
    EXPECT_EQ(product->add(a.address, ~a.wildcard, true, 1), 0);

    restartProduct();
    bridge::replayRemoteAccessRules(adder());
    EXPECT_EQ(product->rules().size(), 3U);
    EXPECT_THAT(stored().all(), ElementsAre(a, b, c));
    EXPECT_THAT(newMessages(), IsEmpty());
    EXPECT_EQ(product->remove(2), 0);
    EXPECT_THAT(stored(), (SavedRules{{a, c}, {}}));
}

TEST_F(ReplayTest, SeveralRulesThatAreRefusedStayStoredEachInItsPlace) {
    startWith({{a, b, c}, {}});
    bridge::replayRemoteAccessRules(
        [&](unsigned int address, unsigned int netmask, int permit, unsigned int place) {
            return address == b.address ? add(address, netmask, permit, place) : -1;
        });
    EXPECT_THAT(newMessages(), ElementsAre(HasSubstr("rule 1 (permit 192.0.2.0, "),
                                           HasSubstr("rule 3 (permit 10.0.0.0, ")));
    constexpr SavedRule d{ip(10, 0, 0, 9), 0, true};
    EXPECT_EQ(product->add(d.address, ~d.wildcard, true), 0);
    EXPECT_THAT(stored(), (SavedRules{{b, d}, {{1, a}, {3, c}}}));
    EXPECT_THAT(stored().all(), ElementsAre(a, b, c, d));
}

TEST_F(ReplayTest, AConfigurationThatIsClearedBeforeTheReplayLeavesNothingToReplay) {
    startWith({{a, b}, {}});
    EXPECT_EQ(clearConfiguration(), 1);
    EXPECT_THAT(stored(), SavedRules());
    product.emplace(acls());
    product->start();
    EXPECT_EQ(product->add(c.address, ~c.wildcard, true), 0);
    EXPECT_THAT(stored(), (SavedRules{{c}, {}}));
    bridge::replayRemoteAccessRules([](auto...) {
        ADD_FAILURE() << "called";
        return 0;
    });
}

TEST_F(ReplayTest, ARuleThatIsSaidToBeAddedButIsNotStaysStored) {
    startWith({{a}, {}});
    bridge::replayRemoteAccessRules([](auto...) { return 0; });
    EXPECT_THAT(newMessages(), ElementsAre(HasSubstr("could not be put into force (result 0)")));
    EXPECT_THAT(stored().all(), ElementsAre(a));
}

TEST_F(ReplayTest, ARuleThatIsInTheListAlthoughRefusedIsNotStoredTwice) {
    startWith({{a}, {}});
    bridge::replayRemoteAccessRules([&](auto... arguments) {
        add(arguments...);
        return -1;
    });
    EXPECT_THAT(newMessages(), ElementsAre(HasSubstr("is in the list, which could not be put into "
                                                     "force (result -1)")));
    EXPECT_THAT(stored(), (SavedRules{{a}, {}}));
    EXPECT_EQ(product->add(b.address, ~b.wildcard, false), 0);
    EXPECT_THAT(stored(), (SavedRules{{a, b}, {}}));
}

TEST_F(ReplayTest, AProductWithoutTheOperationLosesNothing) {
    startWith({{a, b}, {}});
    bridge::replayRemoteAccessRules({});
    EXPECT_THAT(newMessages(),
                ElementsAre("the library has no operation to add remote-access rules: 2 stored "
                            "rules are not in force; they stay in " +
                            savedFile()));
    EXPECT_EQ(product->add(c.address, ~c.wildcard, true), 0);
    EXPECT_THAT(stored(), (SavedRules{{c}, {{1, a}, {2, b}}}));
}

TEST_F(ReplayTest, AListThatWasNeverMadeLosesNothing) {
    startWith({{a, b}, {}});
    product->stop();
    bridge::replayRemoteAccessRules([](auto...) { return -1; });
    EXPECT_THAT(stored().all(), ElementsAre(a, b));
    product->start();
    EXPECT_EQ(product->add(c.address, ~c.wildcard, true), 0);
    EXPECT_THAT(stored(), (SavedRules{{c}, {{1, a}, {2, b}}}));
}

TEST_F(ReplayTest, WithNothingStoredNothingIsReplayed) {
    restartProduct();
    bridge::replayRemoteAccessRules([](auto...) {
        ADD_FAILURE() << "called";
        return 0;
    });
    bridge::replayRemoteAccessRules({});
    EXPECT_THAT(newMessages(), IsEmpty());
    EXPECT_EQ(product->add(a.address, ~a.wildcard, true), 0);
    EXPECT_THAT(stored(), (SavedRules{{a}, {}}));
}
