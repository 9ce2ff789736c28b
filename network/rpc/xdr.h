#pragma once

#include "network/rpc/wireRecords.h"

/// The XDR filter (RFC 4506) of every wire type: encodes, decodes or frees as the stream says, and
/// returns FALSE at the first field that fails.
#pragma GCC visibility push(default)
extern "C" {

#define TYPE(name) bool_t xdr_##name(XDR* xdrs, name* object);
#include "network/rpc/records.def"
}
#pragma GCC visibility pop
