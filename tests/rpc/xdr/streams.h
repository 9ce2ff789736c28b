#pragma once

#include "WireType.h"

#include <functional>
#include <span>

/// A stream over memory, of the RPC library.
class MemoryStream {
public:
    MemoryStream(std::span<unsigned char> memory, xdr_op direction);
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    XDR* get() { return &xdr; }
    std::size_t position() { return XDR_GETPOS(&xdr); }

private:
    XDR xdr;
};

/// What travels over a connection, and how.
struct Connection {
    Bytes bytes{};
    std::size_t readAt = 0;
    std::size_t bytesPerRead = 8192;  ///< the most that a read gets
    std::size_t writesLeft = ~std::size_t{0};
};

/// The sending end of a record-marked stream (RFC 5531), of the RPC library. The library makes its
/// buffer 4000 bytes large when less than 100 are asked for.
class RecordWriter {
public:
    RecordWriter(Connection& connection, unsigned int bufferSize);
    ~RecordWriter();
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    XDR* get() { return &xdr; }
    /// Sends what is left as the record's last fragment.
    bool finish();

private:
    XDR xdr;
};

/// The receiving end, at the start of its first record. A read past the connection's bytes fails.
class RecordReader {
public:
    RecordReader(Connection& connection, unsigned int bufferSize);
    ~RecordReader();
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    XDR* get() { return &xdr; }
    /// Nothing is left of this record, and there is no other.
    bool atEnd();

private:
    XDR xdr;
};

/// The bytes as a record in fragments of `fragmentSize` bytes.
Bytes fragmented(const Bytes& bytes, std::size_t fragmentSize);

/// The contents of a whole record. Throws std::runtime_error when it has no last fragment.
Bytes defragmented(const Bytes& record);

/// Decides whether a stream gives an inline buffer: length asked for, position in the stream.
using InlineRoom = std::function<bool(unsigned int length, std::size_t position)>;

/// An inline buffer for whatever is asked for.
InlineRoom roomForEverything();
/// Never an inline buffer.
InlineRoom roomForNothing();
/// Inline buffers of at most so many bytes.
InlineRoom roomUpTo(unsigned int most);
/// A buffer of so many bytes that is filled anew at its end, `start` bytes into its first filling.
InlineRoom roomInWindows(std::size_t window, std::size_t start);

/// A stream over memory that keeps a record of how it is used. Inline buffers never reach beyond
/// the memory, whatever the room says.
class ScriptedStream {
public:
    ScriptedStream(std::span<unsigned char> memory, xdr_op direction, InlineRoom room);
    ScriptedStream(const ScriptedStream&) = delete;
    ScriptedStream& operator=(const ScriptedStream&) = delete;

    XDR* get() { return &xdr; }
    std::size_t position() const { return place; }
    /// The lengths of the inline buffers asked for, granted or not.
    const std::vector<unsigned int>& inlineRequests() const { return requests; }
    /// How often the stream was called at all.
    std::size_t calls() const { return callCount; }
    /// How often it had to refuse because the memory ended, inline buffers included.
    std::size_t refusals() const { return refusalCount; }

private:
    static const XDR::xdr_ops operations;
    static ScriptedStream& of(XDR* xdrs);
    /// The next bytes, or null if the memory does not hold that many.
    unsigned char* take(std::size_t length);

    XDR xdr{};
    std::span<unsigned char> memory;
    InlineRoom room;
    std::size_t place = 0;
    std::vector<unsigned int> requests;
    std::size_t callCount = 0;
    std::size_t refusalCount = 0;
};
