#include "WireType.h"

#include "network/rpc/xdr.h"
#include "witness/witness.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>

namespace {

using Leaves = std::vector<Leaf>;

template <class Record>
struct Fields;

std::string join(const std::string& path, const char* field) {
    return path.empty() ? field : path + "." + field;
}

/// Adds what a value of the type is made of.
template <class Type>
void addLeaves(Leaves& leaves, const std::string& path, std::size_t offset) {
    if constexpr (std::is_same_v<Type, char*>) {
        leaves.push_back({path, LeafKind::text, offset, sizeof(Type)});
    } else if constexpr (std::is_same_v<Type, unsigned char>) {
        leaves.push_back({path, LeafKind::octet, offset, sizeof(Type)});
    } else if constexpr (std::is_array_v<Type>) {
        using Element = std::remove_extent_t<Type>;
        if constexpr (std::is_same_v<Element, char>) {
            leaves.push_back({path, LeafKind::characters, offset, sizeof(Type)});
        } else {
            for (std::size_t i = 0; i < std::extent_v<Type>; ++i) {
                addLeaves<Element>(leaves, path + "[" + std::to_string(i) + "]",
                                   offset + i * sizeof(Element));
            }
        }
    } else if constexpr (std::is_class_v<Type>) {
        Fields<Type>::add(leaves, path, offset);
    } else {
        static_assert(std::is_same_v<Type, int> || std::is_same_v<Type, unsigned int> ||
                      std::is_enum_v<Type>);
        static_assert(sizeof(Type) == 4);
        leaves.push_back({path, LeafKind::word, offset, sizeof(Type)});
    }
}

template <class Type>
void addTruth(Leaves& leaves, const std::string& path, std::size_t offset) {
    static_assert(std::is_same_v<Type, bool_t>);
    leaves.push_back({path, LeafKind::truth, offset, sizeof(Type)});
}

#define RECORD(record, memorySize, wireSize, ...)                                             \
    template <>                                                                               \
    struct Fields<record> {                                                                   \
        static constexpr std::size_t encodedSize = wireSize;                                  \
        static void add(Leaves& leaves, const std::string& path, std::size_t recordsOffset) { \
            using Record = record;                                                            \
            __VA_ARGS__                                                                       \
        }                                                                                     \
    };
#define FIELD(field, offset) RENAMED_TEXT(field, field, offset)
#define RENAMED_TEXT(field, clientsName, offset) \
    addLeaves<decltype(Record::field)>(leaves, join(path, #clientsName), recordsOffset + (offset));
#define FLAG(field, offset) \
    addTruth<decltype(Record::field)>(leaves, join(path, #field), recordsOffset + (offset));
#include "network/rpc/records.def"

template <class Type, bool_t (*filter)(XDR*, Type*)>
bool_t erased(XDR* xdrs, void* object) {
    return filter(xdrs, static_cast<Type*>(object));
}

template <class Record>
WireType recordType(const char* name, Filter filter, Filter witness) {
    WireType type{name, sizeof(Record), Fields<Record>::encodedSize, filter, witness, {}};
    addLeaves<Record>(type.leaves, "", 0);
    return type;
}

WireType unitType(const char* name, LeafKind kind, Filter filter, Filter witness) {
    return {name, 4, BYTES_PER_XDR_UNIT, filter, witness, {{"value", kind, 0, 4}}};
}

}  // namespace

bool WireType::has(LeafKind kind) const {
    return std::ranges::any_of(leaves, [kind](const Leaf& leaf) { return leaf.kind == kind; });
}

const std::vector<WireType>& wireTypes() {
    static const std::vector<WireType> types = {
#define TYPE(name) \
    unitType(#name, LeafKind::word, erased<name, xdr_##name>, erased<name, witness_xdr_##name>),
#define BOOLEAN(name) \
    unitType(#name, LeafKind::truth, erased<name, xdr_##name>, erased<name, witness_xdr_##name>),
#define RECORD(name, memorySize, wireSize, ...) \
    recordType<name>(#name, erased<name, xdr_##name>, erased<name, witness_xdr_##name>),
#include "network/rpc/records.def"
    };
    return types;
}

const WireType& wireType(std::string_view name) {
    const auto found = std::ranges::find(wireTypes(), name, &WireType::name);
    if (found == wireTypes().end()) {
        throw std::out_of_range("no wire type " + std::string(name));
    }
    return *found;
}

std::vector<WireType> wireTypesWith(LeafKind kind) {
    std::vector<WireType> found;
    std::ranges::copy_if(wireTypes(), std::back_inserter(found),
                         [kind](const WireType& type) { return type.has(kind); });
    return found;
}

void PrintTo(const WireType& type, std::ostream* out) { *out << type.name; }
