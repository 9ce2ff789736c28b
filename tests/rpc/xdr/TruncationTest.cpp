// Records that end too early, and streams that are full too early. Under the address sanitizer,
// these tests also show that nothing leaks.

#include "comparison.h"
#include "encoding.h"

namespace {

constexpr std::size_t unitSize = BYTES_PER_XDR_UNIT;

class Truncation : public testing::Test {
protected:
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
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const Bytes bytes = record.encoded();
        for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
            SCOPED_TRACE(cut);
            Bytes part = firstBytes(bytes, cut);
            MemoryStream stream(part, XDR_DECODE);
            expectFails(type, stream.get());
            if (HasFailure()) {
                return;
            }
        }
    }
}

// A filter stops at the first field that fails: it asks for nothing more.
TEST_F(Truncation, DecodingStopsAtEveryUnitWithoutInlineRoom) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const Bytes bytes = record.encoded();
        for (std::size_t cut = 0; cut < bytes.size(); cut += unitSize) {
            SCOPED_TRACE(cut);
            Bytes part = firstBytes(bytes, cut);
            ScriptedStream stream(part, XDR_DECODE, roomForNothing());
            expectFails(type, stream.get());
            EXPECT_EQ(stream.refusals(), 1U);
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(Truncation, DecodingFailsWhereTheRecordOfAConnectionEnds) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const Bytes bytes = record.encoded();
        for (std::size_t cut = 0; cut < bytes.size(); cut += unitSize) {
            SCOPED_TRACE(cut);
            Connection connection{.bytes = fragmented(firstBytes(bytes, cut), 96),
                                  .bytesPerRead = 67};
            // The next record is not this one's rest.
            const Bytes next = fragmented(bytes, 4000);
            connection.bytes.insert(connection.bytes.end(), next.begin(), next.end());
            RecordReader reader(connection, 100);
            expectFails(type, reader.get());
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(Truncation, DecodingFailsWhereTheConnectionEnds) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const Bytes bytes = fragmented(record.encoded(), 4000);
        for (std::size_t cut = 0; cut < bytes.size(); cut += unitSize) {
            SCOPED_TRACE(cut);
            Connection connection{.bytes = firstBytes(bytes, cut), .bytesPerRead = 67};
            RecordReader reader(connection, 100);
            expectFails(type, reader.get());
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(Truncation, EncodingFailsAtEveryByteOfAMemory) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const std::size_t size = record.encoded().size();
        for (std::size_t room = 0; room < size; ++room) {
            SCOPED_TRACE(room);
            // Of exactly that size, so that the address sanitizer sees a byte too many.
            Bytes memory(room);
            MemoryStream stream(memory, XDR_ENCODE);
            EXPECT_FALSE(type.filter(stream.get(), record.data()));
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(Truncation, EncodingStopsAtEveryUnitWithoutInlineRoom) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        const std::size_t size = record.encoded().size();
        for (std::size_t room = 0; room < size; room += unitSize) {
            SCOPED_TRACE(room);
            Bytes memory(room);
            ScriptedStream stream(memory, XDR_ENCODE, roomForNothing());
            EXPECT_FALSE(type.filter(stream.get(), record.data()));
            EXPECT_EQ(stream.refusals(), 1U);
            if (HasFailure()) {
                return;
            }
        }
    }
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
