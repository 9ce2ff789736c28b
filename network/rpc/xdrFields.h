#pragma once

#include "network/rpc/xdr.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <tuple>
#include <type_traits>

/// The vocabulary of the XDR filters (RFC 4506): a filter is a list of fields in wire order, and
/// `xdrFields` runs it in the stream's direction.
namespace rpc {

/// A 32-bit bool, sent as 0 or 1.
struct Flag {
    bool_t& value;
};

/// A run of 32-bit fields, converted in one piece where the stream offers room for the whole.
template <class... Units>
struct Run {
    std::tuple<Units...> units;
};

inline Flag flag(bool_t& value) { return {value}; }

/// Fields of a run are given as they are, bools through flag(). The stream stands before them as in
/// any list of fields.
template <class... Units>
Run<Units...> run(XDR* /*xdrs*/, Units&&... units) {
    return {std::tuple<Units...>(std::forward<Units>(units)...)};
}

/// A fixed character array of `count` characters: one unit a character.
bool_t xdrCharacters(XDR* xdrs, char* text, std::size_t count);

/// A text of any length. The decoder allocates it into a null pointer; when it fails, nothing stays
/// allocated and the pointer is null.
bool_t xdrText(XDR* xdrs, char*& text);

inline bool_t xdrField(XDR* xdrs, int& value) { return xdr_int(xdrs, &value); }
inline bool_t xdrField(XDR* xdrs, unsigned int& value) { return xdr_u_int(xdrs, &value); }
inline bool_t xdrField(XDR* xdrs, char*& text) { return xdrText(xdrs, text); }
inline bool_t xdrField(XDR* xdrs, Flag field) { return xdr_bool(xdrs, &field.value); }

template <class Enumeration>
    requires std::is_enum_v<Enumeration>
bool_t xdrField(XDR* xdrs, Enumeration& value) {
    static_assert(sizeof(Enumeration) == sizeof(enum_t));
    enum_t number = value;
    const bool_t done = xdr_enum(xdrs, &number);
    value = static_cast<Enumeration>(number);
    return done;
}

template <std::size_t count>
bool_t xdrField(XDR* xdrs, char (&text)[count]) {
    return xdrCharacters(xdrs, text, count);
}

/// Octets, one unit each.
template <std::size_t count>
bool_t xdrField(XDR* xdrs, unsigned char (&octets)[count]) {
    const auto isDone = [xdrs](unsigned char& octet) { return xdr_u_char(xdrs, &octet) != FALSE; };
    return std::ranges::all_of(octets, isDone) ? TRUE : FALSE;
}

#define RECORD(name, memorySize, wireSize, ...) \
    inline bool_t xdrField(XDR* xdrs, name& record) { return xdr_##name(xdrs, &record); }
#include "network/rpc/records.def"

/// Records back to back, without a count.
template <class Record, std::size_t count>
    requires std::is_class_v<Record>
bool_t xdrField(XDR* xdrs, Record (&records)[count]) {
    for (Record& record : records) {
        if (!xdrField(xdrs, record)) {
            return FALSE;
        }
    }
    return TRUE;
}

inline std::uint32_t toUnit(Flag field) { return field.value != FALSE ? 1 : 0; }
inline std::uint32_t toUnit(unsigned int value) { return value; }
inline std::uint32_t toUnit(int value) { return static_cast<std::uint32_t>(value); }

inline void fromUnit(std::uint32_t unit, Flag field) { field.value = unit != 0 ? TRUE : FALSE; }
inline void fromUnit(std::uint32_t unit, unsigned int& value) { value = unit; }
inline void fromUnit(std::uint32_t unit, int& value) { value = static_cast<int>(unit); }

/// The unit at a place of a stream's inline buffer, in network byte order.
void putUnit(std::int32_t* place, std::uint32_t unit);
std::uint32_t getUnit(const std::int32_t* place);

template <class... Units>
bool_t xdrField(XDR* xdrs, Run<Units...> field) {
    if (xdrs->x_op == XDR_FREE) {
        return TRUE;
    }
    constexpr auto size = static_cast<unsigned int>(sizeof...(Units) * BYTES_PER_XDR_UNIT);
    std::int32_t* place = XDR_INLINE(xdrs, size);
    return std::apply(
        [&](auto&&... units) -> bool_t {
            if (place == nullptr) {
                return (xdrField(xdrs, units) && ...);
            }
            if (xdrs->x_op == XDR_ENCODE) {
                (putUnit(place++, toUnit(units)), ...);
            } else {
                (fromUnit(getUnit(place++), units), ...);
            }
            return TRUE;
        },
        field.units);
}

/// Whether a field is a text that is there before it is decoded: the caller's own.
template <class Field>
bool holdsText(const Field&) {
    return false;
}

inline bool holdsText(char* const& text) { return text != nullptr; }

/// Gives back what a field's decoder allocated.
template <class Field>
void release(Field&) {}

inline void release(char*& text) {
    std::free(text);
    text = nullptr;
}

/// Runs a filter. No free pass follows a decoder that failed, so it releases the texts that it had
/// allocated by then.
template <class... Fields>
bool_t xdrFields(XDR* xdrs, Fields&&... fields) {
    const std::array<bool, sizeof...(Fields)> isCallers{holdsText(fields)...};
    const bool done = (xdrField(xdrs, fields) && ...);
    if (!done && xdrs->x_op == XDR_DECODE) {
        std::size_t field = 0;
        ((isCallers[field++] ? void() : release(fields)), ...);
    }
    return done ? TRUE : FALSE;
}

}  // namespace rpc
