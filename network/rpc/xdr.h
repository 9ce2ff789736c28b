#pragma once

#include "network/rpc/records.h"

/// The XDR filter (RFC 4506) of every wire type: encodes, decodes or frees as the stream says, and
/// returns FALSE at the first field that fails.
#pragma GCC visibility push(default)
extern "C" {

#define ENUMERATION(name) bool_t xdr_##name(XDR* xdrs, name* object);
#define UNIT(name) bool_t xdr_##name(XDR* xdrs, name* object);
#define FLAG(name) bool_t xdr_##name(XDR* xdrs, name* object);
#define RECORD(name) bool_t xdr_##name(XDR* xdrs, name* object);
#define ARGUMENT(name) bool_t xdr_##name(XDR* xdrs, name* object);
#include "network/rpc/records.def"
#undef ENUMERATION
#undef UNIT
#undef FLAG
#undef RECORD
#undef ARGUMENT
}
#pragma GCC visibility pop
