#pragma once

#include "fake/Platform.h"
#include "rte/required/include/hasses/HassesComm.h"
#include "support/CapturedOutput.h"
#include "support/matchers.h"

#include <string>
#include <vector>

/// Tests of the senders on a fake platform. At a test's end every call and every printed line must
/// have been looked at.
class HassesTest : public testing::Test {
protected:
    void TearDown() override;

    std::vector<std::string> journal() { return platform.journal.take(); }
    std::string printed() { return output.take(); }

    fake::Platform platform;
    CapturedOutput output;
};
