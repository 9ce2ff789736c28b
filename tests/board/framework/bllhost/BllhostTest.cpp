// The process as a whole: its start, its surroundings, its control program and its end.

#include "BllhostTest.h"

#include "ControlClient.h"

#include <netinet/in.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using test::ControlClient;
using test::PowerlessMapper;
using test::SilentMapper;

TEST_F(BllhostTest, HelpTellsOptionsExitStatusesAndAnExample) {
    Process process({BLLHOST, "--help"});
    EXPECT_EQ(process.awaitEnd(), 0);
    EXPECT_THAT(process.output(),
                AllOf(HasSubstr("--library PATH"), HasSubstr("--state DIR"),
                      HasSubstr("--resolv-conf PATH"), HasSubstr("--stop-timeout SECONDS"),
                      HasSubstr("--lock-timeout SECONDS"), HasSubstr("--log-level N"),
                      HasSubstr("--management-interface NAME=mng0"),
                      HasSubstr("--dhcp-client COMMAND=busybox udhcpc"),
                      HasSubstr("--dhcp-vendor-class TEXT"), HasSubstr("--acs-pid-file PATH"),
                      HasSubstr("--filter-table NAME"), HasSubstr("--board-position N=1"),
                      HasSubstr("Exit status: 0 after an orderly end, 1 if it could not start, 2 "
                                "for wrong usage"),
                      HasSubstr("Example: bllhost --library ")));
}

TEST_F(BllhostTest, WrongUsageIsStatus2) {
    const std::vector<std::vector<std::string>> wrong{
        {BLLHOST},
        {BLLHOST, "--library", ENTITIES},
        {BLLHOST, "--state", state.path()},
        commandLine(ENTITIES, {"--nonsense"}),
        commandLine(ENTITIES, {"--log-level", "4"}),
        commandLine(ENTITIES, {"--stop-timeout", "-1"}),
        commandLine(ENTITIES, {"--lock-timeout", "soon"}),
        commandLine(ENTITIES, {"--management-interface", "ninechars"}),
        commandLine(ENTITIES, {"--management-interface", "a/b"}),
        commandLine(ENTITIES, {"--management-interface", ""}),
        commandLine(ENTITIES, {"--dhcp-vendor-class", ""}),
        commandLine(ENTITIES, {"--board-position", "-1"}),
    };
    for (const auto& command : wrong) {
        Process process(command);
        EXPECT_EQ(process.awaitEnd(), 2) << process.output();
        EXPECT_THAT(process.output(), HasSubstr("--help")) << process.output();
    }
}

TEST_F(BllhostTest, NeedsAStateDirectory) {
    const std::string missing = state.path() / "missing";
    EXPECT_THAT(failedStart({BLLHOST, "--library", ENTITIES, "--state", missing}),
                HasSubstr("bllhost: the state directory " + missing +
                          " does not exist; create it (mkdir -p " + missing + ")"));
    const std::string file = state.path() / "file";
    writeFile(file, "");
    EXPECT_THAT(failedStart({BLLHOST, "--library", ENTITIES, "--state", file}),
                HasSubstr("bllhost: the state directory " + file));
}

TEST_F(BllhostTest, NeedsAWritableStateDirectory) {
    ASSERT_EQ(mount("tmpfs", state.path().c_str(), "tmpfs", MS_RDONLY, nullptr), 0);
    EXPECT_THAT(failedStart(commandLine(ENTITIES)), HasSubstr(" is not writable ("));
    umount(state.path().c_str());
}

TEST_F(BllhostTest, NeedsAPortMapper) {
    EXPECT_THAT(failedStart(commandLine(ENTITIES)),
                HasSubstr("bllhost: the port mapper does not answer on 127.0.0.1 port 111; start "
                          "it (systemctl start rpcbind, or rpcbind -w) and try again.\n"));
}

TEST_F(BllhostTest, DoesNotWaitForAPortMapperThatHangs) {
    const SilentMapper silent;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(failedStart(commandLine(ENTITIES)), HasSubstr("the port mapper does not answer"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(BllhostTest, NamesTheCauseWhenTheLibraryCannotBeLoaded) {
    portMapper.emplace();
    const auto failure = [this](const std::string& library) {
        return failedStart(commandLine(library));
    };
    const std::string file = state.path() / "library.so";
    EXPECT_THAT(failure(file),
                AllOf(HasSubstr("bllhost: the library " + file + " cannot be loaded"),
                      HasSubstr("No such file or directory")));

    writeFile(file, "not a library");
    EXPECT_THAT(failure(file), HasSubstr("cannot be loaded"));

    // The machine is the half-word at offset 18 of an ELF header; 243 is RISC-V.
    std::string foreign = readFile(ENTITIES);
    foreign.replace(18, 2, std::string("\xf3\0", 2));
    writeFile(file, foreign);
    EXPECT_THAT(failure(file), HasSubstr("cannot be loaded"));

    EXPECT_THAT(failure(UNRESOLVED),
                AllOf(HasSubstr("cannot be loaded"), HasSubstr("undefined symbol"),
                      HasSubstr("aCallThatNoBoardSupplies")));

    EXPECT_THAT(failure(WITHOUT_ENTITIES), HasSubstr(" registers no entity; "));
}

TEST_F(BllhostTest, EndsOrderlyOnSigtermInBoundedTime) {
    startHost();
    const auto begin = std::chrono::steady_clock::now();
    host->signal(SIGTERM);
    EXPECT_EQ(host->awaitEnd(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    const std::string& output = host->output();
    EXPECT_THAT(output, HasSubstr("entity \"stuck\" has not stopped within "));
    // Dependents first; the one that hangs does not keep the others from being stopped.
    const auto stuck = output.find("stuck stops");
    const auto quick = output.find("quick stops");
    ASSERT_NE(stuck, output.npos) << output;
    ASSERT_NE(quick, output.npos) << output;
    EXPECT_LT(stuck, quick);
    EXPECT_LT(output.find("quick starts"), output.find("stuck starts"));
}

TEST_F(BllhostTest, EndsOrderlyOnSigint) {
    startHost();
    host->signal(SIGINT);
    EXPECT_EQ(host->awaitEnd(), 0) << host->output();
}

TEST_F(BllhostTest, EndsAtOnceOnASecondSignal) {
    startHost({}, "3600");
    host->signal(SIGTERM);
    ASSERT_TRUE(host->awaitOutput("stuck stops")) << host->output();
    host->signal(SIGTERM);
    EXPECT_EQ(host->awaitEnd(), 128 + SIGTERM) << host->output();
}

TEST_F(BllhostTest, EndsOrderlyWhenAClientAsksForItAndAnswersFirst) {
    startHost();
    EXPECT_EQ(ControlClient().stop(), "0: the process is going to end");
    EXPECT_EQ(host->awaitEnd(), 0) << host->output();
    EXPECT_THAT(host->output(), HasSubstr("quick stops"));
}

class BllhostControlTest : public BllhostTest, public testing::WithParamInterface<int> {};

TEST_P(BllhostControlTest, ServesTheControlProgram) {
    startHost();
    ControlClient client(GetParam());
    EXPECT_THAT(
        client.status(),
        ElementsAre("shelfId ", "profileMode off", "clearConfigInProgress off", "feature 12 off",
                    "feature 5 off", "feature httpserver on", "entity interfaces started",
                    "entity bridge started", "entity stuck started", "entity quick started"));

    EXPECT_EQ(client.externalMessage("echo", "hello"), "0: hello from control");
    EXPECT_EQ(client.externalMessage("nobody listens", ""), "0: ");
    EXPECT_EQ(client.setShelfId("shelf 7"), "0: ");
    EXPECT_TRUE(host->awaitOutput("shelf is now shelf 7\n")) << host->output();
    EXPECT_EQ(client.setShelfId("a\nb"),
              "-1: the shelf identity is not valid: it contains a control character");
    EXPECT_EQ(client.setShelfId(std::string(256, 'x')),
              "-1: the shelf identity is not valid: it is longer than 255 characters");
    EXPECT_EQ(client.setFeature("12", true), "0: ");
    EXPECT_EQ(client.setFeature("13", true),
              "-1: there is no feature \"13\", only 12, 5, httpserver");
    EXPECT_EQ(client.setProfileMode(true), "0: ");
    EXPECT_EQ(client.setClearConfig(true), "0: ");
    EXPECT_EQ(client.applyDefaults(),
              "-1: factory settings could not be applied to \"stuck\": it returned 0");
    // Factory settings clear lists without a lock: only the thread that serves requests may do
    // that.
    const std::string thread = client.externalMessage("thread", "").substr(std::strlen("0: "));
    EXPECT_TRUE(host->awaitOutput("quick returns to factory settings on thread " + thread + "\n"))
        << host->output();
    EXPECT_THAT(client.status(),
                AllOf(Contains("shelfId shelf 7"), Contains("profileMode on"),
                      Contains("clearConfigInProgress on"), Contains("feature 12 on")));
    EXPECT_EQ(client.setClearConfig(false), "0: ");
    EXPECT_THAT(client.status(), Contains("clearConfigInProgress off"));

    EXPECT_THAT(client.vlans(),
                ElementsAre("vlan 1: members 1 100, pvid 1", "default 1 tagged", "stored 0"));

    EXPECT_EQ(client.sendBrokenMessage(), RPC_CANTDECODEARGS);
    EXPECT_EQ(client.externalMessage("echo", "still here"), "0: still here from control");
}

INSTANTIATE_TEST_SUITE_P(Transports, BllhostControlTest, testing::Values(IPPROTO_UDP, IPPROTO_TCP),
                         [](const auto& transport) {
                             return transport.param == IPPROTO_UDP ? "udp" : "tcp";
                         });

TEST_F(BllhostTest, RunsOnWhenAnEntityCannotStart) {
    startHost({{"QUICK_FAILS", "1"}});
    EXPECT_THAT(host->output(),
                AllOf(HasSubstr("entity \"quick\" could not start: it returned 0"),
                      HasSubstr("entity \"stuck\" is not started: it needs \"quick\", which does "
                                "not run")));
    EXPECT_THAT(ControlClient().status(),
                AllOf(Contains("entity bridge started"), Contains("entity quick failed"),
                      Contains("entity stuck failed")));
    host->signal(SIGTERM);
    EXPECT_EQ(host->awaitEnd(), 0);
}

TEST_F(BllhostTest, SurvivesABrokenPipe) {
    startHost();
    host->signal(SIGPIPE);
    EXPECT_EQ(ControlClient().externalMessage("echo", "alive"), "0: alive from control");
}

TEST_F(BllhostTest, LimitsDescriptorsToWhatTheRequestLoopSees) {
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_GT(limit.rlim_max, 1024u);
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    startHost();
    std::istringstream limits(readFile("/proc/" + std::to_string(host->id()) + "/limits"));
    std::string line;
    while (std::getline(limits, line) && !line.starts_with("Max open files")) {
    }
    std::istringstream fields(line.substr(std::string("Max open files").size()));
    unsigned long soft = 0;
    unsigned long hard = 0;
    ASSERT_TRUE(fields >> soft >> hard) << line;
    EXPECT_EQ(soft, 1024u);
    EXPECT_EQ(hard, limit.rlim_max);
}

TEST_F(BllhostTest, CommandsOfEntitiesHaveTheUsualSignals) {
    // A parent's blocked signals are inherited; the process makes itself reachable again.
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGPIPE);
    ASSERT_EQ(sigprocmask(SIG_BLOCK, &blocked, &before), 0);
    startHost();
    ASSERT_EQ(sigprocmask(SIG_SETMASK, &before, nullptr), 0);

    const std::string own = readFile("/proc/" + std::to_string(host->id()) + "/status");
    for (const int signal : {SIGINT, SIGTERM, SIGPIPE}) {
        EXPECT_TRUE(contains(signalSet(own, "SigCgt"), signal)) << signal;
    }
    const std::string copy = state.path() / "status";
    ASSERT_EQ(ControlClient().externalMessage("run", "cat /proc/self/status > " + copy),
              "0: status 0");
    const std::string child = readFile(copy);
    for (const int signal : {SIGINT, SIGTERM, SIGPIPE}) {
        EXPECT_FALSE(contains(signalSet(child, "SigBlk"), signal)) << signal;
        EXPECT_FALSE(contains(signalSet(child, "SigIgn"), signal)) << signal;
        EXPECT_FALSE(contains(signalSet(child, "SigCgt"), signal)) << signal;
    }
}

TEST_F(BllhostTest, DoesNotStartWithoutItsControlProgram) {
    const PowerlessMapper mapper;
    const std::string output = failedStart(commandLine(ENTITIES, {"--stop-timeout", "3"}));
    EXPECT_THAT(output, HasSubstr("bllhost: the control program cannot be registered with the port "
                                  "mapper; the lines above tell why.\n"));
    // What had been started is stopped.
    EXPECT_THAT(output, HasSubstr("quick stops"));
}
