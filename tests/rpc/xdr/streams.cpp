#include "streams.h"

#include <netinet/in.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::uint32_t lastFragment = 0x80000000;

int readConnection(void* handle, void* buffer, int length) {
    auto& connection = *static_cast<Connection*>(handle);
    const std::size_t count = std::min({static_cast<std::size_t>(length), connection.bytesPerRead,
                                        connection.bytes.size() - connection.readAt});
    if (count == 0) {
        return -1;
    }
    std::memcpy(buffer, connection.bytes.data() + connection.readAt, count);
    connection.readAt += count;
    return static_cast<int>(count);
}

int writeConnection(void* handle, void* buffer, int length) {
    auto& connection = *static_cast<Connection*>(handle);
    if (connection.writesLeft == 0) {
        return -1;
    }
    --connection.writesLeft;
    const auto* const bytes = static_cast<const unsigned char*>(buffer);
    connection.bytes.insert(connection.bytes.end(), bytes, bytes + length);
    return length;
}

void createRecordStream(XDR& xdr, Connection& connection, unsigned int bufferSize,
                        xdr_op direction) {
    xdrrec_create(&xdr, bufferSize, bufferSize, &connection, readConnection, writeConnection);
    xdr.x_op = direction;
}

}  // namespace

MemoryStream::MemoryStream(std::span<unsigned char> memory, xdr_op direction) {
    xdrmem_create(&xdr, reinterpret_cast<char*>(memory.data()),
                  static_cast<unsigned int>(memory.size()), direction);
}

RecordWriter::RecordWriter(Connection& connection, unsigned int bufferSize) {
    createRecordStream(xdr, connection, bufferSize, XDR_ENCODE);
}

RecordWriter::~RecordWriter() { XDR_DESTROY(&xdr); }

bool RecordWriter::finish() { return xdrrec_endofrecord(&xdr, TRUE) != FALSE; }

RecordReader::RecordReader(Connection& connection, unsigned int bufferSize) {
    createRecordStream(xdr, connection, bufferSize, XDR_DECODE);
    xdrrec_skiprecord(&xdr);
}

RecordReader::~RecordReader() { XDR_DESTROY(&xdr); }

bool RecordReader::atEnd() { return xdrrec_eof(&xdr) != FALSE; }

Bytes fragmented(const Bytes& bytes, std::size_t fragmentSize) {
    Bytes record;
    std::size_t start = 0;
    do {
        const std::size_t size = std::min(fragmentSize, bytes.size() - start);
        const bool last = start + size == bytes.size();
        const std::uint32_t header = static_cast<std::uint32_t>(size) | (last ? lastFragment : 0);
        for (int shift = 24; shift >= 0; shift -= 8) {
            record.push_back(static_cast<unsigned char>(header >> shift));
        }
        record.insert(record.end(), bytes.data() + start, bytes.data() + start + size);
        start += size;
    } while (start < bytes.size());
    return record;
}

Bytes defragmented(const Bytes& record) {
    Bytes bytes;
    std::size_t start = 0;
    std::uint32_t header = 0;
    while ((header & lastFragment) == 0) {
        if (start + sizeof header > record.size()) {
            throw std::runtime_error("the record has no last fragment");
        }
        std::memcpy(&header, record.data() + start, sizeof header);
        header = ntohl(header);
        start += sizeof header;
        const std::size_t end = start + (header & ~lastFragment);
        if (end > record.size()) {
            throw std::runtime_error("the record ends within a fragment");
        }
        bytes.insert(bytes.end(), record.data() + start, record.data() + end);
        start = end;
    }
    if (start != record.size()) {
        throw std::runtime_error("bytes after the last fragment");
    }
    return bytes;
}

InlineRoom roomForEverything() {
    return [](unsigned int, std::size_t) { return true; };
}

InlineRoom roomForNothing() {
    return [](unsigned int, std::size_t) { return false; };
}

InlineRoom roomUpTo(unsigned int most) {
    return [most](unsigned int length, std::size_t) { return length <= most; };
}

InlineRoom roomInWindows(std::size_t window, std::size_t start) {
    return [window, start](unsigned int length, std::size_t position) {
        return (start + position) % window + length <= window;
    };
}

ScriptedStream::ScriptedStream(std::span<unsigned char> bytes, xdr_op direction,
                               InlineRoom inlineRoom)
    : memory(bytes), room(std::move(inlineRoom)) {
    xdr.x_op = direction;
    xdr.x_ops = &operations;
    xdr.x_private = this;
}

ScriptedStream& ScriptedStream::of(XDR* xdrs) {
    auto& stream = *static_cast<ScriptedStream*>(xdrs->x_private);
    ++stream.callCount;
    return stream;
}

unsigned char* ScriptedStream::take(std::size_t length) {
    if (length > memory.size() - place) {
        ++refusalCount;
        return nullptr;
    }
    unsigned char* const bytes = memory.data() + place;
    place += length;
    return bytes;
}

const XDR::xdr_ops ScriptedStream::operations = {
    .x_getlong = [](XDR* xdrs, long* value) -> bool_t {
        std::uint32_t unit;
        const unsigned char* const bytes = of(xdrs).take(sizeof unit);
        if (bytes == nullptr) {
            return FALSE;
        }
        std::memcpy(&unit, bytes, sizeof unit);
        *value = static_cast<std::int32_t>(ntohl(unit));
        return TRUE;
    },
    .x_putlong = [](XDR* xdrs, const long* value) -> bool_t {
        const std::uint32_t unit = htonl(static_cast<std::uint32_t>(*value));
        unsigned char* const bytes = of(xdrs).take(sizeof unit);
        if (bytes == nullptr) {
            return FALSE;
        }
        std::memcpy(bytes, &unit, sizeof unit);
        return TRUE;
    },
    .x_getbytes = [](XDR* xdrs, char* to, u_int length) -> bool_t {
        const unsigned char* const bytes = of(xdrs).take(length);
        if (bytes == nullptr) {
            return FALSE;
        }
        std::memcpy(to, bytes, length);
        return TRUE;
    },
    .x_putbytes = [](XDR* xdrs, const char* from, u_int length) -> bool_t {
        unsigned char* const bytes = of(xdrs).take(length);
        if (bytes == nullptr) {
            return FALSE;
        }
        std::memcpy(bytes, from, length);
        return TRUE;
    },
    .x_getpostn = [](XDR* xdrs) -> u_int { return static_cast<u_int>(of(xdrs).place); },
    .x_setpostn = [](XDR* xdrs, u_int) -> bool_t {
        of(xdrs);
        return FALSE;
    },
    .x_inline = [](XDR* xdrs, u_int length) -> std::int32_t* {
        ScriptedStream& stream = of(xdrs);
        stream.requests.push_back(length);
        return stream.room(length, stream.place)
                   ? static_cast<std::int32_t*>(static_cast<void*>(stream.take(length)))
                   : nullptr;
    },
    .x_destroy = nullptr,
    .x_control = nullptr,
};
