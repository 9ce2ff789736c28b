// Registration of a service on its two transports.

#include "HostTest.h"
#include "fake/transports.h"
#include "rte/BLL/core/rpcDispatch.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <ostream>
#include <set>

namespace {

using Entries = std::vector<std::string>;

constexpr unsigned long program = 0x20000009;
constexpr unsigned long version = 1;

void dispatch(svc_req*, SVCXPRT*) {}
void otherDispatch(svc_req*, SVCXPRT*) {}

/// A call that fails, and what is said of it.
struct Failure {
    const char* call;
    int result;
    const char* message;  ///< behind the place in the source
};

void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.call; }

constexpr Failure failures[] = {
    {"socket UDP", EMFILE,
     R"(Cannot create UDP socket for RPC service 0x20000009/536870921, version 1)"
     R"( \(24 - Too many open files\)\.)"},
    {"bind UDP", EADDRINUSE,
     R"(Cannot bind UDP socket for RPC service 0x20000009/536870921, version 1)"
     R"( \(98 - Address already in use\)\.)"},
    {"svcudp_create UDP", 1, R"(Cannot create UDP RPC service 0x20000009/536870921, version 1\.)"},
    {"svc_register UDP", 1, R"(Cannot register UDP RPC service 0x20000009/536870921, version 1\.)"},
    {"socket TCP", EACCES,
     R"(Cannot create TCP socket for RPC service 0x20000009/536870921, version 1)"
     R"( \(13 - Permission denied\)\.)"},
    {"bind TCP", EADDRNOTAVAIL,
     R"(Cannot bind TCP socket for RPC service 0x20000009/536870921, version 1)"
     R"( \(99 - Cannot assign requested address\)\.)"},
    {"listen TCP", EOPNOTSUPP,
     R"(Cannot set TCP socket for RPC service 0x20000009/536870921, version 1)"
     R"( to listen mode \(95 - Operation not supported\)\.)"},
    {"svctcp_create TCP", 1, R"(Cannot create TCP RPC service 0x20000009/536870921, version 1\.)"},
    {"svc_register TCP", 1, R"(Cannot register TCP RPC service 0x20000009/536870921, version 1\.)"},
};

const std::string place = R"(rte/BLL/core/rpcProxy\.cpp:[1-9][0-9]* )";

const Entries unset = {"pmap_unset(536870921, 1) -> 0"};
const Entries overUdp = {"socket(2, 2, 17) -> 1000", "bind(1000, 2 127.0.0.1:0, 16) -> 0",
                         "svcudp_create(1000) -> 0", "svc_register(1000, 536870921, 1, 17) -> 0"};
const Entries overTcp = {"socket(2, 1, 6) -> 1001", "bind(1001, 2 127.0.0.1:0, 16) -> 0",
                         "listen(1001, 128) -> 0", "svctcp_create(1001, 0, 0) -> 0",
                         "svc_register(1001, 536870921, 1, 6) -> 0"};

Entries operator+(Entries left, const Entries& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// The calls on a transport up to the one that fails. Nothing follows it: descriptor and transport
/// stay.
Entries upTo(const Failure& failure, const Entries& calls) {
    const std::string name = failure.call;
    const std::string function = name.substr(0, name.find(' ')) + "(";
    Entries made;
    for (const std::string& call : calls) {
        if (call.starts_with(function)) {
            const bool hasErrno = !function.starts_with("svc");
            made.push_back(call.substr(0, call.find(" -> ")) + (hasErrno ? " -> errno " : " -> ") +
                           std::to_string(failure.result));
            return made;
        }
        made.push_back(call);
    }
    ADD_FAILURE() << "no call of " << function;
    return made;
}

bool isUdp(const Failure& failure) { return std::string(failure.call).ends_with("UDP"); }

class Registration : public HostTest {
protected:
    std::string printedByRegistration() {
        return printedBy([] { rpcProxyRegisterSvc(program, version, dispatch); });
    }
};

TEST_F(Registration, ServesBothTransportsOfTheLoopbackAddress) {
    EXPECT_EQ(printedByRegistration(), "");
    EXPECT_THAT(journal(), ElementsAreArray(unset + overUdp + overTcp));
}

TEST_F(Registration, PassesOnWhatItIsGiven) {
    EXPECT_EQ(printedBy([] { rpcProxyRegisterSvc(0xfffffffe, 3000000000, otherDispatch); }), "");
    EXPECT_EQ(platform.registeredDispatch, &otherDispatch);
    const Entries entries = journal();
    ASSERT_EQ(entries.size(), 10U);
    EXPECT_EQ(entries[0], "pmap_unset(4294967294, 3000000000) -> 0");
    EXPECT_EQ(entries[4], "svc_register(1000, 4294967294, 3000000000, 17) -> 0");
    EXPECT_EQ(entries[9], "svc_register(1001, 4294967294, 3000000000, 6) -> 0");
}

TEST_F(Registration, GivesEveryTransportTheRoutine) {
    platform.fail("socket TCP", EMFILE);
    printedByRegistration();
    EXPECT_EQ(platform.registeredDispatch, &dispatch);
    platform.registeredDispatch = nullptr;
    platform.fail("socket UDP", EMFILE);
    platform.fail("socket TCP", 0);
    printedByRegistration();
    EXPECT_EQ(platform.registeredDispatch, &dispatch);
    journal();
}

TEST_F(Registration, DoesNotCareWhetherThereWasAMappingBefore) {
    platform.fail("pmap_unset", 1);
    EXPECT_EQ(printedByRegistration(), "");
    EXPECT_THAT(journal(),
                ElementsAreArray(Entries{"pmap_unset(536870921, 1) -> 1"} + overUdp + overTcp));
}

TEST_F(Registration, WritesSmallProgramNumbersWithEightDigits) {
    platform.fail("socket UDP", EMFILE);
    platform.fail("svc_register TCP", 1);
    EXPECT_THAT(printedBy([] { rpcProxyRegisterSvc(100, 4000000000, dispatch); }),
                MatchesRegex(
                    place +
                    R"(Cannot create UDP socket for RPC service 0x00000064/100, version 4000000000)"
                    R"( \(24 - Too many open files\)\.)"
                    "\n" +
                    place +
                    R"(Cannot register TCP RPC service 0x00000064/100, version 4000000000\.)"
                    "\n"));
    journal();
}

/// Has a transport receive a datagram of some bytes. Whether it then decodes a number of four.
bool decodesNumberFrom(SVCXPRT* transport, std::size_t size) {
    int sockets[2] = {-1, -1};
    const char bytes[4] = {};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, sockets), 0);
    EXPECT_EQ(send(sockets[1], bytes, size, 0), static_cast<ssize_t>(size));
    transport->xp_fd = sockets[0];
    rpc_msg message{};
    EXPECT_TRUE(transport->xp_ops->xp_recv(transport, &message));
    int number = 0;
    const bool isDecoded = svc_getargs(transport, (rpcFilter<int, xdr_int>),
                                       reinterpret_cast<char*>(&number)) != FALSE;
    close(sockets[0]);
    close(sockets[1]);
    return isDecoded;
}

TEST_F(Registration, BoundsArgumentsByTheirDatagram) {
    printedByRegistration();
    journal();
    SVCXPRT* const udp = fake::transportOf(1000);
    EXPECT_TRUE(decodesNumberFrom(udp, 4));
    EXPECT_FALSE(decodesNumberFrom(udp, 3));
    EXPECT_TRUE(decodesNumberFrom(fake::transportOf(1001), 3)) << "a stream knows no datagrams";
}

class FailingRegistration : public Registration, public testing::WithParamInterface<Failure> {};

INSTANTIATE_TEST_SUITE_P(, FailingRegistration, testing::ValuesIn(failures), [](const auto& test) {
    std::string name = test.param.call;
    name[name.find(' ')] = '_';
    return name;
});

TEST_P(FailingRegistration, IsReportedAndLeavesTheOtherTransport) {
    const Failure& failure = GetParam();
    platform.fail(failure.call, failure.result);
    EXPECT_THAT(printedByRegistration(), MatchesRegex(place + failure.message + "\n"));
    EXPECT_THAT(journal(),
                ElementsAreArray(isUdp(failure) ? unset + upTo(failure, overUdp) + overTcp
                                                : unset + overUdp + upTo(failure, overTcp)));
}

TEST_F(Registration, ReportsBothTransports) {
    for (const Failure& udp : failures) {
        for (const Failure& tcp : failures) {
            if (!isUdp(udp) || isUdp(tcp)) {
                continue;
            }
            platform.nextDescriptor = fake::Platform::firstDescriptor;
            platform.fail(udp.call, udp.result, 1);
            platform.fail(tcp.call, tcp.result, 1);
            EXPECT_THAT(printedByRegistration(),
                        MatchesRegex(place + udp.message + "\n" + place + tcp.message + "\n"));
            EXPECT_THAT(journal(),
                        ElementsAreArray(unset + upTo(udp, overUdp) + upTo(tcp, overTcp)));
        }
    }
}

TEST_F(Registration, TellsTheFailuresOfATransportApartByTheirPlaceInTheSource) {
    std::set<std::string> places[2];
    for (const Failure& failure : failures) {
        platform.fail(failure.call, failure.result, 1);
        const std::string printed = printedByRegistration();
        places[isUdp(failure) ? 0 : 1].insert(printed.substr(0, printed.find(' ')));
    }
    EXPECT_EQ(places[0].size(), 4U);
    EXPECT_EQ(places[1].size(), 5U);
    journal();
}

}  // namespace
