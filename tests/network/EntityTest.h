#pragma once

#include "fake/Platform.h"
#include "network/Network.h"
#include "network/journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Tests of the entity on a fake platform. Each test has a platform and an entity of its own; at
/// its end every entry of the journal must have been looked at.
class EntityTest : public testing::Test {
protected:
    EntityTest();
    ~EntityTest() override;

    void TearDown() override;

    /// The entity, which is the one that the exported functions reach.
    static Network& entity() { return singleton<Network>::instance(); }

    /// Destroys the entity and makes it anew, in its place; the journal shows both.
    static void remakeEntity();

    /// The calling thread's journal since the last look.
    std::vector<std::string> journal() { return platform.journal.take(); }

    /// Lets every message pass.
    void logEverything();

    fake::Platform platform;
};

/// The journal of an operation whose lock was refused.
inline auto refusedLock(const std::string& lock) {
    return testing::ElementsAreArray(refused(lock));
}
