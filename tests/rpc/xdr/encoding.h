#pragma once

#include "Record.h"
#include "streams.h"

#include <optional>

/// Encodes a record over a memory stream that has just the room it needs. Nothing when the filter
/// fails or leaves room.
std::optional<Bytes> encode(Filter filter, Record& record);

/// Decodes a record over a memory stream. False when the filter fails or leaves bytes.
bool decode(Filter filter, Record& record, Bytes& bytes);

/// The same over streams with the given inline room.
std::optional<Bytes> encode(Filter filter, Record& record, const InlineRoom& room);
bool decode(Filter filter, Record& record, Bytes& bytes, const InlineRoom& room);

/// Runs a filter in the free direction, over an XDR handle without a stream as the RPC library
/// does.
bool release(Filter filter, Record& record);
