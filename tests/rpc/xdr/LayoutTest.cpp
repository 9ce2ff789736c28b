// The records in memory: sizes and offsets when this is compiled, and that network.x declares the
// same records when it runs.

#include "comparison.h"
#include "encoding.h"
#include "network/rpc/networkProgram.h"
#include "network/rpc/xdr.h"
#include "witness/layout.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace {

#define RECORD(record, memorySize, wireSize, ...)                                  \
    static_assert(sizeof(record) == (memorySize));                                 \
    static_assert(std::is_standard_layout_v<record> && std::is_trivial_v<record>); \
    namespace offsetsOf_##record {                                                 \
        using Record = record;                                                     \
        __VA_ARGS__                                                                \
    }
#define FIELD(field, offset) static_assert(offsetof(Record, field) == (offset));
#include "network/rpc/records.def"

// The dispatcher decodes the argument of any procedure into one area.
using type_void = std::byte;
using type_bool = bool_t;
using type_int = int;
using type_u_int = unsigned int;
using type_string = char*;
#define TYPE(name) using type_##name [[maybe_unused]] = name;
#include "network/rpc/records.def"
union AnyArgument {
#define PROCEDURE(number, name, argument, result) type_##argument name;
#include "network/rpc/procedures.def"
#undef PROCEDURE
};
static_assert(sizeof(AnyArgument) == 1080);
static_assert(networkRpcArgumentSize == 1080);

struct Row {
    std::string record;
    std::string field;  ///< empty for the record as a whole
    std::size_t offset;
    std::size_t size;

    bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.record << "." << row.field << " at " << row.offset << ", " << row.size << " bytes";
}

std::vector<Row> ourRows() {
    std::vector<Row> rows;
#define RECORD(record, memorySize, wireSize, ...)      \
    {                                                  \
        using Record = record;                         \
        const char* const name = #record;              \
        rows.push_back({name, "", 0, sizeof(Record)}); \
        __VA_ARGS__                                    \
    }
#define FIELD(field, offset) RENAMED_TEXT(field, field, offset)
#define RENAMED_TEXT(field, clientsName, offset) \
    rows.push_back({name, #clientsName, offsetof(Record, field), sizeof(Record::field)});
#include "network/rpc/records.def"
    return rows;
}

std::vector<Row> witnessRows() {
    std::vector<Row> rows;
    witnessLayout(
        [](void* to, const char* record, const char* field, std::size_t offset, std::size_t size) {
            static_cast<std::vector<Row>*>(to)->push_back({record, field, offset, size});
        },
        &rows);
    return rows;
}

TEST(Layout, IsTheOneOfTheInterfaceFile) { EXPECT_EQ(ourRows(), witnessRows()); }

TEST(Layout, OfEnumerationsIsTheOneOfTheInterfaceFile) {
    std::vector<std::pair<std::string, int>> ours;
#define ENUMERATION(name, ...) __VA_ARGS__
#define ENUMERATOR(name) ours.emplace_back(#name, static_cast<int>(name));
#include "network/rpc/records.def"
    std::vector<std::pair<std::string, int>> theirs;
    witnessEnumerators(
        [](void* to, const char* name, int value) {
            static_cast<decltype(theirs)*>(to)->emplace_back(name, value);
        },
        &theirs);
    EXPECT_EQ(ours, theirs);
}

// The fields that the tests know of are all there are: nothing but alignment lies between them.
TEST(Layout, HasNoOtherFields) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        std::size_t end = 0;
        std::size_t strictest = 1;
        for (const Leaf& leaf : type.leaves) {
            const bool isByte = leaf.kind == LeafKind::octet || leaf.kind == LeafKind::characters;
            const std::size_t alignment = isByte ? 1 : leaf.size;
            EXPECT_EQ(leaf.offset, (end + alignment - 1) / alignment * alignment) << leaf.path;
            end = leaf.offset + leaf.size;
            strictest = std::max(strictest, alignment);
        }
        EXPECT_EQ(type.size, (end + strictest - 1) / strictest * strictest);
    }
}

TEST(Layout, OnTheWireHasTheKnownSize) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.emptyTexts();
        Bytes bytes(type.encodedSize + 4);
        MemoryStream stream(bytes, XDR_ENCODE);
        ASSERT_TRUE(type.filter(stream.get(), record.data()));
        EXPECT_EQ(stream.position(), type.encodedSize);
    }
}

}  // namespace
