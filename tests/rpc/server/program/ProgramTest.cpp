#include "program/ProgramTest.h"

#include "network/rpc/networkProgram.h"

#include <fmt/core.h>

ProgramTest::ProgramTest() {
    platform.journal.takeAll();
    exportedFunctions() = {};
}

void ProgramTest::TearDown() {
    if (!HasFailure()) {
        EXPECT_THAT(platform.journal.takeAll(), IsEmpty())
            << "entries that the test did not look at";
    }
}

void ProgramTest::serve(unsigned int procedure, FakeTransport& transport) {
    svc_req request{};
    request.rq_prog = 536870921;
    request.rq_vers = 1;
    request.rq_proc = procedure;
    request.rq_xprt = transport.get();
    rpcNetworkDispatch(&request, transport.get());
}

Units ProgramTest::serve(const ProcedureCall& call, int status) {
    platform.fail(call.function(), status);
    FakeTransport transport(call.argument.units());
    serve(call.number, transport);
    EXPECT_THAT(transport.events(), servedCall());
    return transport.result;
}

std::vector<std::string> ProgramTest::journalOf(const ProcedureCall& call, int status) {
    if (call.filling == Filling::none) {
        return {};
    }
    return {fmt::format("{} -> {}", call.exportedCall, status)};
}

std::string testName(const testing::TestParamInfo<ProcedureCall>& test) {
    return fmt::format("{}_{}_{}", test.param.number, test.param.procedure, test.index);
}
