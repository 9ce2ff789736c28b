#include "mappers.h"

#include "rte/BLL/core/rpcDispatch.h"
#include "support/loopback.h"

#include <rpc/pmap_clnt.h>
#include <rpc/pmap_prot.h>
#include <rpc/rpc.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <stdexcept>

namespace test {

namespace {

/// A socket on the port mapper's port.
int mapperSocket() {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopbackAddress(PMAPPORT);
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("the port mapper's port cannot be had");
    }
    return descriptor;
}

bool mapperAnswers() {
    sockaddr_in address = loopbackAddress(PMAPPORT);
    constexpr timeval patience{1, 0};
    int createOne = RPC_ANYSOCK;
    CLIENT* const client =
        clntudp_create(&address, PMAPPROG, PMAPVERS, timeval{0, 100'000}, &createOne);
    if (client == nullptr) {
        return false;
    }
    const clnt_stat result =
        clnt_call(client, PMAPPROC_NULL, rpcVoidFilter, nullptr, rpcVoidFilter, nullptr, patience);
    clnt_destroy(client);
    return result == RPC_SUCCESS;
}

void awaitMapper() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!mapperAnswers()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the port mapper does not answer");
        }
        usleep(1000);
    }
}

void answerNullOnly(svc_req* request, SVCXPRT* transport) {
    u_long nothing = 0;
    svc_sendreply(
        transport,
        request->rq_proc == PMAPPROC_NULL ? rpcVoidFilter : (rpcFilter<u_long, xdr_u_long>),
        &nothing);
}

[[noreturn]] void servePowerless() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    constexpr int noRegistration = 0;
    if (svc_register(svcudp_create(mapperSocket()), PMAPPROG, PMAPVERS, answerNullOnly,
                     noRegistration)) {
        svc_run();
    }
    _exit(1);
}

}  // namespace

RealMapper::RealMapper() : process({"rpcbind", "-f"}) { awaitMapper(); }

PowerlessMapper::PowerlessMapper() : process(fork()) {
    if (process == 0) {
        servePowerless();
    }
    awaitMapper();
}

PowerlessMapper::~PowerlessMapper() {
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

SilentMapper::SilentMapper() : descriptor(mapperSocket()) {}

SilentMapper::~SilentMapper() { close(descriptor); }

}  // namespace test
