#include "rte/hasses/HassesTest.h"

void HassesTest::TearDown() {
    if (!HasFailure()) {
        EXPECT_THAT(platform.journal.takeAll(), IsEmpty());
        EXPECT_EQ(printed(), "");
    }
}
