#include "tests/board/varo/VaroTest.h"

#include <atomic>
#include <thread>

namespace {

using namespace varotest;

constexpr std::uint32_t firstHost = 0xC0000201;  // 192.0.2.1

class TrapManagers : public VaroTest {
protected:
    static varoLib_s_subag read() { return readBy(varoGetSubag); }

    /// The entries that are not empty, as "place community address".
    static std::vector<std::string> entries() {
        std::vector<std::string> all;
        const varoLib_s_subag record = read();
        for (int place = 0; place < 10; ++place) {
            const auto& manager = record.managers[place];
            if (manager.ipAddress != 0) {
                all.push_back(std::to_string(place) + " " + manager.community + " " +
                              std::to_string(manager.ipAddress - firstHost));
            } else {
                EXPECT_STREQ(manager.community, "");
            }
        }
        return all;
    }

    static void fill() {
        for (std::uint32_t host = 0; host < 10; ++host) {
            ASSERT_EQ(varoAddSubag("public", firstHost + host), varo::success);
        }
    }
};

TEST_F(TrapManagers, AreNoneFromTheFactoryAndThePortIs162) {
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ(read().port, 162);
    const auto record = readBy(varoDefSubag);
    EXPECT_EQ(record.port, 162);
    EXPECT_EQ(record.managers[9].ipAddress, 0U);
}

TEST_F(TrapManagers, AreKeptInTheOrderOfTheirAdditionOverARestart) {
    EXPECT_EQ(varoAddSubag("public", firstHost), varo::success);
    EXPECT_EQ(varoAddSubag(std::string(31, 'c').c_str(), firstHost + 1), varo::success);
    // One host may listen for two communities.
    EXPECT_EQ(varoAddSubag("other", firstHost), varo::success);
    ASSERT_EQ(restart(), varo::success);
    EXPECT_THAT(entries(),
                ElementsAre("0 public 0", "1 " + std::string(31, 'c') + " 1", "2 other 0"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TrapManagers, AreTenAtMost) {
    fill();
    EXPECT_EQ(varoAddSubag("public", firstHost + 10), varo::tableFull);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoAddSubag: there are 10 trap managers already"));
    EXPECT_EQ(entries().size(), 10U);
}

TEST_F(TrapManagers, ReuseTheFirstEmptyEntryAndKeepTheirPlaces) {
    fill();
    EXPECT_EQ(varoDeleteSubag("public", firstHost + 7), varo::success);
    EXPECT_EQ(varoDeleteSubag("public", firstHost + 3), varo::success);
    EXPECT_EQ(read().managers[3].ipAddress, 0U);
    EXPECT_EQ(read().managers[4].ipAddress, firstHost + 4);
    EXPECT_EQ(varoAddSubag("new", firstHost + 20), varo::success);
    EXPECT_EQ(entries().at(3), "3 new 20");
    EXPECT_EQ(entries().size(), 9U);
}

TEST_F(TrapManagers, AreAddedOnce) {
    ASSERT_EQ(varoAddSubag("secret", firstHost), varo::success);
    EXPECT_EQ(varoAddSubag("secret", firstHost), varo::alreadyThere);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoAddSubag: there is a trap manager 192.0.2.1 with "
                                         "that community"));
    EXPECT_THAT(entries(), ElementsAre("0 secret 0"));
}

TEST_F(TrapManagers, HaveAnAddressAndACommunityOfVisibleCharacters) {
    EXPECT_EQ(varoAddSubag("secret", 0), varo::invalidValue);
    EXPECT_EQ(varoAddSubag("", firstHost), varo::invalidValue);
    EXPECT_EQ(varoAddSubag(std::string(32, 's').c_str(), firstHost), varo::invalidValue);
    EXPECT_EQ(varoAddSubag("sec ret", firstHost), varo::invalidValue);
    EXPECT_EQ(varoAddSubag("secret\n", firstHost), varo::invalidValue);
    EXPECT_EQ(varoAddSubag("secr\xe9t", firstHost), varo::invalidValue);
    EXPECT_EQ(varoAddSubag(nullptr, firstHost), varo::invalidArgument);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(log.lines(), SizeIs(7));
    EXPECT_EQ(log.lines()[0], "3 varoAddSubag: address: 0.0.0.0 is none of a manager");
    EXPECT_EQ(log.lines()[1], "3 varoAddSubag: community: it is empty");
    EXPECT_EQ(log.lines()[2], "3 varoAddSubag: community: 32 characters are more than 31");
    EXPECT_EQ(log.lines()[3],
              "3 varoAddSubag: community: a blank or a character that is not "
              "visible ASCII");
    // A community is as good as a password.
    EXPECT_THAT(log.lines(), Not(Contains(HasSubstr("secret"))));
}

TEST_F(TrapManagers, AreDeletedOnlyWhenAddressAndCommunityAreTheirs) {
    ASSERT_EQ(varoAddSubag("public", firstHost), varo::success);
    EXPECT_EQ(varoDeleteSubag("public", firstHost + 1), varo::notThere);
    EXPECT_EQ(varoDeleteSubag("Public", firstHost), varo::notThere);
    EXPECT_EQ(varoDeleteSubag("publi", firstHost), varo::notThere);
    EXPECT_EQ(log.lines().at(0),
              "3 varoDeleteSubag: there is no trap manager 192.0.2.2 with that community");
    EXPECT_EQ(varoDeleteSubag("public", 0), varo::invalidValue);
    EXPECT_THAT(entries(), ElementsAre("0 public 0"));
    EXPECT_EQ(varoDeleteSubag("public", firstHost), varo::success);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(TrapManagers, ChangeAddressAndCommunityAtTheirPlace) {
    ASSERT_EQ(varoAddSubag("a", firstHost), varo::success);
    ASSERT_EQ(varoAddSubag("b", firstHost + 1), varo::success);
    EXPECT_EQ(varoChangeSubag("a", firstHost, "a", firstHost + 5), varo::success);
    EXPECT_EQ(varoChangeSubag("b", firstHost + 1, "longer", firstHost + 1), varo::success);
    EXPECT_EQ(varoChangeSubag("a", firstHost + 5, "a", firstHost + 5), varo::success);
    EXPECT_THAT(entries(), ElementsAre("0 a 5", "1 longer 1"));
}

TEST_F(TrapManagers, RefuseAChangeOfNoneOrIntoAnotherOrIntoNone) {
    ASSERT_EQ(varoAddSubag("a", firstHost), varo::success);
    ASSERT_EQ(varoAddSubag("a", firstHost + 1), varo::success);
    EXPECT_EQ(varoChangeSubag("a", firstHost + 2, "a", firstHost + 3), varo::notThere);
    EXPECT_EQ(varoChangeSubag("a", firstHost, "a", firstHost + 1), varo::alreadyThere);
    EXPECT_EQ(varoChangeSubag("a", firstHost, "a", 0), varo::invalidValue);
    EXPECT_EQ(varoChangeSubag("a", firstHost, "", firstHost + 3), varo::invalidValue);
    EXPECT_EQ(varoChangeSubag(nullptr, firstHost, "a", firstHost + 3), varo::invalidArgument);
    EXPECT_EQ(varoChangeSubag("a", firstHost, nullptr, firstHost + 3), varo::invalidArgument);
    EXPECT_THAT(entries(), ElementsAre("0 a 0", "1 a 1"));
}

TEST_F(TrapManagers, SharePortsOfUdpOnly) {
    EXPECT_EQ(varoChangePortSubag(1), varo::success);
    EXPECT_EQ(read().port, 1);
    EXPECT_EQ(varoChangePortSubag(65535), varo::success);
    for (const unsigned int port : {0U, 65536U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(varoChangePortSubag(port), varo::invalidValue) << port;
    }
    EXPECT_EQ(log.lines().at(1), "3 varoChangePortSubag: port: 65536 is not in 1 to 65535");
    EXPECT_EQ(read().port, 65535);
}

TEST_F(TrapManagers, AreReplacedByAWholeRecord) {
    ASSERT_EQ(varoAddSubag("old", firstHost), varo::success);
    varoLib_s_subag record{};
    record.port = 1162;
    record.managers[4].ipAddress = firstHost + 4;
    setText(record.managers[4].community, "new");
    EXPECT_EQ(varoUpdateSubag(&record), varo::success);
    EXPECT_THAT(entries(), ElementsAre("4 new 4"));
    EXPECT_EQ(read().port, 1162);
    ASSERT_EQ(varoDefSubag(&record), varo::success);
    EXPECT_EQ(varoUpdateSubag(&record), varo::success);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(TrapManagers, RefuseARecordWithABadEntryAsAWhole) {
    varoLib_s_subag good{};
    good.port = 1162;
    good.managers[0].ipAddress = firstHost;
    setText(good.managers[0].community, "public");
    std::vector<varoLib_s_subag> bad(6, good);
    bad[0].port = 0;
    setText(bad[1].managers[9].community, "alone");
    bad[2].managers[9].ipAddress = firstHost + 9;
    bad[3].managers[9] = good.managers[0];
    std::memset(bad[4].managers[9].community, 'x', sizeof bad[4].managers[9].community);
    bad[5].port = -1;
    const int codes[] = {varo::invalidValue, varo::invalidValue, varo::invalidValue,
                         varo::alreadyThere, varo::invalidValue, varo::invalidValue};
    for (std::size_t index = 0; index < bad.size(); ++index) {
        EXPECT_EQ(varoUpdateSubag(&bad[index]), codes[index]) << index;
    }
    EXPECT_EQ(log.lines().size(), bad.size());
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ(read().port, 162);
    EXPECT_EQ(varoUpdateSubag(nullptr), varo::invalidArgument);
}

TEST_F(TrapManagers, LoseNoneWhenManyAreAddedAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (std::uint32_t host = 0; host < 10; ++host) {
        threads.emplace_back([&failures, host] {
            if (varoAddSubag("public", firstHost + host) != varo::success) {
                ++failures;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(entries().size(), 10U);
}

}  // namespace
