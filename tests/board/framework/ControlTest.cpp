#include "board/framework/Framework.h"
#include "board/framework/controlActions.h"
#include "doubles.h"
#include "framework/BLLManager.h"
#include "framework/CliConfig.h"
#include "framework/sysInfo.h"
#include "support/files.h"
#include "support/matchers.h"

#include <boost/bind/bind.hpp>

#include <stdexcept>
#include <utility>
#include <vector>

namespace control = framework::control;
using namespace boost::placeholders;
using test::Journal;

namespace {

using Message = BLLManager::ExternalMessageEvent;

class ControlTest : public testing::Test {
protected:
    auto onMessage() { return boost::bind(&ControlTest::message, this, _1, _2, _3, _4); }
    auto onAsked() { return boost::bind(&ControlTest::asked, this, _1, _2, _3, _4); }
    auto onShelfId() { return boost::bind(&ControlTest::shelfId, this, _1); }

    ControlTest() {
        framework::framework().settings.load(directory.path(), [](int, const std::string&) {});
        messages().subscribePost(onMessage());
        shelfIds().subscribePost(onShelfId());
    }
    ~ControlTest() override {
        messages().unsubscribePost(onMessage());
        messages().unsubscribePre(onAsked());
        shelfIds().unsubscribePost(onShelfId());
    }

    static Message& messages() { return singleton<BLLManager>::instance().externalMessage(); }
    static sysInfo::ShelfIdEvent& shelfIds() {
        return singleton<sysInfo>::instance().shelfIdChanged();
    }

    void message(const std::string& name, const std::string& value, std::ostringstream* reply,
                 const std::string& sender) {
        journal.add(name + "=" + value + " from " + sender);
        if (name == "throw") {
            throw std::runtime_error(value);
        }
        *reply << "got " << name;
    }

    bool asked(const std::string& name, const std::string&, std::ostringstream* reply,
               const std::string&) {
        if (name == "explained") {
            *reply << "not now";
        }
        return name == "agreed";
    }

    /// The event comes after the change.
    void shelfId(const std::string& id) {
        std::string current;
        singleton<sysInfo>::instance().getShelfId(current);
        journal.add("shelf id " + id + ", is " + current);
    }

    static std::string refusalOf(const std::function<std::string()>& action) {
        try {
            return "accepted: " + action();
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    TemporaryDirectory directory;
    Journal journal;
};

}  // namespace

TEST_F(ControlTest, AnExternalMessageReachesTheHandlersAndBringsTheirReply) {
    EXPECT_EQ(control::externalMessage("networkBle_severity", "7"), "got networkBle_severity");
    EXPECT_THAT(journal.lines(), ElementsAre("networkBle_severity=7 from control"));
}

TEST_F(ControlTest, AnExternalMessageMayBeRefusedByAPreHandler) {
    messages().subscribePre(onAsked());
    EXPECT_EQ(refusalOf([] { return control::externalMessage("refused", ""); }),
              "the message was refused");
    EXPECT_EQ(refusalOf([] { return control::externalMessage("explained", ""); }), "not now");
    EXPECT_EQ(control::externalMessage("agreed", ""), "got agreed");
    EXPECT_THAT(journal.lines(), ElementsAre("agreed= from control"));
}

TEST_F(ControlTest, AnExceptionOfAHandlerIsTheReason) {
    EXPECT_EQ(refusalOf([] { return control::externalMessage("throw", "a reason"); }), "a reason");
}

TEST_F(ControlTest, AChangedShelfIdentityIsTold) {
    EXPECT_EQ(control::setShelfId("one"), "");
    EXPECT_EQ(control::setShelfId("one"), "");
    EXPECT_EQ(control::setShelfId("two"), "");
    EXPECT_THAT(journal.lines(), ElementsAre("shelf id one, is one", "shelf id two, is two"));
}

TEST_F(ControlTest, ARefusedShelfIdentityIsNotTold) {
    EXPECT_EQ(refusalOf([] { return control::setShelfId("a\tb"); }),
              "the shelf identity is not valid: it contains a control character");
    EXPECT_THAT(journal.lines(), IsEmpty());
}

TEST_F(ControlTest, FeaturesAndProfileModeReachTheSettings) {
    control::setFeature("12", true);
    control::setProfileMode(true);
    EXPECT_TRUE(framework::framework().settings.hasFeature("12"));
    EXPECT_TRUE(framework::framework().settings.values().profileMode);
    EXPECT_EQ(refusalOf([] { return control::setFeature("x", true); }),
              "there is no feature \"x\", only 12, 5, httpserver");
}

TEST_F(ControlTest, AClearConfigurationIsStartedAndFinished) {
    const CliConfig& cli = singleton<CliConfig>::instance();
    control::setClearConfig(true);
    EXPECT_TRUE(cli.isClearConfigInProgress());
    control::setClearConfig(false);
    EXPECT_FALSE(cli.isClearConfigInProgress());
    EXPECT_THAT(directory.names(), IsEmpty());
}

TEST_F(ControlTest, TheCountersOfRulesComeFromWhoeverKeepsTheList) {
    const auto supplied = std::exchange(framework::framework().ruleCounters, nullptr);
    EXPECT_THROW(control::ruleCounters(), std::runtime_error);
    framework::framework().ruleCounters = [] {
        return std::vector<framework::RuleCounter>{{1, 2, true, 3, 4}};
    };
    const auto counters = control::ruleCounters();
    ASSERT_EQ(counters.size(), 1U);
    EXPECT_EQ(counters[0].bytes, 4U);
    framework::framework().ruleCounters = supplied;
}

TEST_F(ControlTest, DefaultsAreAppliedToTheEntitiesAndFailuresNamed) {
    // They stay registered, and outlive the registry's use.
    static Journal entityJournal;
    static test::ScriptedEntity good("good", {}, entityJournal);
    static test::ScriptedEntity bad("bad", {"good"}, entityJournal);
    static const bool isRegistered = [] {
        singleton<BLLManager>::instance().registerEntity(good);
        singleton<BLLManager>::instance().registerEntity(bad);
        return framework::framework().entities.startAll();
    }();
    ASSERT_TRUE(isRegistered);
    entityJournal.clear();
    EXPECT_EQ(control::applyDefaults(), "");
    good.onDefaults = [] { return 0; };
    bad.onDefaults = []() -> int { throw std::runtime_error("broken"); };
    EXPECT_EQ(refusalOf(control::applyDefaults),
              "factory settings could not be applied to \"good\": "
              "it returned 0; \"bad\": broken");
    good.onDefaults = bad.onDefaults = [] { return 1; };
    EXPECT_THAT(entityJournal.lines(),
                ElementsAre("defaults good", "defaults bad", "defaults good", "defaults bad"));
}
