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

    /// Handlers of the management address that write down what they are told.
    void subscribe(const std::string& name, bool answer) {
        entity().mngAddrChanged.subscribePre([this, name, answer](unsigned int address) {
            platform.journal.write(name + " is asked about " + std::to_string(address));
            return answer;
        });
        entity().mngAddrChanged.subscribePost([this, name](unsigned int address) {
            platform.journal.write(name + " is told " + std::to_string(address));
        });
    }

    fake::Platform platform;
};

/// Looks at the calling thread's journal, which must consist of these entries and lists of them.
#define EXPECT_JOURNAL(...) EXPECT_THAT(journal(), testing::ElementsAreArray(sequence(__VA_ARGS__)))
