// Replies that cannot be sent, and arguments that cannot be released.

#include "program/ProgramTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
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

TEST_F(Replies, ToTheNullProcedureThatCannotBeSentAreLeftAtThat) {
    FakeTransport transport(Units{});
    transport.failingReplies = 1;
    serve(0, transport);
    EXPECT_THAT(transport.events(), ElementsAre("reply SUCCESS, not sent"));
}

}  // namespace
