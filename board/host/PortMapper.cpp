#include "board/host/PortMapper.h"

#include "board/host/surroundings.h"
#include "rte/BLL/core/rpcDispatch.h"

#include <netinet/in.h>
#include <rpc/pmap_prot.h>
#include <sys/socket.h>

namespace host {

namespace {

constexpr timeval retransmission{0, 250'000};
constexpr timeval total{2, 0};

}  // namespace

PortMapper::PortMapper() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(PMAPPORT);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int createOne = RPC_ANYSOCK;
    client.reset(clntudp_create(&address, PMAPPROG, PMAPVERS, retransmission, &createOne));
}

void PortMapper::checkAnswers() const {
    if (!call(PMAPPROC_NULL, rpcVoidFilter, nullptr, rpcVoidFilter, nullptr)) {
        throw StartFailure(
            "the port mapper does not answer on 127.0.0.1 port 111; start it "
            "(systemctl start rpcbind, or rpcbind -w) and try again.");
    }
}

bool PortMapper::knows(unsigned long program, unsigned long version, int protocol) const {
    pmap wanted{program, version, static_cast<unsigned long>(protocol), 0};
    u_long port = 0;
    return call(PMAPPROC_GETPORT, rpcFilter<pmap, xdr_pmap>, &wanted, rpcFilter<u_long, xdr_u_long>,
                &port) &&
           port != 0;
}

bool PortMapper::call(rpcproc_t procedure, xdrproc_t argumentFilter, void* argument,
                      xdrproc_t resultFilter, void* result) const {
    return client && clnt_call(client.get(), procedure, argumentFilter, argument, resultFilter,
                               result, total) == RPC_SUCCESS;
}

}  // namespace host
