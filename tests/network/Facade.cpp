#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"
#include "network/networkInfoToWire.h"
#include "network/operations.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class Facade : public EntityTest {};

// What an object's virtual table is replaced by when no call may go through it.
int trapped = 0;
int trap() {
    ++trapped;
    return 0;
}

/// While alive, every virtual operation of the entity leads into trap().
class TrappedVirtualTable {
public:
    explicit TrappedVirtualTable(Network& network) : place(&network) {
        std::memcpy(&original, place, sizeof original);
        // The words in front of the slots are the offset to the top and the type information.
        std::memcpy(table.data(), original - 2, 2 * sizeof(void*));
        for (std::size_t slot = 2; slot < table.size(); ++slot) {
            table[slot] = reinterpret_cast<void*>(trap);
        }
        void** const slots = table.data() + 2;
        std::memcpy(place, &slots, sizeof slots);
        trapped = 0;
    }
    ~TrappedVirtualTable() { std::memcpy(place, &original, sizeof original); }
    TrappedVirtualTable(const TrappedVirtualTable&) = delete;
    TrappedVirtualTable& operator=(const TrappedVirtualTable&) = delete;

private:
    void* place;
    void** original;
    std::array<void*, 2 + 89> table;
};

TEST_F(Facade, CallsAreBoundStatically) {
    {
        const TrappedVirtualTable table(entity());
        for (const Operation& operation : exportedOperations()) {
            // With the lock refused, the operation itself ends before it calls any other.
            if (!operation.lock().empty()) {
                platform.fail(operation.lock(), 1, 1);
            }
            operation.call.make();
            EXPECT_EQ(trapped, 0) << operation.name();
            trapped = 0;
        }
    }
    journal();
}

// The trap is one: a call through the table is caught by it.
TEST_F(Facade, VirtualCallsWouldBeNoticed) {
    const TrappedVirtualTable table(entity());
    BLEntity* volatile base = &entity();
    base->stop();
    EXPECT_EQ(trapped, 1);
}

TEST_F(Facade, ArpListingAlwaysFails) {
    Network::ArpInfo info{1, {2, 2, 2, 2, 2, 2}, 3, 4, 5, 6};
    for (const int index : {-1, 0, 1, 2147483647}) {
        EXPECT_EQ(networkGetNextArp(index, &info), -1);
    }
    EXPECT_EQ(networkGetNextArp(0, nullptr), -1);
    EXPECT_EQ(info.ipAddr, 1U);
    EXPECT_EQ(info.value, 6U);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Facade, UnsupportedWebOperationsAlwaysFailSilently) {
    Network::HttpInfo info{true, true, 443, Network::sprotocolSsl};
    EXPECT_EQ(networkSetHttpSPort(443), -1);
    EXPECT_EQ(networkSetHttpSProto(Network::sprotocolBoth), -1);
    EXPECT_EQ(networkHttpSServerEnable(true), -1);
    EXPECT_EQ(networkHttpServerEnable(1), -1);
    EXPECT_EQ(networkGetHttpInfo(&info), -1);
    EXPECT_EQ(networkGetHttpInfo(nullptr), -1);
    EXPECT_TRUE(info.httpEnabled);
    EXPECT_EQ(info.httpsPort, 443U);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Facade, ClockTextThatIsNullRaisesTheStandardError) {
    EXPECT_THROW(
        {
            try {
                networkSetTimeInfo(nullptr);
            } catch (const std::logic_error& error) {
                EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
                throw;
            }
        },
        std::logic_error);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Facade, NetworkInfoOfAFailedReadLeavesTheRecordAlone) {
    auto info = untouched<rpcNetworkInfo>();
    platform.fail("sharedLock", 1);
    EXPECT_EQ(networkGetNetworkInfo(&info), -1);
    EXPECT_TRUE(isUntouched(info));
    EXPECT_JOURNAL(refused("sharedLock"));
}

constexpr Network::NetworkInfo telling = {
    .ipAddr = 0xc0000202,
    .netmask = 0xffffff00,
    .macAddr = {1, 2, 3, 4, 5, 6},
    .spareMacAddr = {7, 8, 9, 10, 11, 12},
    .dhcpEnabled = 1,
    .vendorClassEnabled = 1,
    .mngVlanId = 100,
    .mngVlanMode = 77,
    .defVid = 200,
    .defVlanMode = 2,
    .option82Enabled = 1,
    .reserved = 88,
};

TEST(NetworkInfoToWire, CarriesFieldsOverAsTheWireHasThem) {
    rpcNetworkInfo out{};
    toWire(telling, out);
    EXPECT_EQ(out.ipAddress, 0xc0000202U);
    EXPECT_EQ(out.netmask, 0xffffff00U);
    EXPECT_THAT(out.macAddress.octets, ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(out.macAddress2.octets, ElementsAre(7, 8, 9, 10, 11, 12));
    EXPECT_EQ(out.dhcpEnabled, 1);
    EXPECT_EQ(out.vendorClassEnabled, 1);
    EXPECT_EQ(out.mngVlanId, 100U);
    EXPECT_EQ(out.option82Enabled, 1);
    EXPECT_EQ(out.defVid, 200U);
    EXPECT_EQ(out.defVlanMode, rpcVlanNative);
}

TEST(NetworkInfoToWire, TellsTheFlagsApart) {
    Network::NetworkInfo info = telling;
    info.dhcpEnabled = 0;
    info.option82Enabled = 0;
    rpcNetworkInfo out{};
    toWire(info, out);
    EXPECT_EQ(out.dhcpEnabled, 0);
    EXPECT_EQ(out.vendorClassEnabled, 1);
    EXPECT_EQ(out.option82Enabled, 0);
}

TEST(NetworkInfoToWire, LeavesTheTwoUnusedFlagsAndClearsTheManagementVlansMode) {
    rpcNetworkInfo out{};
    out.flag4 = 4;
    out.flag5 = 5;
    out.mngVlanMode = rpcVlanNative;
    toWire(telling, out);
    EXPECT_EQ(out.flag4, 4);
    EXPECT_EQ(out.flag5, 5);
    EXPECT_EQ(out.mngVlanMode, rpcVlanNone);
}

TEST(NetworkInfoToWire, DefaultVlanModesOtherThanOneAndTwoAreNone) {
    rpcNetworkInfo out{};
    Network::NetworkInfo info = telling;
    for (const auto& [mode, wire] : {std::pair{0U, rpcVlanNone},
                                     {1U, rpcVlanTagged},
                                     {2U, rpcVlanNative},
                                     {3U, rpcVlanNone},
                                     {~0U, rpcVlanNone}}) {
        info.defVlanMode = mode;
        toWire(info, out);
        EXPECT_EQ(out.defVlanMode, wire);
    }
}

}  // namespace
