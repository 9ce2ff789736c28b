#pragma once

#include "network/rpc/wireRecords.h"

#include <tuple>
#include <type_traits>

/// The shape of a server function follows from the table: it takes the procedure's argument and
/// then the request, and returns a pointer to a result that it owns. A record that stands for
/// several arguments is unpacked into its fields; any other record is handed over by pointer; a
/// single value as it is. The pointers are valid for the length of the call.
namespace rpc {

template <class Record, class... Fields>
std::tuple<Fields&...> references(Record& /*record*/, Fields&... fields) {
    return {fields...};
}

/// The fields of an argument record, by reference.
#define ARGUMENT(name, memorySize, wireSize, ...) \
    inline auto fieldsOf(name& record) { return references(record __VA_ARGS__); }
#define FIELD(name, place) , record.name
#include "network/rpc/records.def"

/// Whether a record stands for the several arguments of a procedure.
template <class Type>
concept ArgumentRecord = requires(Type& record) { fieldsOf(record); };

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
    } else if constexpr (ArgumentRecord<Argument>) {
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
        if constexpr (ArgumentRecord<Argument>) {
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
#define TYPE(name) using type_##name = name;
#include "network/rpc/records.def"

}  // namespace rpc
