#pragma once

#include "network/rpc/records.h"

#include <cstddef>
#include <tuple>
#include <type_traits>

/// The shape of a server function follows from the table: it takes the procedure's argument and
/// then the request, and returns a pointer to a result that it owns. A record that stands for
/// several arguments is unpacked into its fields; any other record is handed over by pointer; a
/// single value as it is. The pointers are valid for the length of the call.
namespace rpc {

/// Whether a record stands for the several arguments of a procedure.
template <class Type>
inline constexpr bool isArgumentRecord = false;

#define ENUMERATION(name)
#define UNIT(name)
#define FLAG(name)
#define RECORD(name)
#define ARGUMENT(name) \
    template <>        \
    inline constexpr bool isArgumentRecord<name> = true;
#include "network/rpc/records.def"
#undef ENUMERATION
#undef UNIT
#undef FLAG
#undef RECORD
#undef ARGUMENT

/// Stands for a field of any type when fields are counted; never evaluated.
struct AnyField {
    template <class Type>
    operator Type() const;
};

template <class Record, class... Fields>
consteval std::size_t fieldCount() {
    if constexpr (requires { Record{Fields{}..., AnyField{}}; }) {
        return fieldCount<Record, Fields..., AnyField>();
    } else {
        return sizeof...(Fields);
    }
}

/// The fields of an argument record, by reference.
template <class Record>
auto fieldsOf(Record& record) {
    constexpr std::size_t count = fieldCount<Record>();
    static_assert(count >= 2 && count <= 4);
    if constexpr (count == 2) {
        auto& [first, second] = record;
        return std::tie(first, second);
    } else if constexpr (count == 3) {
        auto& [first, second, third] = record;
        return std::tie(first, second, third);
    } else {
        auto& [first, second, third, fourth] = record;
        return std::tie(first, second, third, fourth);
    }
}

template <class Result, class Fields>
struct UnpackedFunction;

template <class Result, class... Fields>
struct UnpackedFunction<Result, std::tuple<Fields&...>> {
    using type = Result*(Fields..., svc_req*);
};

template <class Argument, class Result>
consteval auto functionType() {
    if constexpr (std::is_void_v<Argument>) {
        return std::type_identity<Result*(svc_req*)>{};
    } else if constexpr (isArgumentRecord<Argument>) {
        using Fields = decltype(fieldsOf(std::declval<Argument&>()));
        return std::type_identity<typename UnpackedFunction<Result, Fields>::type>{};
    } else if constexpr (std::is_class_v<Argument>) {
        return std::type_identity<Result*(Argument*, svc_req*)>{};
    } else {
        return std::type_identity<Result*(Argument, svc_req*)>{};
    }
}

/// The function type of a procedure's server function.
template <class Argument, class Result>
using ServerFunction = typename decltype(functionType<Argument, Result>())::type;

/// Calls a server function with a decoded argument.
template <class Argument, auto* function>
void* callServerFunction(void* argument, svc_req* request) {
    if constexpr (std::is_void_v<Argument>) {
        return function(request);
    } else {
        auto* const decoded = static_cast<Argument*>(argument);
        if constexpr (isArgumentRecord<Argument>) {
            return std::apply([&](auto&... fields) { return function(fields..., request); },
                              fieldsOf(*decoded));
        } else if constexpr (std::is_class_v<Argument>) {
            return function(decoded, request);
        } else {
            return function(*decoded, request);
        }
    }
}

// The table's words for types.
using type_void = void;
using type_bool = bool_t;
using type_int = int;
using type_u_int = unsigned int;
using type_string = char*;
#define ENUMERATION(name) using type_##name = name;
#define UNIT(name) using type_##name = name;
#define FLAG(name) using type_##name = name;
#define RECORD(name) using type_##name = name;
#define ARGUMENT(name) using type_##name = name;
#include "network/rpc/records.def"
#undef ENUMERATION
#undef UNIT
#undef FLAG
#undef RECORD
#undef ARGUMENT

}  // namespace rpc
