// The lock that each exported function's operation takes.

#include "network/EntityTest.h"
#include "network/fixedFiles.h"
#include "network/operations.h"

#include <algorithm>
#include <iterator>

namespace {

using testing::ElementsAreArray;

/// Two of the operations read files of fixed names.
class Locking : public EntityTest, public testing::WithParamInterface<Operation> {
protected:
    /// What an operation writes before it takes its lock, and behind the report of a refused one:
    /// nothing, but for the one that traces its entry.
    static Entries traced(const std::string& text) {
        return GetParam().call.name == "networkSetDefVlanMode" ? Entries{error(text)} : Entries{};
    }
    static Entries tracedBefore() {
        return traced("setDefVlanMode():1038 Entering function: defVid=300, defMode=2");
    }

    /// The entries of locks alone.
    Entries locks(const Entries& entries) const {
        Entries found;
        std::ranges::copy_if(entries, std::back_inserter(found), [](const std::string& entry) {
            return entry.find("Lock") != std::string::npos;
        });
        return found;
    }
    /// The locks that an operation without one takes for a part of its work.
    static Entries locksOfAPart() { return GetParam().isLockOfAPart ? sharing() : Entries{}; }

private:
    FixedFiles files;
};

TEST_P(Locking, IsOfItsKindAndComesBeforeAnythingElse) {
    const std::string lock = GetParam().lock();
    GetParam().call.make();
    const Entries entries = journal();
    if (lock.empty()) {
        EXPECT_THAT(locks(entries), ElementsAreArray(locksOfAPart()));
        return;
    }
    const Entries first = sequence(tracedBefore(), lock);
    ASSERT_GT(entries.size(), first.size());
    EXPECT_EQ(Entries(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(first.size())),
              first);
    EXPECT_EQ(entries.back(), "~" + lock);
    EXPECT_EQ(locks(entries).front(), lock);
}

TEST_P(Locking, RefusedMeansFailureBeforeAnyArgumentIsLookedAt) {
    const std::string lock = GetParam().lock();
    logEverything();
    if (lock.empty()) {
        GetParam().call.make();
        EXPECT_THAT(locks(journal()), ElementsAreArray(locksOfAPart()));
        return;
    }
    platform.fail(lock, 1);
    EXPECT_EQ(GetParam().call.makeWithNulls(), -1);
    EXPECT_THAT(platform.logParts,
                testing::ElementsAre("<<", "Network BLE: Lock cant be obtained.\n"));
    EXPECT_JOURNAL(tracedBefore(), refused(lock), traced("setDefVlanMode():1042"));
}

INSTANTIATE_TEST_SUITE_P(ExportedFunctions, Locking, testing::ValuesIn(exportedOperations()),
                         [](const auto& operation) { return operation.param.call.name; });

using LocksOfTheRest = EntityTest;

TEST_F(LocksOfTheRest, RefusedMeansMinusOneOutsideTheExportedFunctionsToo) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(entity().getAclIdx(), 0xffffffffU);
    EXPECT_EQ(entity().getNetworkInfoIpv6(nullptr), -1);
    EXPECT_JOURNAL(refused("sharedLock"), refused("sharedLock"));
}

}  // namespace
