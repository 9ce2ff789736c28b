#include "tests/board/varo/VaroTest.h"

#include <limits>

namespace {

using namespace varotest;

class InternalConfig : public VaroTest {
protected:
    static std::int16_t stored() {
        varoLib_s_internalConfig record{.severity = 99};
        EXPECT_EQ(varoGetInternalConfig(&record), varo::success);
        return record.severity;
    }

    static int update(std::int16_t inRecord, std::int16_t severity) {
        varoLib_s_internalConfig record{.severity = inRecord};
        return varoUpdateInternalConfig(&record, severity);
    }
};

TEST_F(InternalConfig, HasSeverity3FromTheFactory) { EXPECT_EQ(stored(), 3); }

TEST_F(InternalConfig, SurvivesARestart) {
    EXPECT_EQ(update(6, 6), varo::success);
    EXPECT_EQ(restart(), varo::success);
    EXPECT_EQ(stored(), 6);
}

TEST_F(InternalConfig, StoresTheSecondArgumentWhenTheTwoDiffer) {
    varoLib_s_internalConfig record{.severity = 2};
    EXPECT_EQ(varoUpdateInternalConfig(&record, 6), varo::success);
    EXPECT_EQ(stored(), 6);
    EXPECT_EQ(record.severity, 2);
}

TEST_F(InternalConfig, StoresEverySeverityThatItsTypeHolds) {
    using Limits = std::numeric_limits<std::int16_t>;
    for (const std::int16_t severity : {Limits::min(), std::int16_t{-1}, Limits::max()}) {
        EXPECT_EQ(update(severity, severity), varo::success);
        EXPECT_EQ(stored(), severity);
    }
}

TEST_F(InternalConfig, IsTheThresholdOfTheLibrarysOwnLogAtOnce) {
    EXPECT_EQ(update(2, 2), varo::success);
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(update(3, 3), varo::success);
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
    EXPECT_THAT(log.take(), ElementsAre("3 varoGetInternalConfig: null pointer"));
}

TEST_F(InternalConfig, IsTheThresholdFromTheOpeningOn) {
    EXPECT_EQ(update(2, 2), varo::success);
    EXPECT_EQ(restart(), varo::success);
    EXPECT_EQ(varoGetInternalConfig(nullptr), varo::invalidArgument);
    EXPECT_THAT(log.lines(), IsEmpty());
}

}  // namespace
