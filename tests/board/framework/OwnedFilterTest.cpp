#include "board/framework/ownedFilter.h"
#include "control.h"
#include "support/matchers.h"

#include <array>
#include <cstddef>

using framework::ownedFilter;

namespace {

constexpr auto filter = ownedFilter<controlMessage, xdr_controlMessage>;

class OwnedFilterTest : public testing::Test {
protected:
    void SetUp() override {
        std::array<char, 8> name{"setting"};
        std::array<char, 6> value{"value"};
        controlMessage message{name.data(), value.data()};
        XDR stream;
        xdrmem_create(&stream, bytes.data(), static_cast<u_int>(bytes.size()), XDR_ENCODE);
        ASSERT_TRUE(filter(&stream, &message));
        size = xdr_getpos(&stream);
    }

    bool_t decode(u_int length, controlMessage& message) {
        XDR stream;
        xdrmem_create(&stream, bytes.data(), length, XDR_DECODE);
        return filter(&stream, &message);
    }

    std::array<char, 64> bytes{};
    u_int size = 0;
};

}  // namespace

TEST_F(OwnedFilterTest, PassesWhatDecodes) {
    ASSERT_EQ(size, 24u);
    controlMessage message{};
    ASSERT_TRUE(decode(size, message));
    EXPECT_STREQ(message.name, "setting");
    EXPECT_STREQ(message.value, "value");
    XDR release{};
    release.x_op = XDR_FREE;
    EXPECT_TRUE(filter(&release, &message));
}

// The leak sanitizer sees what is left behind.
TEST_F(OwnedFilterTest, ReleasesWhatWasDecodedBeforeAFailure) {
    for (u_int length = 0; length < size; length += 4) {
        controlMessage message{};
        EXPECT_FALSE(decode(length, message)) << length;
        EXPECT_EQ(message.name, nullptr) << length;
        EXPECT_EQ(message.value, nullptr) << length;
    }
}
