#include "board/ntp/NtpClient.h"
#include "board/ntp/chronyConfiguration.h"
#include "support/LogLines.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/setText.h"
#include "tests/board/process/scripts.h"

#include <stdlib.h>

namespace {

using namespace daemontest;

/// With programs in place of chronyd, which notes what it is told at its starts, and its ends, and
/// of chronyc, which notes what it is asked.
class NtpClientTest : public testing::Test {
protected:
    NtpClientTest() {
        writeScript(directory / "chronyd", "trap 'echo end >>" + ends.string() +
                                               "; exit 0' TERM\n"
                                               "for last; do :; done\n"
                                               "cat \"$last\" >>" +
                                               taken.string() + "\necho \"$*\" >>" +
                                               starts.string() +
                                               "\nwhile :; do sleep 0.02; done\n");
        answer(
            "case \"$*\" in\n"
            "*tracking*) echo C0000201,192.0.2.1,11,0.0,0,0,0,0,0,0,0,0,0,Normal;;\n"
            "esac\n"
            "echo '^,*,192.0.2.1,10,6,17,3,0,0,0'\n");
        ::setenv("PATH", (directory.path().string() + ":" + path).c_str(), 1);
        config.mode = 1;
        setText(config.servers[0].host, "192.0.2.1");
    }
    ~NtpClientTest() override { ::setenv("PATH", path.c_str(), 1); }

    /// What chronyc does when it is asked.
    void answer(const std::string& script) const {
        writeScript(directory / "chronyc", "echo \"$*\" >>" + asked.string() + "\n" + script);
    }

    bool hasStarted(long times) const {
        return eventually([&] { return linesOf(starts) == times; });
    }

    template <class Action>
    static std::string failureOf(Action action) {
        try {
            action();
        } catch (const std::exception& error) {
            return error.what();
        }
        return "none";
    }

    const std::string path = ::getenv("PATH");
    TemporaryDirectory directory;
    const std::filesystem::path starts = directory / "starts";
    const std::filesystem::path taken = directory / "taken";
    const std::filesystem::path ends = directory / "ends";
    const std::filesystem::path asked = directory / "asked";
    const std::filesystem::path files = directory / "ntp";
    const std::string socket = (files / "chronyd.sock").string();
    rpcSntpConfigHost config{};
    LogLines lines;
    ntp::NtpClient client{{{"chronyd", "-u", "nobody"}, files, "lo"}, lines.receiver()};
};

TEST_F(NtpClientTest, HandsItsConfigurationToTheProgram) {
    client.apply(config);
    ASSERT_TRUE(hasStarted(1));
    EXPECT_EQ(contentOf(taken), ntp::configurationOf(config, ntp::Files(files), "lo"));
    EXPECT_EQ(contentOf(starts), "-u nobody -d -f " + (files / "chrony.conf").string() + "\n");
    const auto mode = std::filesystem::status(files).permissions();
    EXPECT_EQ(mode, std::filesystem::perms::owner_all) << "others can ask it";
}

TEST_F(NtpClientTest, RunsNothingWhileItIsOffOrHasNoServer) {
    config.mode = 0;
    client.apply(config);
    client.apply({});
    EXPECT_FALSE(std::filesystem::exists(files));
    config.mode = 1;
    client.apply(config);
    ASSERT_TRUE(hasStarted(1));
    setText(config.servers[0].host, "");
    client.apply(config);
    EXPECT_EQ(contentOf(ends), "end\n") << "the call has not waited for the end";
    EXPECT_EQ(linesOf(starts), 1);
}

TEST_F(NtpClientTest, IsStartedAnewForEveryChange) {
    // It does not read its configuration again by itself: SIGHUP would end it.
    client.apply(config);
    ASSERT_TRUE(hasStarted(1));
    setText(config.servers[0].host, "192.0.2.2");
    client.apply(config);
    ASSERT_TRUE(hasStarted(2));
    EXPECT_THAT(contentOf(taken), HasSubstr("server 192.0.2.2 iburst\n"));
    EXPECT_EQ(linesOf(ends), 1);
    client.apply(config);
    ASSERT_TRUE(hasStarted(3)) << "whoever sets the same again wants it started anew";
    EXPECT_FALSE(lines.contain("has ended")) << "an end that was asked for is none by itself";
}

TEST_F(NtpClientTest, ThatRefusesItsConfigurationFailsTheCallsAfterTheFirst) {
    writeScript(directory / "chronyd", "echo 'line 2 is wrong' >&2\nexit 1\n");
    client.apply(config);
    EXPECT_TRUE(eventually([&] { return lines.contain("line 2 is wrong; it is started again"); }));
    const char* const failure = "the NTP client has ended with status 1: line 2 is wrong";
    EXPECT_EQ(failureOf([&] { client.apply(config); }), failure);
    EXPECT_EQ(failureOf([&] { client.status(config); }), failure);
    EXPECT_FALSE(std::filesystem::exists(asked)) << "who does not run was asked";
}

TEST_F(NtpClientTest, KeepsRunningWhenItCannotTakeAConfiguration) {
    client.apply(config);
    ASSERT_TRUE(hasStarted(1));
    setText(config.servers[0].host, "a b");
    EXPECT_EQ(failureOf([&] { client.apply(config); }),
              "a server is neither a host name nor an address");
    EXPECT_FALSE(std::filesystem::exists(ends));
    EXPECT_THAT(contentOf(files / "chrony.conf"), HasSubstr("server 192.0.2.1 iburst\n"));
}

TEST_F(NtpClientTest, AsksTheProgramForItsStatus) {
    client.apply(config);
    // It has a second to answer, which may be too short on a busy machine.
    rpcSntpInfoHost info{};
    EXPECT_TRUE(
        eventually([&] { return failureOf([&] { info = client.status(config); }) == "none"; }));
    EXPECT_EQ(info.client.state, 2);
    EXPECT_EQ(info.client.stratum, 11);
    EXPECT_EQ(info.servers[0].state, 3);
    EXPECT_THAT(contentOf(asked), EndsWith("-h " + socket + " -c -N -m tracking sources -a\n-h " +
                                           socket + " -c -n -m sources -a ntpdata\n"));
}

TEST_F(NtpClientTest, HasAStatusWithoutAProgram) {
    config.mode = 0;
    client.apply(config);
    const auto info = client.status(config);
    EXPECT_EQ(info.client.state, 0);
    EXPECT_EQ(info.client.leapIndicator, 3);
    EXPECT_STREQ(info.servers[0].host, "192.0.2.1");
    EXPECT_FALSE(std::filesystem::exists(asked));
}

TEST_F(NtpClientTest, SaysWhyItHasNoStatus) {
    client.apply(config);
    answer("echo '506 Cannot talk to daemon'\nexit 1\n");
    EXPECT_TRUE(eventually([&] {
        return failureOf([&] { client.status(config); }) ==
               "chronyc has ended with status 1: 506 Cannot talk to daemon";
    }));
    answer("exec sleep 60\n");
    EXPECT_EQ(failureOf([&] { client.status(config); }), "chronyc does not end in time");
}

TEST_F(NtpClientTest, EndsForGood) {
    client.apply(config);
    ASSERT_TRUE(hasStarted(1));
    client.end();
    EXPECT_EQ(contentOf(ends), "end\n");
}

}  // namespace
