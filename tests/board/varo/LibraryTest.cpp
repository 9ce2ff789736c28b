#include "tests/board/varo/VaroTest.h"

#include <cstdlib>
#include <stdexcept>

namespace {

using namespace varotest;

int readDns() {
    varoLib_s_dns record{};
    int source = 2;
    return varoGetDnsWS(&source, &record);
}

int writeDns(const std::string& domain) { return store(2, dnsOf(domain)); }

/// Runs in a process in which the library was never used. 0, or the number of the failing step.
int firstUse() {
    const TemporaryDirectory directory;
    LogLines log;
    varo::configure({{}, {}, log.receiver()});
    if (readDns() != varo::notConfigured || writeDns("a") != varo::notConfigured) {
        return 1;
    }
    if (log.lines() !=
        std::vector<std::string>{"3 varoGetDnsWS: no state directory is configured",
                                 "3 varoUpdateDnsWS: no state directory is configured"}) {
        return 2;
    }
    const auto resolverFile = directory.path() / "resolv.conf";
    varo::configure({directory.path(), resolverFile, log.receiver()});
    if (readDns() != varo::success || !std::filesystem::exists(directory.path() / "varo.db")) {
        return 3;
    }
    // What is stored comes into force when the store opens.
    if (!std::filesystem::exists(resolverFile)) {
        return 4;
    }
    if (writeDns("a") != varo::success || varoLibInit() != varo::success) {
        return 5;
    }
    varoLibDestroy();
    return readDns() == varo::notOpen ? 0 : 6;
}

/// The same; what cannot be put into force is logged, and the call is answered.
int firstUseWithoutResolverFile() {
    const TemporaryDirectory directory;
    LogLines log;
    varo::configure({directory.path(), directory.path() / "no" / "such", log.receiver()});
    if (readDns() != varo::success || log.lines().size() != 1) {
        return 1;
    }
    return log.lines()[0].starts_with(
               "3 opening on first use: the resolver settings are stored, "
               "but not in force: ")
               ? 0
               : 2;
}

int useWithoutConfiguration() {
    varoLib_s_dns record = dnsOf("before");
    int source = 2;
    if (varoLibInit() != varo::notConfigured ||
        varoGetDnsWS(&source, &record) != varo::notConfigured) {
        return 1;
    }
    return std::string(record.domain) == "before" ? 0 : 2;
}

TEST(LibraryDeathTest, AnswersCallsMadeBeforeInit) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(firstUse()), testing::ExitedWithCode(0), "");
}

TEST(LibraryDeathTest, AnswersCallsEvenIfNotAllIsInForce) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(firstUseWithoutResolverFile()), testing::ExitedWithCode(0), "");
}

TEST(LibraryDeathTest, FailsWithoutAConfiguration) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(useWithoutConfiguration()), testing::ExitedWithCode(0), "");
}

class Library : public VaroTest {};
class ClosedLibrary : public ClosedVaroTest {};

TEST_F(Library, CanBeInitialisedTwice) {
    EXPECT_EQ(writeDns("example.net"), varo::success);
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(readDns(), varo::success);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Library, ClosesItsFileWithEverythingInIt) {
    EXPECT_EQ(writeDns("example.net"), varo::success);
    varoLibDestroy();
    EXPECT_THAT(filesIn(state), ElementsAre("varo.db"));
    EXPECT_EQ(sql(file, "SELECT domain FROM dns"), "example.net");
}

TEST_F(Library, AnswersNoCallWhileItIsClosed) {
    varoLibDestroy();
    varoLib_s_internalConfig config{.severity = 99};
    varoLib_s_dns dns{};
    varoLib_s_dns6 dns6{};
    varoLib_s_interface interface{};
    setText(interface.name, "lo");
    int source = 0;
    EXPECT_EQ(varoGetInternalConfig(&config), varo::notOpen);
    EXPECT_EQ(config.severity, 99);
    EXPECT_EQ(varoUpdateInternalConfig(&config, 99), varo::notOpen);
    EXPECT_EQ(varoGetDnsWS(&source, &dns), varo::notOpen);
    EXPECT_EQ(varoUpdateDnsWS(2, &dns), varo::notOpen);
    EXPECT_EQ(varoDefDnsWS(2, &dns), varo::notOpen);
    EXPECT_EQ(varoGetDns6(&source, &dns6), varo::notOpen);
    EXPECT_EQ(varoUpdateDns6(2, &dns6), varo::notOpen);
    EXPECT_EQ(varoDefDns6(2, &dns6), varo::notOpen);
    EXPECT_EQ(varoGetInterface(&interface), varo::notOpen);
    EXPECT_EQ(source, 0);
    ASSERT_EQ(log.lines().size(), 9U);
    EXPECT_EQ(log.lines()[0], "3 varoGetInternalConfig: the library is closed");
}

TEST_F(Library, CanBeClosedTwice) {
    varoLibDestroy();
    varoLibDestroy();
    EXPECT_EQ(readDns(), varo::notOpen);
}

TEST_F(Library, AnswersAgainWhenItIsOpenedAgain) {
    EXPECT_EQ(writeDns("example.net"), varo::success);
    EXPECT_EQ(restart(), varo::success);
    EXPECT_STREQ(storedDns(0).domain, "example.net");
}

TEST_F(Library, AnswersNullPointersWithAnError) {
    varoLib_s_dns dns{};
    varoLib_s_dns6 dns6{};
    int source = 2;
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateInternalConfig(nullptr, 5), varo::invalidArgument);
    EXPECT_EQ(varoGetDnsWS(nullptr, &dns), varo::invalidArgument);
    EXPECT_EQ(varoGetDnsWS(&source, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateDnsWS(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoDefDnsWS(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetDns6(nullptr, &dns6), varo::invalidArgument);
    EXPECT_EQ(varoGetDns6(&source, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateDns6(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoDefDns6(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetInterface(nullptr), varo::invalidArgument);
    ASSERT_EQ(log.lines().size(), 11U);
    EXPECT_EQ(log.lines()[0], "3 varoGetInternalConfig: null pointer");
}

TEST_F(Library, AnswersWhenItsLogFunctionThrows) {
    varo::configure({state, {}, [](int, const std::string&) { throw std::runtime_error("log"); }});
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
}

TEST_F(Library, TakesANewLogFunctionAtOnceAndANewDirectoryWhenItOpensAgain) {
    const TemporaryDirectory other;
    LogLines otherLog;
    varo::configure({other.path(), {}, otherLog.receiver()});
    EXPECT_EQ(writeDns("first"), varo::success);
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
    EXPECT_EQ(otherLog.lines().size(), 1U);
    EXPECT_EQ(sql(file, "SELECT domain FROM dns"), "first");

    EXPECT_EQ(restart(), varo::success);
    EXPECT_EQ(writeDns("second"), varo::success);
    EXPECT_EQ(sql(other.path() / "varo.db", "SELECT domain FROM dns"), "second");
    EXPECT_EQ(sql(file, "SELECT domain FROM dns"), "first");
    varoLibDestroy();
    configure();
}

TEST_F(ClosedLibrary, ReportsADirectoryThatIsNotThere) {
    std::filesystem::remove(state);
    EXPECT_EQ(varoLibInit(), varo::storageFailed);
    EXPECT_THAT(log.take(),
                ElementsAre("3 varoLibInit: cannot open " + file.string() +
                            ": unable to open database file (No such file or directory)"));
    EXPECT_EQ(readDns(), varo::storageFailed);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoGetDnsWS: cannot open " + file.string() +
                            ": unable to open database file (No such file or directory)"));
}

TEST_F(ClosedLibrary, OpensWithTheFirstCallThatFindsTheDirectoryAfterAFailedInit) {
    std::filesystem::remove(state);
    EXPECT_EQ(varoLibInit(), varo::storageFailed);
    std::filesystem::create_directory(state);
    EXPECT_EQ(writeDns("example.net"), varo::success);
    EXPECT_EQ(readDns(), varo::success);
}

TEST_F(ClosedLibrary, ReportsAFileOfANewerReleaseAtEveryCall) {
    sql(file, "PRAGMA user_version = 1000");
    const std::string before = readFile(file);
    EXPECT_EQ(varoLibInit(), varo::newerFile);
    EXPECT_EQ(readDns(), varo::newerFile);
    EXPECT_EQ(writeDns("example.net"), varo::newerFile);
    EXPECT_EQ(log.lines().size(), 3U);
    EXPECT_EQ(readFile(file), before);
}

}  // namespace
