// What is stored of the remote-access list, and when.

#include "BridgeTest.h"
#include "RemoteAccess.h"
#include "board/bridge/rulesDocument.h"
#include "board/support/StateFile.h"
#include "platform/zubridge.h"

#include <filesystem>

using bridge::SavedRule;
using bridge::SavedRules;
using test::from;
using test::ip;

namespace fs = std::filesystem;

namespace {

constexpr unsigned int hostMask = 0xffffffff;
constexpr unsigned int mask24 = 0xffffff00;

constexpr SavedRule network{ip(192, 0, 2, 0), 0xff, true};
constexpr SavedRule host{ip(10, 0, 0, 1), 0, false};
constexpr SavedRule anybody{0, 0xffffffff, false};

class StorageTest : public test::BridgeTest {
protected:
    StorageTest() { product.start(); }

    std::vector<SavedRule> savedRules() const { return bridge::rulesFormat.parse(saved()).inForce; }

    int addNetwork(unsigned int place = 0) {
        return product.add(ip(192, 0, 2, 9), mask24, true, place);
    }
    int addHost(unsigned int place = 0) {
        return product.add(ip(10, 0, 0, 1), hostMask, false, place);
    }

    /// Nothing can be stored: the name of the temporary file is taken by a directory.
    void breakStorage() { fs::create_directories(savedFile() + ".new/taken"); }
    void repairStorage() { fs::remove_all(savedFile() + ".new"); }

    test::RemoteAccess product{acls()};
};

}  // namespace

TEST_F(StorageTest, RulesAreStoredInOrderWithoutTheCatchAll) {
    EXPECT_THAT(savedRules(), IsEmpty());
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network));
    EXPECT_EQ(addHost(1), 0);
    EXPECT_THAT(savedRules(), ElementsAre(host, network));
    EXPECT_EQ(product.remove(1), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network));
    EXPECT_EQ(product.remove(1), 0);
    EXPECT_THAT(savedRules(), IsEmpty());
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(StorageTest, AUsersRuleForEverybodyIsNotTakenForTheCatchAll) {
    EXPECT_EQ(addHost(), 0);
    EXPECT_EQ(product.add(0, 0, false), 0);
    EXPECT_THAT(savedRules(), ElementsAre(host, anybody));
}

TEST_F(StorageTest, ARuleIsNotStoredBeforeItHasItsCondition) {
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, true, id, 1), 0);
    EXPECT_THAT(savedRules(), IsEmpty());
    EXPECT_EQ(acls().addCondition(list, id, from(ip(192, 0, 2, 0), 0xff)), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network));
}

TEST_F(StorageTest, AnOrderlyEndLeavesTheRulesStored) {
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_EQ(addHost(), 0);
    product.stop();
    EXPECT_THAT(savedRules(), ElementsAre(network, host));
}

TEST_F(StorageTest, AListMadeAgainWithoutAReplayAddsToWhatIsStored) {
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_EQ(product.add(0, 0, false), 0);
    product.stop();
    test::RemoteAccess again(acls());
    again.start();
    EXPECT_EQ(again.add(ip(10, 0, 0, 1), hostMask, false), 0);
    const SavedRules rules = bridge::rulesFormat.parse(saved());
    EXPECT_EQ(rules, (SavedRules{{host}, {{1, network}, {2, anybody}}}));
    EXPECT_THAT(rules.all(), ElementsAre(network, anybody, host));
}

TEST_F(StorageTest, OnlyTheFirstListIsStored) {
    EXPECT_EQ(acls().createACL("A", ACLContainer_t::aclRemoteAccess), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule("A", true, id, 0), 0);
    EXPECT_EQ(acls().createRule("A", true, id, 0), 0);
    EXPECT_EQ(acls().addCondition("A", id, from(1, 0)), 0);
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network));
}

TEST_F(StorageTest, ARuleThatCannotBeStoredIsRefusedBeforeItIsMade) {
    EXPECT_EQ(addNetwork(), 0);
    breakStorage();
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, true, id, 1), bridge::storageFailed);
    EXPECT_EQ(id, 0U);
    EXPECT_THAT(newMessages(),
                ElementsAre(HasSubstr("createRule of access list \"RA_mng0\": the rules cannot be "
                                      "stored: cannot create " +
                                      savedFile() + ".new: Is a directory")));
    EXPECT_EQ(product.rules().size(), 1U);
    repairStorage();
    EXPECT_EQ(addHost(), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network, host));
}

TEST_F(StorageTest, AChangeThatCannotBeStoredIsNotMade) {
    EXPECT_EQ(addNetwork(), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, true, id, 1), 0);
    const std::string before = saved();
    breakStorage();
    EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), bridge::storageFailed);
    ACLContainer_t::aclRule_t rule{};
    EXPECT_EQ(acls().getACLRule(list, id, rule), 0);
    EXPECT_THAT(rule.conditions, IsEmpty());
    EXPECT_EQ(product.remove(1), -1);
    EXPECT_THAT(product.rules(), ElementsAre("permit 192.0.2.0 0.0.0.255"));
    EXPECT_EQ(saved(), before);
    repairStorage();
    EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), 0);
    EXPECT_THAT(savedRules(), ElementsAre(SavedRule{1, 0, true}, network));
}

TEST_F(StorageTest, ADamagedFileIsSetAside) {
    EXPECT_EQ(addNetwork(), 0);
    const std::string damaged = saved().substr(0, 40);
    writeFile(savedFile(), damaged);
    restart();
    const auto messages = newMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages[0], HasSubstr(savedFile() + " is damaged and was renamed to "
                                                     "remote-access.json.damaged-"));
    EXPECT_THAT(messages[0], HasSubstr("; the remote-access list starts without rules: "));
    ASSERT_EQ(state.names().size(), 1U);
    EXPECT_EQ(readFile(state.path() / state.names()[0]), damaged);
}

TEST_F(StorageTest, AFileOfALaterReleaseIsRefusedAndLeftAsItIs) {
    const std::string later = R"({"version": 2, "rules": "other"})";
    writeFile(savedFile(), later);
    try {
        bridge::configure(configuration);
        FAIL() << "accepted";
    } catch (const support::NewerDocument& newer) {
        EXPECT_EQ(
            newer.what(),
            savedFile() +
                " cannot be used: it has version 2, this release knows version 1; install "
                "the newer release again, or move the file away to start from factory values");
    }
    EXPECT_EQ(saved(), later);
    EXPECT_THAT(state.names(), ElementsAre("remote-access.json"));
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(StorageTest, AFileThatCannotBeReadIsAnErrorOfTheHost) {
    fs::remove(savedFile());
    fs::create_directory(savedFile());
    EXPECT_THROW(bridge::configure(configuration), std::exception);
}

TEST_F(StorageTest, WithoutADirectoryNothingIsStored) {
    configuration.stateDirectory.clear();
    fs::remove(savedFile());
    restart();
    test::RemoteAccess inMemory(acls());
    inMemory.start();
    EXPECT_EQ(inMemory.add(1, hostMask, true), 0);
    EXPECT_THAT(state.names(), IsEmpty());
}

TEST_F(StorageTest, FactorySettingsLeaveTheListsOfOthers) {
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_EQ(singleton<zubridge>::instance().applyDefaultSettings(), 1);
    EXPECT_THAT(savedRules(), ElementsAre(network));
    EXPECT_EQ(addHost(), 0);
    EXPECT_THAT(savedRules(), ElementsAre(network, host));
}

TEST_F(StorageTest, AClearedConfigurationForgetsListsAndStoredRules) {
    EXPECT_EQ(addNetwork(), 0);
    EXPECT_EQ(clearConfiguration(), 1);
    EXPECT_THAT(savedRules(), IsEmpty());
    EXPECT_EQ(acls().deleteACL(list), bridge::unknownList);
    newMessages();

    test::RemoteAccess again(acls());
    again.start();
    EXPECT_EQ(again.add(ip(10, 0, 0, 1), hostMask, false), 0);
    EXPECT_THAT(bridge::rulesFormat.parse(saved()), (SavedRules{{host}, {}}));
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(StorageTest, AConfigurationThatCannotBeClearedFails) {
    EXPECT_EQ(addNetwork(), 0);
    breakStorage();
    EXPECT_EQ(clearConfiguration(), 0);
    EXPECT_THAT(newMessages(), ElementsAre(HasSubstr("the access lists cannot be removed: ")));
    EXPECT_THAT(product.rules(), ElementsAre("permit 192.0.2.0 0.0.0.255"));
}
