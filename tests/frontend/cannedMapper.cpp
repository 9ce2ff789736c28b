#include "cannedBoard.h"

#include <rpc/pmap_prot.h>

namespace canned {

void dispatchMapper(svc_req* request, SVCXPRT* transport) {
    if (request->rq_proc != PMAPPROC_GETPORT) {
        return svcerr_noproc(transport);
    }
    pmap wanted{};
    if (!svc_getargs(transport, asFilter(xdr_pmap), &wanted)) {
        return svcerr_decode(transport);
    }
    tell("getport " + std::to_string(wanted.pm_prog) + " " + std::to_string(wanted.pm_vers) + " " +
         std::to_string(wanted.pm_prot));
    u_int port = 0;
    const bool known =
        wanted.pm_prog == RPC_NETWORK_PROGRAM || wanted.pm_prog == BLL_CONTROL_PROGRAM;
    if (known && wanted.pm_vers == 1) {
        port = wanted.pm_prot == IPPROTO_TCP ? board().tcpPort : board().udpPort;
    }
    svc_sendreply(transport, asFilter(xdr_u_int), &port);
}

}  // namespace canned
