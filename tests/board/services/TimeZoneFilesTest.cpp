#include "board/services/timeZone.h"
#include "support/files.h"
#include "support/matchers.h"
#include "tests/board/services/zones.h"

#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// What the C library makes of a value of TZ, at many moments.
std::vector<std::string> localTimes(const std::string& variable) {
    ::setenv("TZ", variable.c_str(), 1);
    ::tzset();
    std::vector<std::string> result;
    constexpr std::time_t step = 5 * 86400 + 3607;
    for (std::time_t moment = 0; moment < 4102444800; moment += step) {
        std::tm local{};
        ::localtime_r(&moment, &local);
        char text[64];
        std::strftime(text, sizeof text, "%F %T %Z %z", &local);
        result.push_back(text + std::to_string(local.tm_isdst));
    }
    ::unsetenv("TZ");
    ::tzset();
    return result;
}

class TimeZoneFiles : public testing::Test {
protected:
    TemporaryDirectory directory;
    const services::TimeZoneFiles files{directory.path() / "localtime", directory.path() / "TZ"};
};

TEST_F(TimeZoneFiles, MeanTheSameToTheCLibrary) {
    for (const Zone& each : {zone("NONE", 0, 0), zone("CET", 60, 60), zone("NONE", -300, 60),
                             zone("Australia/Lord_Howe", 630, 30), zone("Europe/Dublin", 60, -60),
                             zone("Asia/Kolkata", 330, 0), zone("NONE", -720, -180)}) {
        services::writeTimeZone(files, each);
        const std::string rule = readFile(files.rule);
        EXPECT_EQ(rule, services::timeZoneRule(each).text + "\n");
        const auto byRule = localTimes(rule.substr(0, rule.size() - 1));
        EXPECT_EQ(localTimes(":" + files.localtime.string()), byRule) << rule;
    }
}

TEST_F(TimeZoneFiles, ObserveDaylightSavingTime) {
    services::writeTimeZone(files, zone("EST", -300, 60));
    ::setenv("TZ", (":" + files.localtime.string()).c_str(), 1);
    ::tzset();
    std::tm summer{};
    constexpr std::time_t july = 1783000000;  // 2 July 2026, 13:46:40 UTC
    ::localtime_r(&july, &summer);
    EXPECT_EQ(summer.tm_hour, 9);
    EXPECT_EQ(summer.tm_isdst, 1);
    ::unsetenv("TZ");
    ::tzset();
}

TEST_F(TimeZoneFiles, AreWrittenOneWithoutTheOther) {
    services::writeTimeZone({{}, files.rule}, zone("CET", 60, 0));
    EXPECT_EQ(readFile(files.rule), "CET-1\n");
    EXPECT_FALSE(std::filesystem::exists(files.localtime));
    services::writeTimeZone({}, zone("CET", 60, 0));
}

TEST_F(TimeZoneFiles, AreNoLinksIntoTheZoneDatabase) {
    const auto database = directory.path() / "UTC";
    writeFile(database, "precious");
    std::filesystem::create_symlink(database, files.localtime);
    try {
        services::writeTimeZone(files, zone("CET", 60, 0));
        FAIL() << "a symbolic link was written to";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(
            std::string(error.what()),
            files.localtime.string() + " is a symbolic link, whose target is not overwritten");
    }
    EXPECT_EQ(readFile(database), "precious");
}

TEST_F(TimeZoneFiles, NeedADirectory) {
    EXPECT_THROW(
        services::writeTimeZone({directory.path() / "no" / "such", {}}, zone("CET", 60, 0)),
        std::runtime_error);
}

}  // namespace
