#include "board/framework/Settings.h"
#include "board/support/StateFile.h"
#include "doubles.h"
#include "support/files.h"
#include "support/matchers.h"

#include <sys/resource.h>
#include <syslog.h>

#include <csignal>
#include <stdexcept>
#include <system_error>

using framework::Settings;
using framework::SettingsValues;
using test::Journal;

namespace {

class SettingsTest : public testing::Test {
protected:
    SettingsTest() { settings.load(directory.path(), report); }

    /// What a process that starts now would find.
    SettingsValues afterRestart() {
        Settings next;
        next.load(directory.path(), report);
        return next.values();
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "framework.json";
    Journal reports;
    const support::Log report = [this](int level, const std::string& message) {
        EXPECT_EQ(level, LOG_ERR);
        reports.add(message);
    };
    Settings settings;
};

}  // namespace

TEST_F(SettingsTest, StartWithTheFactoryValues) {
    const SettingsValues values = settings.values();
    EXPECT_EQ(values.shelfId, "");
    EXPECT_FALSE(values.profileMode);
    EXPECT_TRUE(settings.hasFeature("httpserver"));
    EXPECT_FALSE(settings.hasFeature("5"));
    EXPECT_FALSE(settings.hasFeature("12"));
    EXPECT_FALSE(settings.hasFeature("teleport"));
    EXPECT_THAT(directory.names(), IsEmpty());
    EXPECT_THAT(reports.lines(), IsEmpty());
}

TEST_F(SettingsTest, AreKeptAcrossRestarts) {
    EXPECT_TRUE(settings.setShelfId("Zürich \"1\" \\ north"));
    EXPECT_TRUE(settings.setProfileMode(true));
    EXPECT_TRUE(settings.setFeature("12", true));
    EXPECT_TRUE(settings.setFeature("httpserver", false));
    const SettingsValues expected{
        "Zürich \"1\" \\ north", true, {{"httpserver", false}, {"5", false}, {"12", true}}};
    EXPECT_EQ(settings.values(), expected);
    EXPECT_EQ(afterRestart(), expected);
    EXPECT_THAT(directory.names(), ElementsAre("framework.json"));
    EXPECT_THAT(reports.lines(), IsEmpty());
}

TEST_F(SettingsTest, TellWhetherTheValueWasAnotherOne) {
    EXPECT_TRUE(settings.setShelfId("a"));
    EXPECT_FALSE(settings.setShelfId("a"));
    EXPECT_TRUE(settings.setShelfId(""));
    EXPECT_FALSE(settings.setProfileMode(false));
    EXPECT_FALSE(settings.setFeature("httpserver", true));
}

TEST_F(SettingsTest, AnUnchangedValueIsNotWritten) {
    settings.setShelfId("a");
    std::filesystem::remove(file);
    EXPECT_FALSE(settings.setShelfId("a"));
    EXPECT_THAT(directory.names(), IsEmpty());
}

TEST_F(SettingsTest, AreInMemoryOnlyUntilLoaded) {
    Settings unloaded;
    EXPECT_TRUE(unloaded.setShelfId("a"));
    EXPECT_EQ(unloaded.values().shelfId, "a");
}

TEST_F(SettingsTest, RefuseAShelfIdentityThatIsNotOne) {
    const auto refusal = [this](const std::string& id) -> std::string {
        try {
            settings.setShelfId(id);
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
        return "accepted";
    };
    EXPECT_EQ(refusal(std::string(255, 'x')), "accepted");
    EXPECT_EQ(refusal(std::string(256, 'x')),
              "the shelf identity is not valid: it is longer than 255 characters");
    EXPECT_EQ(refusal("a\nb"), "the shelf identity is not valid: it contains a control character");
    EXPECT_EQ(refusal("a\x1f"), "the shelf identity is not valid: it contains a control character");
    EXPECT_EQ(refusal("\x7f"), "the shelf identity is not valid: it contains a control character");
    EXPECT_EQ(refusal("\xff"), "the shelf identity is not valid: it is not UTF-8");
    EXPECT_EQ(refusal(" ~"), "accepted");
    EXPECT_EQ(afterRestart().shelfId, " ~");
}

TEST_F(SettingsTest, RefuseAFeatureThatDoesNotExistAndNameTheOthers) {
    try {
        settings.setFeature("012", true);
        FAIL() << "accepted";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "there is no feature \"012\", only 12, 5, httpserver");
    }
}

TEST_F(SettingsTest, KeepMembersOfTheFileThatTheyDoNotKnow) {
    writeFile(file, R"({"later": [1, 2], "features": {"99": true, "5": true}})");
    Settings next;
    next.load(directory.path(), report);
    EXPECT_TRUE(next.hasFeature("5"));
    EXPECT_TRUE(next.hasFeature("httpserver"));
    EXPECT_FALSE(next.hasFeature("99"));
    next.setShelfId("a");
    next.setShelfId("b");
    EXPECT_THAT(readFile(file), AllOf(HasSubstr("\"later\""), HasSubstr("\"99\": true"),
                                      HasSubstr("\"shelfId\": \"b\"")));
    EXPECT_THAT(reports.lines(), IsEmpty());
}

class DamagedSettingsTest : public SettingsTest, public testing::WithParamInterface<const char*> {};

TEST_P(DamagedSettingsTest, AreSetAsideWithAMessage) {
    writeFile(file, GetParam());
    EXPECT_EQ(afterRestart(), SettingsValues{});
    EXPECT_THAT(directory.names(), ElementsAre(MatchesRegex("framework\\.json\\.damaged-[0-9]+T"
                                                            "[0-9]+Z")));
    EXPECT_EQ(readFile(directory.path() / directory.names().at(0)), GetParam());
    EXPECT_THAT(reports.lines(),
                ElementsAre(AllOf(StartsWith(file.string() + " is damaged and was renamed to " +
                                             directory.names().at(0)),
                                  HasSubstr("; factory settings are used: "))));
    EXPECT_TRUE(settings.setShelfId("works again"));
    EXPECT_EQ(afterRestart().shelfId, "works again");
}

INSTANTIATE_TEST_SUITE_P(
    Damage, DamagedSettingsTest,
    testing::Values(R"({"version": -1})", R"({"version": "1"})", "", "{", "[]", "\x01\x02", "null",
                    R"({"shelfId": 7})", R"({"shelfId": "a\nb"})", R"({"profileMode": "yes"})",
                    R"({"ontManagementVlan": 4095})", R"({"ontManagementVlan": "7"})",
                    R"({"ontManagementVlan": 0})", R"({"ontManagementVlan": 1.5})",
                    R"({"features": []})", R"({"features": {"12": 1}})",
                    R"({"shelfId": "a"} trailing)"));

TEST_F(SettingsTest, WhatIsWrongWithAFileIsSaid) {
    const auto objectionTo = [this](const char* document) {
        writeFile(file, document);
        afterRestart();
        const std::string line = reports.lines().back();
        return line.substr(line.find("used: ") + 6);
    };
    EXPECT_EQ(objectionTo("[]"), "the document is not a JSON object");
    EXPECT_EQ(objectionTo(R"({"features": []})"), "features is not a JSON object");
    EXPECT_EQ(objectionTo(R"({"ontManagementVlan": 4095})"),
              "the VLAN of the ONTs is not a number from 1 to 4094");
    EXPECT_EQ(objectionTo(R"({"shelfId": "\u0007"})"),
              "the shelf identity is not valid: it contains a control character");
}

TEST_F(SettingsTest, AFileOfALaterReleaseIsRefusedAndLeftAsItIs) {
    const std::string later = R"({"version": 2, "shelfId": "a"})";
    writeFile(file, later);
    try {
        afterRestart();
        FAIL() << "accepted";
    } catch (const support::NewerDocument& newer) {
        EXPECT_EQ(
            newer.what(),
            file.string() +
                " cannot be used: it has version 2, this release knows version 1; install "
                "the newer release again, or move the file away to start from factory values");
    }
    EXPECT_EQ(readFile(file), later);
    EXPECT_THAT(directory.names(), ElementsAre("framework.json"));
    EXPECT_THAT(reports.lines(), IsEmpty());
}

TEST_F(SettingsTest, AFileThatTellsItsVersionGoesOnDoingSo) {
    writeFile(file, R"({"version": 1})");
    settings.load(directory.path(), report);
    settings.setShelfId("a");
    EXPECT_THAT(readFile(file), HasSubstr("\"version\": 1"));
    EXPECT_EQ(afterRestart().shelfId, "a");
}

TEST_F(SettingsTest, SettingAsideOverwritesNothing) {
    writeFile(file, "{");
    afterRestart();
    writeFile(file, "[");
    afterRestart();
    EXPECT_EQ(directory.names().size(), 2u);
}

TEST_F(SettingsTest, AFileThatCannotBeReadIsAnError) {
    std::filesystem::create_directory(file);
    EXPECT_THROW(afterRestart(), std::system_error);
}

TEST_F(SettingsTest, KeepTheOldValueWhenTheNewOneCannotBeStored) {
    settings.setShelfId("old");
    std::filesystem::create_directory(directory.path() / "framework.json.new");
    EXPECT_THROW(settings.setShelfId("new"), std::system_error);
    EXPECT_EQ(settings.values().shelfId, "old");
    EXPECT_EQ(afterRestart().shelfId, "old");
}

TEST_F(SettingsTest, KeepTheFileWhenTheDiskIsFull) {
    settings.setShelfId("old");
    // A limit on the size of files stands for the full disk.
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 10;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_THROW(settings.setShelfId("new"), std::system_error);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(afterRestart().shelfId, "old");
    EXPECT_THAT(directory.names(), ElementsAre("framework.json"));
}

TEST_F(SettingsTest, AnUnfinishedTemporaryFileDoesNotMatter) {
    settings.setShelfId("old");
    writeFile(directory.path() / "framework.json.new", "{\"shelfId\": \"unfin");
    EXPECT_EQ(afterRestart().shelfId, "old");
    settings.setShelfId("new");
    EXPECT_EQ(afterRestart().shelfId, "new");
    EXPECT_THAT(directory.names(), ElementsAre("framework.json"));
}
