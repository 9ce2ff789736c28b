#include "rte/BLL/core/rpcDispatch.h"

#include <algorithm>
#include <cstdio>

void rpcDispatch(std::span<const RpcProcedure> procedures, std::span<std::byte> area,
                 svc_req* request, SVCXPRT* transport) {
    const auto number = request->rq_proc;
    if (number == NULLPROC) {
        svc_sendreply(transport, rpcVoidFilter, nullptr);
        return;
    }
    if (number >= procedures.size() || procedures[number].call == nullptr) {
        svcerr_noproc(transport);
        return;
    }
    const RpcProcedure& procedure = procedures[number];
    std::ranges::fill(area, std::byte{0});
    if (!svc_getargs(transport, procedure.argumentFilter, area.data())) {
        svcerr_decode(transport);
        return;
    }
    void* const result = procedure.call(area.data(), request);
    if (result != nullptr && !svc_sendreply(transport, procedure.resultFilter, result)) {
        svcerr_systemerr(transport);
    }
    // A failure here leaks an argument at worst; ending the process for it would be out of
    // proportion.
    if (!svc_freeargs(transport, procedure.argumentFilter, area.data())) {
        std::fputs("unable to free arguments", stderr);
    }
}
