#include "board/framework/boardIdentity.h"
#include "doubles.h"
#include "framework/relayAgents.h"
#include "support/matchers.h"

namespace {

using test::CapturedLog;

}  // namespace

TEST(RelayAgents, KeepTheirOwnTextsOfTheSystem) {
    dhcpra::instance().setSystemContact("contact");
    dhcpra::instance().setSystemLocation("location");
    dhcpra::instance().setSystemName("name");
    pppoeia::instance().setSystemContact("c");
    pppoeia::instance().setSystemLocation("l");
    pppoeia::instance().setSystemName("n");
    EXPECT_EQ(framework::dhcpRelaySystemTexts(),
              (framework::SystemTexts{"contact", "location", "name"}));
    EXPECT_EQ(framework::pppoeAgentSystemTexts(), (framework::SystemTexts{"c", "l", "n"}));
    pppoeia::instance().setSystemLocation("");
    EXPECT_EQ(framework::pppoeAgentSystemTexts(), (framework::SystemTexts{"c", "", "n"}));
}

TEST(RelayAgents, TellTheirTextsAtTheDebugLevel) {
    {
        const CapturedLog log(LogImpl::levelInfo);
        dhcpra::instance().setSystemName("quiet");
        EXPECT_THAT(log.entries(), IsEmpty());
    }
    const CapturedLog log;
    dhcpra::instance().setSystemContact("noc");
    pppoeia::instance().setSystemName("node 7");
    EXPECT_THAT(
        log.entries(),
        ElementsAre(Pair(LogImpl::levelDebug, "DHCP relay agent: the system's contact is \"noc\""),
                    Pair(LogImpl::levelDebug,
                         "PPPoE intermediate agent: the system's name is \"node 7\"")));
}
