#pragma once

#include <rpc/rpc.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// Bytes of the wire.
using Bytes = std::vector<unsigned char>;

/// A filter of any record.
using Filter = bool_t (*)(XDR*, void*);

/// What a wire type is made of in the end.
enum class LeafKind {
    word,        ///< a 32-bit integer or enumeration
    truth,       ///< a 32-bit bool
    octet,       ///< an unsigned character, one unit
    characters,  ///< a fixed character array, one unit a character
    text,        ///< a `char*`: length, bytes, padding
};

struct Leaf {
    std::string path;  ///< such as "servers[2].host"
    LeafKind kind;
    std::size_t offset;  ///< from the start of the outermost record
    std::size_t size;    ///< in memory
};

/// A wire type as the tests know it, without the filter's own list of fields.
struct WireType {
    const char* name;
    std::size_t size;         ///< in memory
    std::size_t encodedSize;  ///< on the wire, all texts empty
    Filter filter;            ///< ours
    Filter witness;           ///< the one that rpcgen makes of network.x
    std::vector<Leaf> leaves;

    bool has(LeafKind kind) const;
};

/// Every type that has a filter of its own, in the order of records.def.
const std::vector<WireType>& wireTypes();

/// The type of that name. Throws std::out_of_range.
const WireType& wireType(std::string_view name);

/// The types that hold a leaf of the kind.
std::vector<WireType> wireTypesWith(LeafKind kind);

/// Lets test names and messages show a type by its name.
void PrintTo(const WireType& type, std::ostream* out);
