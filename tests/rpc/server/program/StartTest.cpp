// The service's start function.

#include "network/rpc/networkProgram.h"
#include "program/ProgramTest.h"

namespace {

class Start : public ProgramTest {};

TEST_F(Start, RegistersTheProgramOnBothTransportsWhateverItsArgument) {
    int anything = 0;
    for (void* const argument :
         {static_cast<void*>(nullptr), static_cast<void*>(&anything), reinterpret_cast<void*>(1)}) {
        platform.nextDescriptor = fake::Platform::firstDescriptor;
        EXPECT_EQ(rpcNetworkStart(argument), nullptr);
        EXPECT_EQ(platform.registeredDispatch, &rpcNetworkDispatch);
        EXPECT_THAT(journal(),
                    ElementsAre("pmap_unset(536870921, 1) -> 0", "socket(2, 2, 17) -> 1000",
                                "bind(1000, 2 127.0.0.1:0, 16) -> 0", "svcudp_create(1000) -> 0",
                                "svc_register(1000, 536870921, 1, 17) -> 0",
                                "socket(2, 1, 6) -> 1001", "bind(1001, 2 127.0.0.1:0, 16) -> 0",
                                "listen(1001, 128) -> 0", "svctcp_create(1001, 0, 0) -> 0",
                                "svc_register(1001, 536870921, 1, 6) -> 0"));
    }
    EXPECT_EQ(anything, 0);
}

TEST_F(Start, RegistersTheSameRoutineOnEveryTransport) {
    for (const char* const failing : {"socket UDP", "socket TCP"}) {
        fake::Platform board;
        board.fail(failing, 24);
        testing::internal::CaptureStderr();
        EXPECT_EQ(rpcNetworkStart(nullptr), nullptr);
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    EndsWith("version 1 (24 - Too many open files).\n"));
        EXPECT_EQ(board.registeredDispatch, &rpcNetworkDispatch);
    }
}

}  // namespace
