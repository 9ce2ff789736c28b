#include "network/EntityTest.h"

#include "framework/Interfaces.h"
#include "platform/zubridge.h"

#include <memory>
#include <sstream>

EntityTest::EntityTest() {
    // Made on first use, which must not fall into the journal of whichever test comes first.
    singleton<zubridge>::instance();
    singleton<Interfaces>::instance();
    remakeEntity();
    platform.journal.takeAll();
}

EntityTest::~EntityTest() {
    entity().stop();  // leaves the events of the process-wide singletons
}

void EntityTest::TearDown() {
    if (!HasFailure()) {
        EXPECT_THAT(platform.journal.takeAll(), testing::IsEmpty())
            << "entries that the test did not look at";
    }
}

void EntityTest::remakeEntity() {
    Network* const place = &entity();
    std::destroy_at(place);
    std::construct_at(place);
}

void EntityTest::logEverything() {
    std::ostringstream reply;
    entity().externalMessage("networkBle_severity", "7", &reply);
}
