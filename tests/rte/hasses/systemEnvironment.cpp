// The system's own queues and pipes, apart from everybody else's.

#include "support/matchers.h"
#include "support/privateNamespaces.h"

namespace {

class PrivateSystem : public testing::Environment {
public:
    void SetUp() override {
        enterPrivateNamespaces(CLONE_NEWIPC | CLONE_NEWNS);
        coverDirectory("/var/run");
    }
};

testing::Environment* const environment = testing::AddGlobalTestEnvironment(new PrivateSystem);

}  // namespace
