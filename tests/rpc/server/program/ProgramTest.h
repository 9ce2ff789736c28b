#pragma once

#include "calls/ProcedureCall.h"
#include "exported/ExportedCall.h"
#include "fake/Platform.h"
#include "program/FakeTransport.h"
#include "support/matchers.h"

#include <string>
#include <vector>

/// Tests of the program through its dispatch routine, with faked exported functions. At the end of
/// a test every entry of the journal must have been looked at.
class ProgramTest : public testing::Test {
protected:
    ProgramTest();
    void TearDown() override;

    std::vector<std::string> journal() { return platform.journal.take(); }

    /// Has the program serve a call of the procedure that the transport holds.
    static void serve(unsigned int procedure, FakeTransport& transport);

    /// From here on the exported functions fill in other values.
    static void nextGeneration() { ++exportedFunctions().telling.generation; }

    /// Has the program serve a call. The exported function returns the status.
    Units serve(const ProcedureCall& call, int status = 0);

    /// What the call leads to in the journal.
    static std::vector<std::string> journalOf(const ProcedureCall& call, int status);

    fake::Platform platform;
};

/// What a transport is asked for during a call that is served.
inline auto servedCall() { return ElementsAre("getargs", "reply SUCCESS", "freeargs"); }

/// The name of a test that is done with a procedure call.
std::string testName(const testing::TestParamInfo<ProcedureCall>& test);
