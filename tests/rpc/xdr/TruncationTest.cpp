// Records that end too early, and streams that are full too early. Under the address sanitizer,
// these tests also show that nothing leaks.

#include "comparison.h"
#include "encoding.h"

namespace {

constexpr std::size_t unitSize = BYTES_PER_XDR_UNIT;

class Truncation : public testing::Test {
protected:
    /// Calls `check` with a random record of every type, its whole encoding, and every place at
    /// which this can end early, each `step` bytes.
    template <class Check>
    void atEveryCut(std::size_t step, Check check) {
        for (const WireType& type : wireTypes()) {
            SCOPED_TRACE(type.name);
            Record record(type);
            record.randomize(random);
            const Bytes bytes = record.encoded();
            for (std::size_t cut = 0; cut < bytes.size() && !HasFailure(); cut += step) {
                SCOPED_TRACE(cut);
                check(record, bytes, cut);
            }
        }
    }

    std::mt19937 random{19700101};
};

Bytes firstBytes(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// A failed decoder leaves no text behind, since no free pass follows.
void expectFails(const WireType& type, XDR* xdrs) {
    Record decoded(type);
    EXPECT_FALSE(type.filter(xdrs, decoded.data()));
    EXPECT_FALSE(decoded.holdsText());
}

TEST_F(Truncation, DecodingFailsAtEveryByteOfAMemory) {
    atEveryCut(1, [](Record& record, const Bytes& bytes, std::size_t cut) {
        Bytes part = firstBytes(bytes, cut);
        MemoryStream stream(part, XDR_DECODE);
        expectFails(record.type(), stream.get());
    });
}

// A filter stops at the first field that fails: it asks for nothing more.
TEST_F(Truncation, DecodingStopsAtEveryUnitWithoutInlineRoom) {
    atEveryCut(unitSize, [](Record& record, const Bytes& bytes, std::size_t cut) {
        Bytes part = firstBytes(bytes, cut);
        ScriptedStream stream(part, XDR_DECODE, roomForNothing());
        expectFails(record.type(), stream.get());
        EXPECT_EQ(stream.refusals(), 1U);
    });
}

TEST_F(Truncation, DecodingFailsWhereTheRecordOfAConnectionEnds) {
    atEveryCut(unitSize, [](Record& record, const Bytes& bytes, std::size_t cut) {
        Connection connection{.bytes = fragmented(firstBytes(bytes, cut), 96), .bytesPerRead = 67};
        // The next record is not this one's rest.
        const Bytes next = fragmented(bytes, 4000);
        connection.bytes.insert(connection.bytes.end(), next.begin(), next.end());
        RecordReader reader(connection, 100);
        expectFails(record.type(), reader.get());
    });
}

TEST_F(Truncation, DecodingFailsWhereTheConnectionEnds) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const Bytes bytes = fragmented(record.encoded(), 4000);
        for (std::size_t cut = 0; cut < bytes.size() && !HasFailure(); cut += unitSize) {
            SCOPED_TRACE(cut);
            Connection connection{.bytes = firstBytes(bytes, cut), .bytesPerRead = 67};
            RecordReader reader(connection, 100);
            expectFails(type, reader.get());
        }
    }
}

TEST_F(Truncation, EncodingFailsAtEveryByteOfAMemory) {
    atEveryCut(1, [](Record& record, const Bytes&, std::size_t room) {
        // Of exactly that size, so that the address sanitizer sees a byte too many.
        Bytes memory(room);
        MemoryStream stream(memory, XDR_ENCODE);
        EXPECT_FALSE(record.type().filter(stream.get(), record.data()));
    });
}

TEST_F(Truncation, EncodingStopsAtEveryUnitWithoutInlineRoom) {
    atEveryCut(unitSize, [](Record& record, const Bytes&, std::size_t room) {
        Bytes memory(room);
        ScriptedStream stream(memory, XDR_ENCODE, roomForNothing());
        EXPECT_FALSE(record.type().filter(stream.get(), record.data()));
        EXPECT_EQ(stream.refusals(), 1U);
    });
}

TEST_F(Truncation, EncodingFailsWhenTheConnectionBreaks) {
    constexpr unsigned int bufferSize = 100;
    int failures = 0;
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        // The filter fills so many buffers and has more to say.
        const std::size_t fullBuffers = (record.encoded().size() - 1) / (bufferSize - unitSize);
        for (std::size_t writes = 0; writes < fullBuffers; ++writes) {
            SCOPED_TRACE(writes);
            Connection connection{.writesLeft = writes};
            RecordWriter writer(connection, bufferSize);
            EXPECT_FALSE(type.filter(writer.get(), record.data()));
            ++failures;
        }
    }
    EXPECT_GT(failures, 0);
}

}  // namespace
