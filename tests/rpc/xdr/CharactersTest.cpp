// Fixed character arrays: one unit a character, the very bytes of the RPC library's primitives.

#include "network/rpc/xdrFields.h"
#include "referenceCharacters.h"
#include "streams.h"
#include "support/matchers.h"

#include <random>

namespace {

constexpr std::size_t unitSize = BYTES_PER_XDR_UNIT;

std::vector<std::size_t> lengths() {
    std::vector<std::size_t> lengths;
    for (std::size_t length = 1; length <= 40; ++length) {
        lengths.push_back(length);
    }
    lengths.insert(lengths.end(), {100, 256, 2000});
    return lengths;
}

/// Streams with inline room for all of an array, for parts of it, and for none.
std::vector<InlineRoom> rooms() {
    std::vector<InlineRoom> rooms = {roomForEverything(), roomForNothing()};
    for (const unsigned int most : {4U, 60U, 64U, 68U, 128U, 160U}) {
        rooms.push_back(roomUpTo(most));
    }
    for (const std::size_t start : {0U, 4U, 36U, 60U, 64U, 92U, 96U}) {
        rooms.push_back(roomInWindows(100, start));
    }
    return rooms;
}

std::string textFrom(std::size_t length, unsigned int first) {
    std::string text(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        text[i] = static_cast<char>(static_cast<unsigned char>(first + i));
    }
    return text;
}

TEST(Characters, EncodeToTheBytesOfThePrimitives) {
    for (const std::size_t length : lengths()) {
        SCOPED_TRACE(length);
        // Every place of the array takes every value.
        for (unsigned int first = 0; first < 256; ++first) {
            std::string text = textFrom(length, first);
            Bytes expected(length * unitSize);
            MemoryStream reference(expected, XDR_ENCODE);
            ASSERT_TRUE(referenceCharacters(reference.get(), text.data(), length));

            for (const InlineRoom& room : rooms()) {
                Bytes bytes(length * unitSize);
                ScriptedStream stream(bytes, XDR_ENCODE, room);
                ASSERT_TRUE(rpc::xdrCharacters(stream.get(), text.data(), length));
                ASSERT_EQ(stream.position(), bytes.size());
                ASSERT_EQ(bytes, expected);
            }
        }
    }
}

TEST(Characters, DecodeTheLowByteWhateverStandsAboveIt) {
    std::mt19937 random{88};
    for (const std::size_t length : lengths()) {
        SCOPED_TRACE(length);
        for (unsigned int first = 0; first < 256; ++first) {
            const std::string text = textFrom(length, first);
            Bytes bytes(length * unitSize);
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                bytes[i] = i % unitSize == unitSize - 1
                               ? static_cast<unsigned char>(text[i / unitSize])
                               : static_cast<unsigned char>(random());
            }
            std::string reference(length, 'x');
            MemoryStream referenceStream(bytes, XDR_DECODE);
            ASSERT_TRUE(referenceCharacters(referenceStream.get(), reference.data(), length));
            ASSERT_EQ(reference, text);

            for (const InlineRoom& room : rooms()) {
                std::string decoded(length, 'x');
                ScriptedStream stream(bytes, XDR_DECODE, room);
                ASSERT_TRUE(rpc::xdrCharacters(stream.get(), decoded.data(), length));
                ASSERT_EQ(stream.position(), bytes.size());
                ASSERT_EQ(decoded, text);
            }
        }
    }
}

// The speed of long arrays: where the stream's buffer ends, no more than 16 characters go one by
// one.
TEST(Characters, GoInlineButForThoseAtTheEndOfTheBuffer) {
    constexpr std::size_t length = 2000;
    constexpr std::size_t window = 4000;
    for (std::size_t start = 0; start < window; start += unitSize) {
        SCOPED_TRACE(start);
        Bytes bytes(length * unitSize);
        std::string text(length, 'x');
        const std::size_t bufferEnds = (start + bytes.size() - 1) / window;
        for (const xdr_op direction : {XDR_ENCODE, XDR_DECODE}) {
            ScriptedStream stream(bytes, direction, roomInWindows(window, start));
            ASSERT_TRUE(rpc::xdrCharacters(stream.get(), text.data(), length));
            EXPECT_LE(stream.calls() - stream.inlineRequests().size(), 16 * bufferEnds);
        }
    }
}

TEST(Characters, EndWithTheArray) {
    for (const std::size_t length : lengths()) {
        SCOPED_TRACE(length);
        for (const InlineRoom& room : rooms()) {
            Bytes bytes((length + 1) * unitSize, 0x41);
            std::string decoded(length + 1, 'x');
            ScriptedStream decoder(bytes, XDR_DECODE, room);
            ASSERT_TRUE(rpc::xdrCharacters(decoder.get(), decoded.data(), length));
            EXPECT_EQ(decoded, std::string(length, 'A') + "x");

            ScriptedStream encoder(bytes, XDR_ENCODE, room);
            ASSERT_TRUE(rpc::xdrCharacters(encoder.get(), decoded.data(), length));
            EXPECT_EQ(Bytes(bytes.end() - unitSize, bytes.end()), Bytes(unitSize, 0x41));
        }
    }
}

TEST(Characters, FailWhereTheStreamEnds) {
    for (const std::size_t length : lengths()) {
        SCOPED_TRACE(length);
        std::string text(length, 'x');
        for (std::size_t end = 0; end < length * unitSize; end += unitSize) {
            Bytes bytes(end);
            for (const InlineRoom& room : {roomForEverything(), roomForNothing(), roomUpTo(64)}) {
                ScriptedStream encoder(bytes, XDR_ENCODE, room);
                ASSERT_FALSE(rpc::xdrCharacters(encoder.get(), text.data(), length));
                ScriptedStream decoder(bytes, XDR_DECODE, room);
                ASSERT_FALSE(rpc::xdrCharacters(decoder.get(), text.data(), length));
            }
        }
    }
}

TEST(Characters, TouchNothingWhenFreeing) {
    for (const std::size_t length : lengths()) {
        std::string text(length, 'x');
        ScriptedStream stream({}, XDR_FREE, roomForEverything());
        EXPECT_TRUE(rpc::xdrCharacters(stream.get(), text.data(), length));
        EXPECT_EQ(text, std::string(length, 'x'));
        EXPECT_EQ(stream.calls(), 0U);
    }
}

}  // namespace
