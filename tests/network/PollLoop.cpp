// The loop that watches the management address. The poll flag and the address are reached past
// their access (-fno-access-control, for this file).

#include "network/EntityTest.h"

#include <boost/function/function_base.hpp>

#include <functional>
#include <vector>

namespace {

using testing::IsEmpty;

constexpr std::uint32_t firstAddress = 0xc0000202;   // 192.0.2.2
constexpr std::uint32_t secondAddress = 0xc6336402;  // 198.51.100.2
constexpr std::uint32_t mask = 0xffffff00;

const std::string noManagementInterface = R"(varoGetInterface("mng0") -> 1)";
const std::string firstAddressRead =
    R"(varoGetInterface("mng0") -> 0 {192.0.2.2/255.255.255.0 in network byte order})";
const std::string secondAddressRead =
    R"(varoGetInterface("mng0") -> 0 {198.51.100.2/255.255.255.0 in network byte order})";

class PollLoop : public EntityTest {
protected:
    void SetUp() override {
        // Each look at the interface is followed by what the test has in mind for it; then the loop
        // ends.
        platform.onSleep = [this](unsigned int) {
            if (nextStep < steps.size()) {
                steps[nextStep++]();
            } else {
                entity().pollStop = true;
            }
        };
    }

    void setAddress(std::uint32_t address) {
        platform.addressing.interfaces["mng0"] = {address, mask};
    }

    std::vector<std::function<void()>> steps;
    std::size_t nextStep = 0;
};

TEST_F(PollLoop, PollThreadRunsTheLoopOfItsEntity) {
    EXPECT_EQ(Network::PollThread(&entity()), nullptr);
    EXPECT_JOURNAL(noManagementInterface, "sleep(5)");
}

TEST_F(PollLoop, LoopThatIsToldToStopDoesNotEvenLook) {
    entity().pollStop = true;
    EXPECT_EQ(entity().Poll(), 0);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(PollLoop, LoopLooksAtOnceAndThenEveryFiveSeconds) {
    setAddress(0);
    steps = {[] {}, [] {}};
    EXPECT_EQ(entity().Poll(), 0);
    const std::string nothing =
        R"(varoGetInterface("mng0") -> 0 {0.0.0.0/255.255.255.0 in network byte order})";
    EXPECT_JOURNAL(nothing, "sleep(5)", nothing, "sleep(5)", nothing, "sleep(5)");
}

TEST_F(PollLoop, FirstAddressFiresBothListsOnce) {
    setAddress(firstAddress);
    subscribe("a", true);
    subscribe("b", true);
    steps = {[] {}};
    entity().Poll();
    EXPECT_JOURNAL(firstAddressRead, "a is asked about 0", "b is asked about 0",
                   "a is told 3221225986", "b is told 3221225986", "sleep(5)", firstAddressRead,
                   "sleep(5)");
    EXPECT_EQ(entity().currentIpAddr, firstAddress);
}

TEST_F(PollLoop, PreHandlersAreOfferedTheOldAddress) {
    setAddress(firstAddress);
    steps = {[this] {
        subscribe("a", true);
        setAddress(secondAddress);
    }};
    entity().Poll();
    EXPECT_JOURNAL(firstAddressRead, "sleep(5)", secondAddressRead, "a is asked about 3221225986",
                   "a is told 3325256706", "sleep(5)");
}

TEST_F(PollLoop, RefusalEndsTheAskingAndStopsNothing) {
    setAddress(firstAddress);
    subscribe("a", true);
    subscribe("b", false);
    subscribe("c", true);
    entity().Poll();
    EXPECT_JOURNAL(firstAddressRead, "a is asked about 0", "b is asked about 0",
                   "a is told 3221225986", "b is told 3221225986", "c is told 3221225986",
                   "sleep(5)");
    EXPECT_EQ(entity().currentIpAddr, firstAddress);
}

TEST_F(PollLoop, LostAddressFiresWithZero) {
    setAddress(firstAddress);
    steps = {[this] {
        subscribe("a", true);
        setAddress(0);
    }};
    entity().Poll();
    EXPECT_THAT(journal(), testing::IsSupersetOf({"a is asked about 3221225986", "a is told 0"}));
    EXPECT_EQ(entity().currentIpAddr, 0U);
}

TEST_F(PollLoop, FailedLookIsSkippedSilentlyAndTheNextOneCounts) {
    setAddress(firstAddress);
    subscribe("a", true);
    platform.fail("varoGetInterface", 7, 1);
    steps = {[] {}};
    entity().Poll();
    EXPECT_JOURNAL(R"(varoGetInterface("mng0") -> 7)", "sleep(5)", firstAddressRead,
                   "a is asked about 0", "a is told 3221225986", "sleep(5)");
}

// The address is remembered between the asking and the telling.
TEST_F(PollLoop, EmptyHandlerRaisesTheFrameworksError) {
    setAddress(firstAddress);
    const auto raised = testing::ThrowsMessage<boost::bad_function_call>(
        testing::StrEq("call to empty boost::function"));
    entity().mngAddrChanged.subscribePost({});
    EXPECT_THAT([] { entity().Poll(); }, raised);
    EXPECT_EQ(entity().currentIpAddr, firstAddress);
    setAddress(secondAddress);
    entity().mngAddrChanged.subscribePre({});
    EXPECT_THAT([] { entity().Poll(); }, raised);
    EXPECT_EQ(entity().currentIpAddr, firstAddress);
    EXPECT_JOURNAL(firstAddressRead, secondAddressRead);
}

}  // namespace
