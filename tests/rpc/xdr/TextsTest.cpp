// Texts of any length: a length, the bytes, zeros up to a whole unit.

#include "comparison.h"
#include "encoding.h"
#include "network/rpc/xdrFields.h"

#include <array>
#include <cstring>

namespace {

/// Frees what the decoder allocated.
struct Text {
    ~Text() { std::free(pointer); }
    char* pointer = nullptr;
};

Bytes encodedText(const std::string& text) {
    Bytes bytes;
    appendUnit(bytes, static_cast<std::uint32_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

TEST(Texts, ArePaddedWithZerosToAWholeUnit) {
    for (std::size_t length = 0; length <= 9; ++length) {
        SCOPED_TRACE(length);
        std::string text = std::string("ABCDEFGHI").substr(0, length);
        char* pointer = text.data();
        Bytes bytes(encodedText(text).size(), 0xff);
        MemoryStream stream(bytes, XDR_ENCODE);
        ASSERT_TRUE(rpc::xdrText(stream.get(), pointer));
        EXPECT_EQ(stream.position(), bytes.size());
        EXPECT_EQ(bytes, encodedText(text));
    }
}

TEST(Texts, AreDecodedIntoMemoryOfTheirOwn) {
    for (std::size_t length = 0; length <= 9; ++length) {
        SCOPED_TRACE(length);
        const std::string text = std::string("ABCDEFGHI").substr(0, length);
        Bytes bytes = encodedText(text);
        Text decoded;
        MemoryStream stream(bytes, XDR_DECODE);
        ASSERT_TRUE(rpc::xdrText(stream.get(), decoded.pointer));
        EXPECT_EQ(stream.position(), bytes.size());
        EXPECT_STREQ(decoded.pointer, text.c_str());
    }
}

TEST(Texts, MayHoldCharactersOfAnyValueButZero) {
    std::string text;
    for (int value = 1; value < 256; ++value) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    }
    Bytes bytes = encodedText(text);
    Text decoded;
    MemoryStream stream(bytes, XDR_DECODE);
    ASSERT_TRUE(rpc::xdrText(stream.get(), decoded.pointer));
    EXPECT_STREQ(decoded.pointer, text.c_str());
}

TEST(Texts, HaveNoMaximumLength) {
    const std::string text(4 << 20, 'x');
    const WireType& type = wireType("rpc_network_set_ipv6dns_servers_1_argument");
    Record record(type);
    record.setText(type.leaves[0], strdup(text.c_str()));
    record.setText(type.leaves[1], strdup(text.c_str()));
    std::optional<Bytes> bytes = encode(type.filter, record);
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(bytes->size(), 2 * (4 + text.size()));

    Record decoded(type);
    ASSERT_TRUE(decode(type.filter, decoded, *bytes));
    EXPECT_EQ(text, decoded.text(type.leaves[0]));
    EXPECT_EQ(text, decoded.text(type.leaves[1]));

    Connection connection{.bytes = fragmented(*bytes, 65536)};
    RecordReader reader(connection, 4000);
    Record received(type);
    ASSERT_TRUE(type.filter(reader.get(), received.data()));
    EXPECT_EQ(text, received.text(type.leaves[0]));
    EXPECT_EQ(text, received.text(type.leaves[1]));
}

TEST(Texts, WithLengthsThatAreNotThereFailAndLeaveNothing) {
    constexpr std::array<std::uint32_t, 6> lengths = {9,          0x10000,    0x7fffffff,
                                                      0x80000000, 0xfffffffe, 0xffffffff};
    for (const std::uint32_t length : lengths) {
        SCOPED_TRACE(length);
        Bytes bytes;
        appendUnit(bytes, length);
        bytes.resize(12, 'x');

        Text fromMemory;
        MemoryStream memory(bytes, XDR_DECODE);
        EXPECT_FALSE(rpc::xdrText(memory.get(), fromMemory.pointer));
        EXPECT_EQ(fromMemory.pointer, nullptr);

        Text fromConnection;
        Connection connection{.bytes = fragmented(bytes, bytes.size())};
        RecordReader reader(connection, 4000);
        EXPECT_FALSE(rpc::xdrText(reader.get(), fromConnection.pointer));
        EXPECT_EQ(fromConnection.pointer, nullptr);
    }
}

TEST(Texts, OfARecordAreReleasedWhenALaterFieldFails) {
    for (const WireType& type : wireTypesWith(LeafKind::text)) {
        SCOPED_TRACE(type.name);
        Record record(type);
        for (const Leaf& leaf : type.leaves) {
            if (leaf.kind == LeafKind::text) {
                record.setText(leaf, strdup("decoded before the failure"));
            }
        }
        Bytes bytes = record.encoded();
        bytes.resize(bytes.size() - 4);
        Record decoded(type);
        MemoryStream stream(bytes, XDR_DECODE);
        EXPECT_FALSE(type.filter(stream.get(), decoded.data()));
        EXPECT_FALSE(decoded.holdsText());
    }
}

TEST(Texts, OfWhichTheSecondIsTooLongAreBothReleased) {
    const WireType& type = wireType("rpc_network_set_ipv6dns_servers_1_argument");
    for (const std::uint32_t length : {5U, 0x7fffffffU, 0xffffffffU}) {
        SCOPED_TRACE(length);
        Bytes bytes = encodedText("2001:db8::53");
        appendUnit(bytes, length);
        appendUnit(bytes, 0x41424344);
        Record decoded(type);
        MemoryStream stream(bytes, XDR_DECODE);
        EXPECT_FALSE(type.filter(stream.get(), decoded.data()));
        EXPECT_FALSE(decoded.holdsText());
    }
}

}  // namespace
