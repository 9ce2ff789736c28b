// Replies that cannot be sent or are not wanted, and arguments that cannot be released.

#include "network/rpc/networkProgram.h"
#include "program/ProgramTest.h"
#include "rte/BLL/core/rpcDispatch.h"

#include <array>
#include <cstddef>

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class Replies : public ProgramTest {};

TEST_F(Replies, ThatCannotBeSentAreFollowedByAnError) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        FakeTransport transport(call.argument.units());
        transport.failingReplies = 1;
        serve(call.number, transport);
        EXPECT_THAT(transport.events(), ElementsAre("getargs", "reply SUCCESS, not sent",
                                                    "reply SYSTEM_ERR", "freeargs"));
        EXPECT_THAT(journal(), ElementsAreArray(journalOf(call, 0)));
    }
}

TEST_F(Replies, ThatCannotBeSentAtAllLeaveTheArgumentToBeReleased) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        FakeTransport transport(call.argument.units());
        transport.failingReplies = 2;
        serve(call.number, transport);
        EXPECT_THAT(transport.events(), ElementsAre("getargs", "reply SUCCESS, not sent",
                                                    "reply SYSTEM_ERR, not sent", "freeargs"));
        EXPECT_THAT(journal(), ElementsAreArray(journalOf(call, 0)));
    }
}

TEST_F(Replies, AreSentThoughTheArgumentCannotBeReleased) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        FakeTransport transport(call.argument.units());
        transport.failingReleases = 1;
        CaptureStderr();
        serve(call.number, transport);
        EXPECT_EQ(GetCapturedStderr(), "unable to free arguments");
        EXPECT_THAT(transport.events(),
                    ElementsAre("getargs", "reply SUCCESS", "freeargs, not done"));
        EXPECT_EQ(difference(call.result({exportedFunctions().telling, 0, true}), transport.result),
                  "");
        EXPECT_THAT(journal(), ElementsAreArray(journalOf(call, 0)));
    }
}

TEST_F(Replies, PrintNothing) {
    CaptureStderr();
    for (const ProcedureCall& call : procedureCalls()) {
        serve(call);
    }
    EXPECT_EQ(GetCapturedStderr(), "");
    journal();
}

TEST_F(Replies, GoOnAfterAnArgumentThatCannotBeReleased) {
    const ProcedureCall& call = procedureCall(16);
    FakeTransport transport(call.argument.units());
    transport.failingReleases = 1;
    CaptureStderr();
    serve(call.number, transport);
    EXPECT_EQ(GetCapturedStderr(), "unable to free arguments");
    EXPECT_EQ(serve(call, 3), Units{3});
    EXPECT_THAT(journal(), ElementsAre(R"(networkSetHostname("shelf") -> 0)",
                                       R"(networkSetHostname("shelf") -> 3)"));
}

/// The text that the procedure without a result was called with last.
std::string textWithoutResult;

/// A table with a procedure that has no result to send.
constexpr RpcProcedure proceduresWithoutResult[] = {
    {},
    {rpcFilter<char*, xdr_wrapstring>, rpcFilter<int, xdr_int>,
     [](void* argument, svc_req*) -> void* {
         textWithoutResult = *static_cast<char**>(argument);
         return nullptr;
     }},
};

// A text of its own, so that a leak is noticed.
TEST_F(Replies, AreNotSentWithoutAResultAndTheArgumentIsReleased) {
    for (const int failingReleases : {0, 1}) {
        FakeTransport transport(Argument().text("no answer to this").units());
        transport.failingReleases = failingReleases;
        alignas(std::max_align_t) std::array<std::byte, networkRpcArgumentSize> area;
        area.fill(std::byte{0xff});
        svc_req request{};
        request.rq_proc = 1;
        textWithoutResult.clear();
        CaptureStderr();
        rpcDispatch(proceduresWithoutResult, area, &request, transport.get());
        EXPECT_EQ(GetCapturedStderr(), failingReleases != 0 ? "unable to free arguments" : "");
        EXPECT_EQ(textWithoutResult, "no answer to this");
        EXPECT_THAT(
            transport.events(),
            ElementsAre("getargs", failingReleases != 0 ? "freeargs, not done" : "freeargs"));
        // The library clears the place of a text that it has released.
        EXPECT_THAT(area, Each(std::byte{0}));
        EXPECT_EQ(transport.resultPlace, nullptr);
    }
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Replies, ToTheNullProcedureThatCannotBeSentAreLeftAtThat) {
    FakeTransport transport(Units{});
    transport.failingReplies = 1;
    serve(0, transport);
    EXPECT_THAT(transport.events(), ElementsAre("reply SUCCESS, not sent"));
}

}  // namespace
