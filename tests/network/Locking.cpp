// The lock that each exported function's operation takes.

#include "network/EntityTest.h"
#include "network/exportedFunctions.h"
#include "network/fixedFiles.h"
#include "network/journals.h"

#include <algorithm>
#include <iterator>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two of the operations read files of fixed names.
class Locking : public EntityTest, public testing::WithParamInterface<ExportedFunction> {
    FixedFiles files;
};

std::string nameOf(const testing::TestParamInfo<ExportedFunction>& info) { return info.param.name; }

/// What an operation writes before it takes its lock: nothing, but for the one that traces its
/// entry.
Entries tracedBefore(const ExportedFunction& function) {
    if (function.name == "networkSetDefVlanMode") {
        return {error("setDefVlanMode():1038 Entering function: defVid=1, defMode=1")};
    }
    return {};
}

/// What it adds to the report of a refused lock.
Entries tracedBehind(const ExportedFunction& function) {
    if (function.name == "networkSetDefVlanMode") {
        return {error("setDefVlanMode():1042")};
    }
    return {};
}

bool isLockEntry(const std::string& entry) { return entry.find("Lock") != std::string::npos; }

/// The locks that an operation without one takes for a part of its work.
Entries locksOfAPart(const ExportedFunction& function) {
    if (function.name == "networkSetOntMng") {
        return sharing();  // to read the entity's own state
    }
    return {};
}

TEST_P(Locking, IsOfItsKindAndComesBeforeAnythingElse) {
    const ExportedFunction& function = GetParam();
    function.callWithBuffers();
    const std::vector<std::string> entries = journal();
    std::vector<std::string> locks;
    std::ranges::copy_if(entries, std::back_inserter(locks), isLockEntry);
    if (function.lock.empty()) {
        EXPECT_THAT(locks, testing::ElementsAreArray(locksOfAPart(function)));
        return;
    }
    Entries first = tracedBefore(function);
    first.push_back(function.lock);
    ASSERT_GT(entries.size(), first.size());
    EXPECT_EQ(Entries(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(first.size())),
              first);
    EXPECT_EQ(entries.back(), "~" + function.lock);
    EXPECT_EQ(locks.front(), function.lock);
}

TEST_P(Locking, RefusedMeansFailureBeforeAnyArgumentIsLookedAt) {
    const ExportedFunction& function = GetParam();
    logEverything();
    if (function.lock.empty()) {
        function.callWithNulls();
        Entries entries = journal();
        std::erase_if(entries, [](const std::string& entry) { return !isLockEntry(entry); });
        EXPECT_THAT(entries, testing::ElementsAreArray(locksOfAPart(function)));
        return;
    }
    platform.fail(function.lock, 1);
    EXPECT_EQ(function.callWithNulls(), -1);
    EXPECT_THAT(journal(),
                testing::ElementsAreArray(sequence(tracedBefore(function), refused(function.lock),
                                                   tracedBehind(function))));
}

INSTANTIATE_TEST_SUITE_P(ExportedFunctions, Locking, testing::ValuesIn(exportedFunctions()),
                         nameOf);

// Every function of the table stands in the library's list of exports and the other way round; that
// list is compared with the library elsewhere.
TEST(ExportedFunctions, AreEightyTwo) { EXPECT_EQ(exportedFunctions().size(), 82U); }

class LockOfRuleCount : public EntityTest {};

TEST_F(LockOfRuleCount, IsShared) {
    entity().getAclIdx();
    EXPECT_THAT(journal(), ElementsAre("sharedLock", "~sharedLock"));
}

TEST_F(LockOfRuleCount, RefusedIsMinusOneAsAnUnsignedValue) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(entity().getAclIdx(), 0xffffffffU);
    EXPECT_THAT(journal(), refusedLock("sharedLock"));
}

TEST_F(LockOfRuleCount, IsSharedForTheIpv6InformationToo) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(entity().getNetworkInfoIpv6(nullptr), -1);
    EXPECT_THAT(journal(), refusedLock("sharedLock"));
}

}  // namespace
