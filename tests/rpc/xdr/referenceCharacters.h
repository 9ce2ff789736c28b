#pragma once

#include <rpc/rpc.h>

#include <cstddef>

/// A fixed character array as the RPC library's own primitives carry it. The library calls
/// `xdr_char` through its variadic filter type, as every caller of it does.
inline bool_t referenceCharacters(XDR* xdrs, char* text, std::size_t count) {
    const auto element = reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_char));
    return xdr_vector(xdrs, text, static_cast<unsigned int>(count), sizeof(char), element);
}
