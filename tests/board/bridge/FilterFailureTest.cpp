// What happens when the kernel refuses, or holds something else than it should.

#include "FilterFixture.h"
#include "board/bridge/rulesDocument.h"
#include "platform/zubridge.h"
#include "support/withoutSockets.h"

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

using bridge::SavedRule;
using test::from;

namespace {

/// This thread may not administer networks for a while.
class Powerless {
public:
    Powerless() {
        call(SYS_capget, saved);
        auto less = saved;
        less[0].effective &= ~(1U << CAP_NET_ADMIN);
        call(SYS_capset, less);
    }
    ~Powerless() { call(SYS_capset, saved); }
    Powerless(const Powerless&) = delete;
    Powerless& operator=(const Powerless&) = delete;

private:
    using Sets = std::array<__user_cap_data_struct, 2>;

    static void call(long number, Sets& sets) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        if (syscall(number, &header, sets.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "capabilities");
        }
    }

    Sets saved{};
};

/// This process may have no more of something for a while.
class Limited {
public:
    Limited(__rlimit_resource limited, rlim_t most) : resource(limited) {
        std::signal(SIGXFSZ, SIG_IGN);
        EXPECT_EQ(getrlimit(resource, &saved), 0);
        const rlimit less{most, saved.rlim_max};
        EXPECT_EQ(setrlimit(resource, &less), 0);
    }
    ~Limited() {
        EXPECT_EQ(setrlimit(resource, &saved), 0);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    Limited(const Limited&) = delete;
    Limited& operator=(const Limited&) = delete;

private:
    const __rlimit_resource resource;
    rlimit saved{};
};

class FilterFailureTest : public test::FilterFixture {};

}  // namespace

TEST_F(FilterFailureTest, AProcessWithoutTheRightIsToldSoAtTheFirstCall) {
    {
        const Powerless now;
        EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), bridge::filterFailed);
    }
    EXPECT_THAT(newMessages(),
                ElementsAre(HasSubstr("createACL of access list \"RA_mng0\": nftables: ")));
    EXPECT_EQ(acls().deleteACL(list), bridge::unknownList);
    EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), 0);
}

TEST_F(FilterFailureTest, ARefusedChangeLeavesEverythingAsItWas) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, true, id, 1), 0);
    const std::string rulesBefore = ruleset();
    const std::string savedBefore = saved();
    {
        const Powerless now;
        EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), bridge::filterFailed);
        EXPECT_EQ(acls().deassignACL(list, 1, false), bridge::filterFailed);
        EXPECT_EQ(acls().deleteACL(list), bridge::filterFailed);
        EXPECT_EQ(newMessages().size(), 3U);
    }
    EXPECT_EQ(ruleset(), rulesBefore);
    EXPECT_EQ(saved(), savedBefore);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), bridge::listAssigned);
    ACLContainer_t::aclRule_t rule{};
    EXPECT_EQ(acls().getACLRule(list, id, rule), 0);
    EXPECT_THAT(rule.conditions, IsEmpty());
    newMessages();

    EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), 0);
    EXPECT_THAT(bridge::rulesFormat.parse(saved()).inForce,
                ElementsAre(SavedRule{1, 0, true}, SavedRule{lan, ~mask24, true}));
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(FilterFailureTest, AKernelWithoutAPacketFilterIsNamed) {
    withoutSockets(AF_NETLINK, EPROTONOSUPPORT, [this] {
        EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), bridge::filterFailed);
    });
    EXPECT_THAT(newMessages(),
                ElementsAre("createACL of access list \"RA_mng0\": the kernel has no "
                            "packet filter: Protocol not supported"));
}

TEST_F(FilterFailureTest, ARefusedChangeThatStaysStoredIsSaid) {
    product.start();
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, true, id, 1), 0);
    EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), 0);
    {
        // There is room for less, but not to put back what was there.
        const Powerless now;
        const Limited full(RLIMIT_FSIZE, std::filesystem::file_size(savedFile()) - 1);
        EXPECT_EQ(acls().delCondition(list, id, 1), bridge::filterFailed);
    }
    EXPECT_THAT(newMessages(),
                ElementsAre("a change that was not made stays stored: the rules cannot be stored: "
                            "cannot write " +
                                savedFile() + ".new: File too large",
                            HasSubstr("delCondition of access list \"RA_mng0\": nftables: ")));
    EXPECT_THAT(bridge::rulesFormat.parse(saved()).inForce, IsEmpty());
}

TEST_F(FilterFailureTest, CountersThatCannotBeReadAreAnError) {
    product.start();
    EXPECT_EQ(counters().size(), 1U);
    const Powerless now;
    EXPECT_THROW(counters(), std::exception);
}

TEST_F(FilterFailureTest, WhatAFormerProcessHasLeftIsReplaced) {
    shell(
        "nft -f - <<'EOF'\n"
        "table inet networkble_acl {\n"
        "  counter rule999 { }\n"
        "  chain acl1_RA_mng0 { drop\n }\n"
        "  chain input { type filter hook input priority 0; policy accept;\n"
        "    iifname mng0 jump acl1_RA_mng0\n }\n"
        "}\n"
        "EOF\n");
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    product.start();
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_THAT(ruleset(), Not(HasSubstr("counter rule999 {")));
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "203.0.113.9"}), ElementsAre("192.0.2.2"));
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(FilterFailureTest, ATableThatSomeoneElseRemovedIsMadeAnew) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    shell("nft flush ruleset");
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "203.0.113.9"}),
                ElementsAre("192.0.2.2", "198.51.100.7"));
    EXPECT_THAT(newMessages(),
                ElementsAre("the table networkble_acl of the packet filter was "
                            "removed by someone else: it is made anew, with counters "
                            "at 0"));
    EXPECT_EQ(chain().size(), 3U);
}

TEST_F(FilterFailureTest, ATableThatSomeoneElseChangedIsPutRightWithItsCounters) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_EQ(probe.countTaken("192.0.2.2", 2), 2);
    const std::string chain =
        "inet networkble_acl acl$(nft list table inet networkble_acl | "
        "sed -n 's/.*chain acl\\(.*\\) {/\\1/p')";
    // The catch-all is gone, in front of which the next rule goes.
    shell("nft flush chain " + chain +
          " && nft insert rule inet networkble_acl input drop && "
          "nft add chain inet networkble_acl foreign");
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "203.0.113.9"}),
                ElementsAre("192.0.2.2", "198.51.100.7"));
    EXPECT_THAT(ruleset(), Not(HasSubstr("foreign")));
    EXPECT_THAT(counters()[0], HasSubstr(" 3 packets "));
    EXPECT_THAT(newMessages(), ElementsAre("the table networkble_acl of the packet filter was "
                                           "changed by someone else: it is put right"));
}

TEST_F(FilterFailureTest, FactorySettingsLeaveTheFilter) {
    product.start();
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_EQ(singleton<zubridge>::instance().applyDefaultSettings(), 1);
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    EXPECT_THAT(counters(), SizeIs(2));
}

TEST_F(FilterFailureTest, AClearedConfigurationTakesTheFilterOff) {
    product.start();
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    EXPECT_EQ(clearConfiguration(), 1);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_EQ(ruleset(), "");
    EXPECT_THAT(counters(), IsEmpty());
}
