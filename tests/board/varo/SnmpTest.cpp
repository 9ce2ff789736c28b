#include "tests/board/varo/VaroTest.h"

namespace {

using namespace varotest;

class Communities : public VaroTest {
protected:
    /// The entries that are not empty, as "place name access".
    static std::vector<std::string> entries() {
        std::vector<std::string> all;
        const auto record = readBy(varoGetSnmpCommunity);
        for (int place = 0; place < 6; ++place) {
            const auto& community = record.communities[place];
            if (community.name[0] != '\0') {
                all.push_back(std::to_string(place) + " " + community.name + " " +
                              community.access);
            } else {
                EXPECT_STREQ(community.access, "");
            }
        }
        return all;
    }
};

TEST_F(Communities, AreNoneFromTheFactory) {
    EXPECT_THAT(entries(), IsEmpty());
    auto record = readBy(varoDefSnmpCommunity);
    EXPECT_STREQ(record.communities[5].name, "");
    EXPECT_EQ(varoUpdateSnmpCommunity(&record), varo::success);
}

TEST_F(Communities, AreKeptWithTheirAccessOverARestart) {
    EXPECT_EQ(varoAddSnmpCommunity("monitor", 1), varo::success);
    EXPECT_EQ(varoAddSnmpCommunity(std::string(29, 'n').c_str(), 2), varo::success);
    ASSERT_EQ(restart(), varo::success);
    EXPECT_THAT(entries(), ElementsAre("0 monitor ro", "1 " + std::string(29, 'n') + " rw"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Communities, AreSixAtMostAndReuseTheFirstEmptyEntry) {
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
        ASSERT_EQ(varoAddSnmpCommunity(name, 1), varo::success);
    }
    EXPECT_EQ(varoAddSnmpCommunity("g", 1), varo::tableFull);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoAddSnmpCommunity: there are 6 communities already"));
    EXPECT_EQ(varoDeleteSnmpCommunity("c", 1), varo::success);
    EXPECT_EQ(varoAddSnmpCommunity("g", 2), varo::success);
    EXPECT_THAT(entries(), ElementsAre("0 a ro", "1 b ro", "2 g rw", "3 d ro", "4 e ro", "5 f ro"));
}

TEST_F(Communities, HaveOneEntryForAName) {
    ASSERT_EQ(varoAddSnmpCommunity("secret", 1), varo::success);
    EXPECT_EQ(varoAddSnmpCommunity("secret", 2), varo::alreadyThere);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoAddSnmpCommunity: there is a community of that name"));
    EXPECT_THAT(entries(), ElementsAre("0 secret ro"));
    EXPECT_EQ(varoAddSnmpCommunity("Secret", 2), varo::success);
}

TEST_F(Communities, HaveNamesOfVisibleCharacters) {
    EXPECT_EQ(varoAddSnmpCommunity("", 1), varo::invalidValue);
    EXPECT_EQ(varoAddSnmpCommunity(std::string(30, 'n').c_str(), 1), varo::invalidValue);
    EXPECT_EQ(varoAddSnmpCommunity("two words", 1), varo::invalidValue);
    EXPECT_EQ(varoAddSnmpCommunity("tab\t", 1), varo::invalidValue);
    EXPECT_EQ(varoAddSnmpCommunity(nullptr, 1), varo::invalidArgument);
    EXPECT_EQ(log.lines().at(1), "3 varoAddSnmpCommunity: name: 30 characters are more than 29");
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(Communities, HaveOneOfTwoKindsOfAccess) {
    ASSERT_EQ(varoAddSnmpCommunity("known", 1), varo::success);
    for (const int access : {-1, 0, 3}) {
        EXPECT_EQ(varoAddSnmpCommunity("new", access), varo::invalidValue) << access;
        EXPECT_EQ(varoChangeSnmpCommunity("known", access), varo::invalidValue) << access;
    }
    EXPECT_EQ(log.lines().at(0), "3 varoAddSnmpCommunity: access: -1 is not in 1 to 2");
    EXPECT_THAT(entries(), ElementsAre("0 known ro"));
}

TEST_F(Communities, ChangeTheirAccess) {
    ASSERT_EQ(varoAddSnmpCommunity("name", 1), varo::success);
    EXPECT_EQ(varoChangeSnmpCommunity("name", 2), varo::success);
    EXPECT_THAT(entries(), ElementsAre("0 name rw"));
    EXPECT_EQ(varoChangeSnmpCommunity("other", 2), varo::notThere);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoChangeSnmpCommunity: there is no community of that name"));
}

TEST_F(Communities, AreDeletedByNameWhateverTheirAccess) {
    ASSERT_EQ(varoAddSnmpCommunity("name", 2), varo::success);
    EXPECT_EQ(varoDeleteSnmpCommunity("other", 2), varo::notThere);
    EXPECT_EQ(varoDeleteSnmpCommunity("", 2), varo::invalidValue);
    EXPECT_EQ(varoDeleteSnmpCommunity("name", 1), varo::success);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ(varoDeleteSnmpCommunity("name", 2), varo::notThere);
}

TEST_F(Communities, AreReplacedByAWholeRecordOrNotAtAll) {
    ASSERT_EQ(varoAddSnmpCommunity("old", 1), varo::success);
    varoLib_s_snmpCommunity record{};
    setText(record.communities[1].name, "new");
    setText(record.communities[1].access, "rw");
    std::vector<varoLib_s_snmpCommunity> bad(5, record);
    setText(bad[0].communities[5].name, "without");
    setText(bad[1].communities[5].access, "ro");
    setText(bad[2].communities[1].access, "wr");
    bad[3].communities[5] = record.communities[1];
    std::memset(bad[4].communities[5].name, 'x', sizeof bad[4].communities[5].name);
    const int codes[] = {varo::invalidValue, varo::invalidValue, varo::invalidValue,
                         varo::alreadyThere, varo::invalidValue};
    for (std::size_t index = 0; index < bad.size(); ++index) {
        EXPECT_EQ(varoUpdateSnmpCommunity(&bad[index]), codes[index]) << index;
    }
    EXPECT_EQ(log.lines().size(), bad.size());
    EXPECT_THAT(entries(), ElementsAre("0 old ro"));
    EXPECT_EQ(varoUpdateSnmpCommunity(&record), varo::success);
    EXPECT_THAT(entries(), ElementsAre("1 new rw"));
}

class SnmpSystem : public VaroTest {
protected:
    static std::vector<std::string> texts() {
        const auto record = readBy(varoGetSnmpSystem);
        return {record.contact, record.location, record.name};
    }
};

TEST_F(SnmpSystem, IsEmptyFromTheFactory) {
    EXPECT_THAT(texts(), ElementsAre("", "", ""));
    EXPECT_STREQ(readBy(varoDefSnmpSystem).location, "");
}

TEST_F(SnmpSystem, KeepsTheTextOfEachSelectorOverARestart) {
    EXPECT_EQ(varoChangeSnmpSystem("noc@example.net", 1), varo::success);
    EXPECT_EQ(varoChangeSnmpSystem("rack 7, 2nd floor", 2), varo::success);
    EXPECT_EQ(varoChangeSnmpSystem(std::string(31, 'n').c_str(), 3), varo::success);
    ASSERT_EQ(restart(), varo::success);
    EXPECT_THAT(texts(), ElementsAre("noc@example.net", "rack 7, 2nd floor", std::string(31, 'n')));
    EXPECT_EQ(varoChangeSnmpSystem("", 2), varo::success);
    EXPECT_EQ(varoChangeSnmpSystem("short", 3), varo::success);
    EXPECT_THAT(texts(), ElementsAre("noc@example.net", "", "short"));
}

TEST_F(SnmpSystem, RefusesOtherSelectorsAndBadTexts) {
    for (const int selector : {0, 4, -1}) {
        EXPECT_EQ(varoChangeSnmpSystem("text", selector), varo::invalidValue) << selector;
    }
    EXPECT_EQ(varoChangeSnmpSystem(std::string(32, 'n').c_str(), 3), varo::invalidValue);
    EXPECT_EQ(varoChangeSnmpSystem("two\nlines", 1), varo::invalidValue);
    EXPECT_EQ(varoChangeSnmpSystem(nullptr, 1), varo::invalidArgument);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoChangeSnmpSystem: selector: 0 is not in 1 to 3",
                            "3 varoChangeSnmpSystem: selector: 4 is not in 1 to 3",
                            "3 varoChangeSnmpSystem: selector: -1 is not in 1 to 3",
                            "3 varoChangeSnmpSystem: name: 32 characters are more than 31",
                            "3 varoChangeSnmpSystem: contact: a control character",
                            "3 varoChangeSnmpSystem: null pointer"));
    EXPECT_THAT(texts(), ElementsAre("", "", ""));
}

TEST_F(SnmpSystem, IsReplacedByAWholeRecordOrNotAtAll) {
    varoLib_s_snmpSystem record{};
    setText(record.contact, "contact");
    setText(record.name, "name");
    varoLib_s_snmpSystem bad = record;
    std::memset(bad.location, 'x', sizeof bad.location);
    EXPECT_EQ(varoUpdateSnmpSystem(&bad), varo::invalidValue);
    EXPECT_THAT(texts(), ElementsAre("", "", ""));
    EXPECT_EQ(varoUpdateSnmpSystem(&record), varo::success);
    EXPECT_THAT(texts(), ElementsAre("contact", "", "name"));
}

}  // namespace
