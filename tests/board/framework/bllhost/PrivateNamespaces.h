#pragma once

#include <gtest/gtest.h>

namespace test {

/// Gives the test's process a network, mounts and System V IPC of its own: a loopback interface
/// that is up and nothing else, and an empty /run, so that a port mapper can be started beside the
/// machine's. Needs root; fails where that cannot be had.
class PrivateNamespaces : public testing::Environment {
public:
    void SetUp() override;
};

}  // namespace test
