#include "board/framework/boardIdentity.h"
#include "platform/interfaces.h"
#include "support/matchers.h"

namespace {

class ManagementPort : public testing::Test {
protected:
    ~ManagementPort() override { framework::nameManagementPort("mng0"); }
};

TEST_F(ManagementPort, IsPort1NamedMng0) {
    int port = 0;
    EXPECT_EQ(interfaceMngGet(&port), 0);
    EXPECT_EQ(port, 1);
    char name[9] = "xxxxxxxx";
    EXPECT_EQ(interfaceLinuxnameGet(port, sizeof name, name), 0);
    EXPECT_STREQ(name, "mng0");
}

TEST_F(ManagementPort, NameNeedsRoomForItsTerminator) {
    framework::nameManagementPort("uplink12");
    char name[9] = "untouch.";
    EXPECT_NE(interfaceLinuxnameGet(1, 8, name), 0);
    EXPECT_STREQ(name, "untouch.");
    EXPECT_EQ(interfaceLinuxnameGet(1, 9, name), 0);
    EXPECT_STREQ(name, "uplink12");
}

TEST_F(ManagementPort, OtherPortsAreUnknown) {
    char name[9] = "untouch.";
    for (const int port : {0, 2, -1}) {
        EXPECT_NE(interfaceLinuxnameGet(port, sizeof name, name), 0);
    }
    EXPECT_NE(interfaceLinuxnameGet(1, -1, name), 0);
    EXPECT_STREQ(name, "untouch.");
    EXPECT_NE(interfaceLinuxnameGet(1, 9, nullptr), 0);
    EXPECT_NE(interfaceMngGet(nullptr), 0);
}

}  // namespace
