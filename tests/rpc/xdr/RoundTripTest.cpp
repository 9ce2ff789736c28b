// Random contents of every type, over every kind of stream.

#include "comparison.h"
#include "encoding.h"

#include <array>

namespace {

constexpr int rounds = 20;

class RoundTrip : public testing::Test {
protected:
    std::mt19937 random{20240229};
};

TEST_F(RoundTrip, OverMemoryAtAnyAddress) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        for (int round = 0; round < rounds; ++round) {
            Record record(type);
            record.randomize(random);
            const std::size_t size = record.encoded().size();
            for (std::size_t misalignment = 0; misalignment < 4; ++misalignment) {
                Bytes memory(misalignment + size);
                const std::span<unsigned char> part = std::span(memory).subspan(misalignment);
                MemoryStream encoder(part, XDR_ENCODE);
                ASSERT_TRUE(type.filter(encoder.get(), record.data()));
                EXPECT_EQ(encoder.position(), size);
                EXPECT_TRUE(isEncodingOf(record, {part.begin(), part.end()}));

                Record decoded(type);
                MemoryStream decoder(part, XDR_DECODE);
                ASSERT_TRUE(type.filter(decoder.get(), decoded.data()));
                EXPECT_EQ(decoder.position(), size);
                EXPECT_TRUE(sameContents(record, decoded));
            }
        }
    }
}

/// Encodes the record behind `unitsBefore` units, so that the stream's buffer ends in other places.
Bytes sent(const WireType& type, Record& record, unsigned int unitsBefore,
           unsigned int bufferSize) {
    Connection connection;
    RecordWriter writer(connection, bufferSize);
    for (unsigned int i = 0; i < unitsBefore; ++i) {
        EXPECT_TRUE(xdr_u_int(writer.get(), &i));
    }
    EXPECT_TRUE(type.filter(writer.get(), record.data()));
    EXPECT_TRUE(writer.finish());
    return connection.bytes;
}

void expectReceived(const WireType& type, const Record& record, unsigned int unitsBefore,
                    unsigned int bufferSize, std::size_t bytesPerRead, const Bytes& bytes) {
    Connection connection{.bytes = bytes, .bytesPerRead = bytesPerRead};
    RecordReader reader(connection, bufferSize);
    for (unsigned int i = 0; i < unitsBefore; ++i) {
        unsigned int unit = ~i;
        ASSERT_TRUE(xdr_u_int(reader.get(), &unit));
        EXPECT_EQ(unit, i);
    }
    Record decoded(type);
    ASSERT_TRUE(type.filter(reader.get(), decoded.data()));
    EXPECT_TRUE(sameContents(record, decoded));
    EXPECT_TRUE(reader.atEnd());
}

// The smallest buffer holds a fragment header and 24 units.
TEST_F(RoundTrip, OverConnectionsWhoseBuffersEndAnywhere) {
    constexpr std::array<unsigned int, 3> bufferSizes = {100, 104, 4000};
    constexpr std::array<std::size_t, 4> readSizes = {3, 50, 101, 8192};
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        for (unsigned int unitsBefore = 0; unitsBefore < 25; ++unitsBefore) {
            SCOPED_TRACE(unitsBefore);
            Record record(type);
            record.randomize(random);
            const unsigned int bufferSize = bufferSizes[unitsBefore % bufferSizes.size()];
            const Bytes bytes = sent(type, record, unitsBefore, bufferSize);

            Bytes contents = defragmented(bytes);
            contents.erase(contents.begin(), contents.begin() + unitsBefore * BYTES_PER_XDR_UNIT);
            EXPECT_TRUE(isEncodingOf(record, contents));

            for (const std::size_t bytesPerRead : readSizes) {
                expectReceived(type, record, unitsBefore, bufferSize, bytesPerRead, bytes);
            }
        }
    }
}

// A sender may end its fragments within a unit (RFC 5531, section 11).
TEST_F(RoundTrip, FromFragmentsOfAnySize) {
    constexpr std::array<std::size_t, 7> fragmentSizes = {1, 3, 6, 13, 67, 101, 1001};
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        for (const std::size_t fragmentSize : fragmentSizes) {
            SCOPED_TRACE(fragmentSize);
            Record record(type);
            record.randomize(random);
            const Bytes bytes = fragmented(record.encoded(), fragmentSize);
            for (const std::size_t bytesPerRead : {std::size_t{5}, std::size_t{8192}}) {
                expectReceived(type, record, 0, 100, bytesPerRead, bytes);
                expectReceived(type, record, 0, 4000, bytesPerRead, bytes);
            }
        }
    }
}

std::vector<InlineRoom> everyRoom() {
    std::vector<InlineRoom> rooms = {roomForEverything(), roomForNothing()};
    for (const unsigned int most : {4U, 12U, 24U, 36U, 64U, 96U, 400U}) {
        rooms.push_back(roomUpTo(most));
    }
    for (std::size_t start = 0; start < 100; start += BYTES_PER_XDR_UNIT) {
        rooms.push_back(roomInWindows(100, start));
    }
    for (unsigned int seed = 0; seed < 5; ++seed) {
        rooms.push_back([random = std::mt19937(seed)](unsigned int, std::size_t) mutable {
            return random() % 2 == 0;
        });
    }
    return rooms;
}

TEST_F(RoundTrip, WhateverTheStreamOffersInline) {
    const std::vector<InlineRoom> rooms = everyRoom();
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        for (std::size_t room = 0; room < rooms.size(); ++room) {
            SCOPED_TRACE(room);
            Record record(type);
            record.randomize(random);
            std::optional<Bytes> bytes = encode(type.filter, record, rooms[room]);
            ASSERT_TRUE(bytes.has_value());
            EXPECT_TRUE(isEncodingOf(record, *bytes));

            Record decoded(type);
            ASSERT_TRUE(decode(type.filter, decoded, *bytes, rooms[room]));
            EXPECT_TRUE(sameContents(record, decoded));
        }
    }
}

TEST_F(RoundTrip, EncodingLeavesTheRecordAlone) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        for (const InlineRoom& room : {roomForEverything(), roomForNothing()}) {
            Record record(type);
            record.randomize(random);
            const Bytes before(record.bytes().begin(), record.bytes().end());
            ASSERT_TRUE(encode(type.filter, record, room).has_value());
            EXPECT_EQ(Bytes(record.bytes().begin(), record.bytes().end()), before);
        }
    }
}

// The RPC library's free pass has an XDR handle without a stream.
TEST_F(RoundTrip, FreeingReleasesTheTextsAndTouchesNothingElse) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        Bytes bytes = record.encoded();
        Record decoded(type);
        ASSERT_TRUE(decode(type.filter, decoded, bytes));

        Bytes expected(decoded.bytes().begin(), decoded.bytes().end());
        for (const Leaf& leaf : type.leaves) {
            if (leaf.kind == LeafKind::text) {
                std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(leaf.offset), leaf.size,
                            static_cast<unsigned char>(0));
            }
        }
        EXPECT_TRUE(release(type.filter, decoded));
        EXPECT_EQ(Bytes(decoded.bytes().begin(), decoded.bytes().end()), expected);
        // A second pass finds nothing to release.
        EXPECT_TRUE(release(type.filter, decoded));
    }
}

TEST_F(RoundTrip, TheStreamIsNotCalledWhenFreeing) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        ScriptedStream stream({}, XDR_FREE, roomForEverything());
        EXPECT_TRUE(type.filter(stream.get(), record.data()));
        EXPECT_EQ(stream.calls(), 0U);
    }
}

}  // namespace
