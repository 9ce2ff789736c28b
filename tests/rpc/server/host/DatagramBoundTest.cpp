// The bound of arguments by their datagram, on a transport that keeps the bytes of earlier ones.

#include "rte/BLL/core/datagramBound.h"
#include "rte/BLL/core/rpcDispatch.h"
#include "support/matchers.h"

#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

namespace {

using Operations = std::remove_cv_t<std::remove_pointer_t<decltype(SVCXPRT::xp_ops)>>;

constexpr auto numberFilter = rpcFilter<int, xdr_int>;
constexpr auto textFilter = rpcFilter<char*, xdr_wrapstring>;

/// A datagram transport whose messages are nothing but arguments. Like the RPC library's it
/// receives into a buffer that it never clears, and decodes from the whole of it.
class BufferedTransport {
public:
    BufferedTransport() {
        if (socketpair(AF_UNIX, SOCK_DGRAM, 0, sockets) != 0) {
            throw std::system_error(errno, std::generic_category(), "socketpair");
        }
        transport.xp_fd = sockets[0];
        transport.xp_p1 = this;
        transport.xp_ops = &operations;
    }
    ~BufferedTransport() {
        if (transport.xp_ops != &operations) {
            transport.xp_ops->xp_destroy(&transport);
        }
        close(sockets[0]);
        close(sockets[1]);
    }
    BufferedTransport(const BufferedTransport&) = delete;
    BufferedTransport& operator=(const BufferedTransport&) = delete;

    /// Has the transport receive a datagram.
    bool receive(const std::vector<char>& datagram) {
        EXPECT_EQ(send(sockets[1], datagram.data(), datagram.size(), 0),
                  static_cast<ssize_t>(datagram.size()));
        rpc_msg message{};
        return transport.xp_ops->xp_recv(&transport, &message) != FALSE;
    }

    template <class Argument>
    bool decode(xdrproc_t filter, Argument& argument) {
        return svc_getargs(&transport, filter, reinterpret_cast<char*>(&argument)) != FALSE;
    }

    static const Operations operations;

    SVCXPRT transport{};
    ssize_t receivedSize = -1;  ///< by the transport itself
    int timesDestroyed = 0;

private:
    static BufferedTransport& of(SVCXPRT* self) {
        return *static_cast<BufferedTransport*>(self->xp_p1);
    }

    int sockets[2] = {-1, -1};
    char buffer[256] = {};
};

const Operations BufferedTransport::operations = {
    [](SVCXPRT* self, rpc_msg*) -> bool_t {
        BufferedTransport& own = of(self);
        own.receivedSize = recv(own.sockets[0], own.buffer, sizeof own.buffer, MSG_DONTWAIT);
        return own.receivedSize >= 0;
    },
    [](SVCXPRT*) -> xprt_stat { return XPRT_IDLE; },
    [](SVCXPRT* self, xdrproc_t filter, void* argument) -> bool_t {
        BufferedTransport& own = of(self);
        XDR xdr;
        xdrmem_create(&xdr, own.buffer, sizeof own.buffer, XDR_DECODE);
        return filter(&xdr, argument);
    },
    [](SVCXPRT*, rpc_msg*) -> bool_t { return TRUE; },
    [](SVCXPRT*, xdrproc_t filter, void* argument) -> bool_t {
        XDR xdr{};
        xdr.x_op = XDR_FREE;
        return filter(&xdr, argument);
    },
    [](SVCXPRT* self) { ++of(self).timesDestroyed; },
};

/// A number, and a text of five letters with its padding, as they travel (RFC 4506).
const std::vector<char> numberDatagram = {0, 0, 1, 2};
const std::vector<char> textDatagram = {0, 0, 0, 5, 's', 'h', 'e', 'l', 'f', 0, 0, 0};

std::vector<char> start(const std::vector<char>& datagram, std::size_t size) {
    return {datagram.begin(), datagram.begin() + static_cast<long>(size)};
}

class DatagramBound : public testing::Test {
protected:
    DatagramBound() { boundArgumentsToDatagram(&buffered.transport); }

    /// Expects a text to arrive, and releases it.
    void expectText(const std::string& expected) {
        char* text = nullptr;
        ASSERT_TRUE(buffered.decode(textFilter, text));
        EXPECT_EQ(text, expected);
        EXPECT_TRUE(svc_freeargs(&buffered.transport, textFilter, reinterpret_cast<char*>(&text)));
        EXPECT_EQ(text, nullptr);
    }

    BufferedTransport buffered;
};

TEST_F(DatagramBound, LetsPassWhatLiesWithinTheDatagram) {
    ASSERT_TRUE(buffered.receive(numberDatagram));
    EXPECT_EQ(buffered.receivedSize, 4);
    int number = 0;
    EXPECT_TRUE(buffered.decode(numberFilter, number));
    EXPECT_EQ(number, 0x102);
    ASSERT_TRUE(buffered.receive(textDatagram));
    EXPECT_EQ(buffered.receivedSize, 12);
    expectText("shelf");
}

TEST_F(DatagramBound, RefusesANumberThatReachesBeyond) {
    for (std::size_t size = 0; size < numberDatagram.size(); ++size) {
        SCOPED_TRACE(size);
        ASSERT_TRUE(buffered.receive(numberDatagram));
        ASSERT_TRUE(buffered.receive(start(numberDatagram, size)));
        int number = 0;
        EXPECT_FALSE(buffered.decode(numberFilter, number));
    }
}

// What had been decoded is released: nobody else would.
TEST_F(DatagramBound, RefusesATextThatReachesBeyond) {
    for (std::size_t size = 0; size < textDatagram.size(); ++size) {
        SCOPED_TRACE(size);
        ASSERT_TRUE(buffered.receive(textDatagram));
        ASSERT_TRUE(buffered.receive(start(textDatagram, size)));
        char* text = nullptr;
        EXPECT_FALSE(buffered.decode(textFilter, text));
        EXPECT_EQ(text, nullptr);
    }
}

TEST_F(DatagramBound, IsOfTheLatestDatagram) {
    ASSERT_TRUE(buffered.receive(start(textDatagram, 4)));
    ASSERT_TRUE(buffered.receive(textDatagram));
    expectText("shelf");
}

TEST_F(DatagramBound, LeavesARefusalByTheFilterAtThat) {
    ASSERT_TRUE(buffered.receive({-1, -1, -1, -1}));  // a length that leaves no room
    char* text = nullptr;
    EXPECT_FALSE(buffered.decode(textFilter, text));
    EXPECT_EQ(text, nullptr);
}

// The library's own reception decides what becomes of it.
TEST_F(DatagramBound, BoundsNothingWhenTheDatagramCannotBeLookedAt) {
    ASSERT_TRUE(buffered.receive(textDatagram));
    buffered.transport.xp_fd = -1;
    ASSERT_TRUE(buffered.receive(start(textDatagram, 4)));
    expectText("shelf");
}

TEST_F(DatagramBound, PassesOnThatNothingWasReceived) {
    rpc_msg message{};
    EXPECT_FALSE(buffered.transport.xp_ops->xp_recv(&buffered.transport, &message));
    EXPECT_EQ(buffered.receivedSize, -1);
}

TEST_F(DatagramBound, LeavesTheOtherOperationsAlone) {
    EXPECT_EQ(buffered.transport.xp_ops->xp_stat, BufferedTransport::operations.xp_stat);
    EXPECT_EQ(buffered.transport.xp_ops->xp_reply, BufferedTransport::operations.xp_reply);
    EXPECT_EQ(buffered.transport.xp_ops->xp_freeargs, BufferedTransport::operations.xp_freeargs);
}

TEST(NoDatagramBound, IsMadeOfATransportWithoutOperations) {
    boundArgumentsToDatagram(nullptr);
    SVCXPRT transport{};
    boundArgumentsToDatagram(&transport);
    EXPECT_EQ(transport.xp_ops, nullptr);
}

TEST_F(DatagramBound, EndsWithTheTransport) {
    buffered.transport.xp_ops->xp_destroy(&buffered.transport);
    EXPECT_EQ(buffered.timesDestroyed, 1);
    EXPECT_EQ(buffered.transport.xp_ops, &BufferedTransport::operations);
}

}  // namespace
