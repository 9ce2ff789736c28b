#include "network/rpc/networkProgram.h"

#include "network/rpc/services.h"
#include "network/rpc/xdrFields.h"
#include "rte/BLL/core/rpcDispatch.h"
#include "rte/BLL/core/rpcProxy.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

using namespace rpc;

bool_t xdrTextArgument(XDR* xdrs, char** text) { return rpc::xdrText(xdrs, *text); }

// The table's words for types, as filters.
constexpr xdrproc_t filter_void = rpcVoidFilter;
constexpr xdrproc_t filter_bool = rpcFilter<bool_t, xdr_bool>;
constexpr xdrproc_t filter_int = rpcFilter<int, xdr_int>;
constexpr xdrproc_t filter_u_int = rpcFilter<unsigned int, xdr_u_int>;
constexpr xdrproc_t filter_string = rpcFilter<char*, xdrTextArgument>;
#define TYPE(name) [[maybe_unused]] constexpr xdrproc_t filter_##name = rpcFilter<name, xdr_##name>;
#include "network/rpc/records.def"

struct NumberedProcedure {
    std::size_t number;
    std::size_t argumentSize;
    std::size_t argumentAlignment;
    RpcProcedure procedure;
};

template <class Argument>
consteval std::size_t sizeOf() {
    if constexpr (std::is_void_v<Argument>) {
        return 0;
    } else {
        return sizeof(Argument);
    }
}

template <class Argument>
consteval std::size_t alignmentOf() {
    if constexpr (std::is_void_v<Argument>) {
        return 1;
    } else {
        return alignof(Argument);
    }
}

constexpr NumberedProcedure procedureRows[] = {
#define PROCEDURE(number, name, argument, result) \
    {number,                                      \
     sizeOf<type_##argument>(),                   \
     alignmentOf<type_##argument>(),              \
     {filter_##argument, filter_##result,         \
      callServerFunction<type_##argument, rpc_network_##name##_1_svc>}},
#include "network/rpc/procedures.def"
#undef PROCEDURE
};

static_assert(std::ranges::adjacent_find(procedureRows, std::ranges::greater_equal{},
                                         &NumberedProcedure::number) ==
                  std::ranges::end(procedureRows),
              "procedure numbers ascend, and none stands twice");

/// The area holds any argument: the largest, in whole units of the strictest alignment.
consteval std::size_t argumentAreaSize() {
    const std::size_t size =
        std::ranges::max(procedureRows, {}, &NumberedProcedure::argumentSize).argumentSize;
    const std::size_t alignment =
        std::ranges::max(procedureRows, {}, &NumberedProcedure::argumentAlignment)
            .argumentAlignment;
    return (size + alignment - 1) / alignment * alignment;
}

static_assert(argumentAreaSize() == networkRpcArgumentSize);

constexpr std::size_t highestNumber = std::ranges::rbegin(procedureRows)->number;

/// The procedures by number; a number that is not assigned has an empty entry.
constexpr auto procedures = [] {
    std::array<RpcProcedure, highestNumber + 1> table{};
    for (const NumberedProcedure& row : procedureRows) {
        table[row.number] = row.procedure;
    }
    return table;
}();

}  // namespace

void* rpcNetworkStart(void*) {
    rpcProxyRegisterSvc(networkRpcProgram, networkRpcVersion, rpcNetworkDispatch);
    return nullptr;
}

void rpcNetworkDispatch(svc_req* request, SVCXPRT* transport) {
    alignas(std::max_align_t) std::array<std::byte, networkRpcArgumentSize> area;
    rpcDispatch(procedures, area, request, transport);
}
