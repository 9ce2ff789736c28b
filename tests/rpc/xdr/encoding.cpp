#include "encoding.h"

namespace {

template <class Stream, class... Room>
std::optional<Bytes> encodeOver(Filter filter, Record& record, const Room&... room) {
    Bytes bytes(record.encoded().size());
    Stream stream(bytes, XDR_ENCODE, room...);
    if (filter(stream.get(), record.data()) == FALSE || stream.position() != bytes.size()) {
        return std::nullopt;
    }
    return bytes;
}

template <class Stream, class... Room>
bool decodeOver(Filter filter, Record& record, Bytes& bytes, const Room&... room) {
    Stream stream(bytes, XDR_DECODE, room...);
    return filter(stream.get(), record.data()) != FALSE && stream.position() == bytes.size();
}

}  // namespace

std::optional<Bytes> encode(Filter filter, Record& record) {
    return encodeOver<MemoryStream>(filter, record);
}

bool decode(Filter filter, Record& record, Bytes& bytes) {
    return decodeOver<MemoryStream>(filter, record, bytes);
}

std::optional<Bytes> encode(Filter filter, Record& record, const InlineRoom& room) {
    return encodeOver<ScriptedStream>(filter, record, room);
}

bool decode(Filter filter, Record& record, Bytes& bytes, const InlineRoom& room) {
    return decodeOver<ScriptedStream>(filter, record, bytes, room);
}

bool release(Filter filter, Record& record) {
    XDR xdr{};
    xdr.x_op = XDR_FREE;
    return filter(&xdr, record.data()) != FALSE;
}
