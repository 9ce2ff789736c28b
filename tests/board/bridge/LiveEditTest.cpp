// Lists are edited while packets come in.

#include "FilterFixture.h"

#include <atomic>
#include <thread>

using test::from;
using test::ip;

namespace {

class LiveEditTest : public test::FilterFixture {
protected:
    /// Edits the list, without taking it off the port, as long as a flow is observed.
    template <class Observation>
    int whileEdited(Observation observe) {
        std::atomic<bool> isOver{false};
        std::atomic<int> edits{0};
        std::thread editor([&] {
            while (!isOver) {
                unsigned int id = 0;
                acls().createRule(list, false, id, 1);
                acls().addCondition(list, id, from(ip(203, 0, 113, 9), 0));
                acls().changeRuleSequenceNumber(list, id, 2);
                acls().delRuleById(list, id);
                edits += 4;
            }
        });
        int result = 0;
        // So that both have had their turns on the one processor.
        while (edits < 200) {
            result += observe();
        }
        isOver = true;
        editor.join();
        return result;
    }
};

}  // namespace

TEST_F(LiveEditTest, AFlowThatIsPermittedLosesNothing) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_EQ(whileEdited([&] { return 5 - probe.countTaken("192.0.2.2", 5); }), 0);
}

TEST_F(LiveEditTest, AFlowThatIsDeniedNeverPasses) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_EQ(whileEdited([&] { return probe.countTaken("203.0.113.9", 5); }), 0);
}

/// Many users at once, some of whom read.
TEST_F(LiveEditTest, OperationsMayComeFromSeveralThreads) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    std::vector<std::thread> users;
    for (int user = 0; user < 3; ++user) {
        users.emplace_back([&, user] {
            const std::string name = "list" + std::to_string(user);
            for (int round = 0; round < 5; ++round) {
                unsigned int id = 0;
                EXPECT_EQ(acls().createACL(name, ACLContainer_t::aclRemoteAccess), 0);
                EXPECT_EQ(acls().createRule(name, true, id, 0), 0);
                EXPECT_EQ(acls().addCondition(name, id, from(ip(10, 0, 0, 0), 0xff)), 0);
                EXPECT_EQ(counters().size(), 2U);
                EXPECT_EQ(acls().deleteACL(name), 0);
            }
        });
    }
    for (std::thread& user : users) {
        user.join();
    }
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_EQ(chain().size(), 2U);
}
