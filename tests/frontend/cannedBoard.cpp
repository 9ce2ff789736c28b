// A small RPC server with canned answers, for the front end's tests. It prints a line with its
// ports when it serves, then a line for each request. It ends with its parent.
//
//   mngctl_canned_board [--refuse] [--silent] [--lone] [--die-after PROCEDURE]
//                       [--rules N] [--fail-half-way PROCEDURE]
//                       [--counters right|wrong|failed|none]
//                       [--vlans right|stored|outside|failed|none]
//                       [--ntp synchronised|unknown]
//                       [--tcp-port N] [--udp-port N] [--namespace]
//                       [--mapper full|empty|silent|stale]

#include "cannedBoard.h"

#include "mngctl/wire/json.h"
#include "mngctl/wire/recordFields.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>
#include <netinet/in.h>
#include <rpc/pmap_prot.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <type_traits>

namespace canned {

Board& board() {
    static Board theBoard;
    return theBoard;
}

void tell(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

namespace {

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

// The text of an argument: a record as JSON, anything else as it is on the wire.

struct Nothing {};

template <class Value>
std::string show(Value& value) {
    return mngctl::toJson(value).dump();
}
std::string show(Nothing&) { return ""; }
std::string show(int& value) { return std::to_string(value); }
std::string show(u_int& value) { return std::to_string(value); }
std::string show(char*& value) { return value; }
std::string show(rpcNetworkSprotocol& value) { return std::to_string(static_cast<int>(value)); }

/// The argument and the result that a generated client stub names.
template <class Stub>
struct Types;
template <class ArgumentType, class ResultType>
struct Types<clnt_stat (*)(ArgumentType*, ResultType*, CLIENT*)> {
    using Argument = ArgumentType;
    using Result = ResultType;
};
template <class ResultType>
struct Types<clnt_stat (*)(void*, ResultType*, CLIENT*)> {
    using Argument = Nothing;
    using Result = ResultType;
};

/// As on the board, the host name is never taken.
bool refuses(rpcproc_t procedure) {
    return procedure == rpc_network_set_hostname ||
           (board().behaviour.refuse && procedure != rpc_network_is_ftp_enabled &&
            procedure != rpc_network_set_ipv6proto);
}

void answer(rpcproc_t procedure, void* argument, void* result) {
    for (const auto group : {answerAddressing, answerIpv6, answerResolver, answerServices,
                             answerSnmp, answerSoftware, answerVlan}) {
        if (group(procedure, argument, result)) {
            return;
        }
    }
}

template <auto stub, class ArgumentFilter, class ResultFilter>
void serve(svc_req* request, SVCXPRT* transport, const char* name, ArgumentFilter* argumentFilter,
           ResultFilter* resultFilter) {
    typename Types<decltype(stub)>::Argument argument{};
    if (!svc_getargs(transport, asFilter(argumentFilter), &argument)) {
        return svcerr_decode(transport);
    }
    const std::string shown = show(argument);
    tell(shown.empty() ? name : fmt::format("{} {}", name, shown));
    using Result = typename Types<decltype(stub)>::Result;
    Result result{};
    // What answers with a status and no more is a change.
    if (std::is_same_v<Result, rpcNetworkResult> && refuses(request->rq_proc)) {
        refuse(&result);
    } else {
        answer(request->rq_proc, &argument, &result);
    }
    if (!svc_sendreply(transport, asFilter(resultFilter), &result)) {
        svcerr_systemerr(transport);
    }
    if (board().behaviour.dieAfter == name) {
        std::_Exit(0);
    }
    svc_freeargs(transport, asFilter(argumentFilter), &argument);
}

/// The filters that the table's type names lead to and the RPC library has in another form.
namespace filters {

bool_t xdr_void(XDR* /*stream*/, Nothing* /*value*/) { return TRUE; }
bool_t xdr_string(XDR* stream, char** text) { return xdr_wrapstring(stream, text); }

void dispatchNetwork(svc_req* request, SVCXPRT* transport) {
#define PROCEDURE(number, name, argument, result)                                        \
    case number:                                                                         \
        return serve<&rpc_network_##name##_1>(request, transport, #name, xdr_##argument, \
                                              xdr_##result);
    switch (request->rq_proc) {
        case NULLPROC: {
            Nothing nothing;
            tell("null");
            svc_sendreply(transport, asFilter(xdr_void), &nothing);
            return;
        }
#include "network/rpc/procedures.def"
        default:
            return svcerr_noproc(transport);
    }
#undef PROCEDURE
}

}  // namespace filters

int listenOn(int type, unsigned short port) {
    const int descriptor = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        fail("bind");
    }
    if (type == SOCK_STREAM && ::listen(descriptor, 16) != 0) {
        fail("listen");
    }
    return descriptor;
}

unsigned short portOf(int descriptor) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

/// A network of its own with nothing but a loopback interface; for one who is not root in a user
/// namespace of its own.
void enterNamespace() {
    const int user = ::geteuid() == 0 ? 0 : CLONE_NEWUSER;
    if (::unshare(CLONE_NEWNET | user) != 0) {
        fail("unshare");
    }
    const int descriptor = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP;
    if (::ioctl(descriptor, SIOCSIFFLAGS, &request) != 0) {
        fail("lo");
    }
    ::close(descriptor);
}

struct Transports {
    SVCXPRT* tcp;
    SVCXPRT* udp;
};

Transports makeTransports(int tcp, int udp) {
    const Transports transports{svctcp_create(tcp, 0, 0), svcudp_create(udp)};
    if (transports.tcp == nullptr || transports.udp == nullptr) {
        fail("transport");
    }
    return transports;
}

void offer(const Transports& transports, u_long program, u_long version,
           void (*dispatch)(svc_req*, SVCXPRT*)) {
    // Protocol 0: the machine's port mapper is not told.
    if (!svc_register(transports.tcp, program, version, dispatch, 0) ||
        !svc_register(transports.udp, program, version, dispatch, 0)) {
        fail("register");
    }
}

struct Options {
    bool silent = false;
    bool separate = false;
    unsigned short tcpPort = 0;
    unsigned short udpPort = 0;
    std::string mapper;
};

/// So many rules that permit 192.0.2.0/24.
void addRules(int count) {
    board().state.rules.assign(static_cast<std::size_t>(count), {0, 0xC0000200, 0xFFFFFF00, TRUE});
}

Options parse(int count, char** words) {
    Options options;
    Behaviour& behaviour = board().behaviour;
    std::string rules = "0";
    std::string tcpPort = "0";
    std::string udpPort = "0";
    const std::map<std::string_view, bool&> flags{{"--refuse", behaviour.refuse},
                                                  {"--lone", behaviour.lone},
                                                  {"--silent", options.silent},
                                                  {"--namespace", options.separate}};
    const std::map<std::string_view, std::string&> values{
        {"--die-after", behaviour.dieAfter},
        {"--fail-half-way", behaviour.failHalfWay},
        {"--counters", behaviour.counters},
        {"--components", behaviour.components},
        {"--ntp", behaviour.ntp},
        {"--vlans", behaviour.vlans},
        {"--rules", rules},
        {"--tcp-port", tcpPort},
        {"--udp-port", udpPort},
        {"--mapper", options.mapper}};
    for (int i = 1; i < count; ++i) {
        if (const auto flag = flags.find(words[i]); flag != flags.end()) {
            flag->second = true;
        } else if (const auto value = values.find(words[i]);
                   value != values.end() && i + 1 < count) {
            value->second = words[++i];
        } else {
            fail(words[i]);
        }
    }
    addRules(std::stoi(rules));
    options.tcpPort = static_cast<unsigned short>(std::stoi(tcpPort));
    options.udpPort = static_cast<unsigned short>(std::stoi(udpPort));
    if (behaviour.vlans == "outside") {
        board().state.info.mngVlanId = 0;
    }
    return options;
}

void serveMapper(const Options& options) {
    const int tcp = listenOn(SOCK_STREAM, PMAPPORT);
    const int udp = listenOn(SOCK_DGRAM, PMAPPORT);
    if (options.mapper == "silent") {
        return;
    }
    offer(makeTransports(tcp, udp), PMAPPROG, PMAPVERS, dispatchMapper);
    // An empty mapper knows no port; a stale one knows those of a server that is gone.
    if (options.mapper == "stale") {
        board().tcpPort = board().udpPort = 9;
    }
    if (options.mapper == "empty") {
        board().tcpPort = board().udpPort = 0;
    }
}

int run(int count, char** words) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    const Options options = parse(count, words);
    if (options.separate) {
        enterNamespace();
    }
    const int tcp = listenOn(SOCK_STREAM, options.tcpPort);
    const int udp = listenOn(SOCK_DGRAM, options.udpPort);
    board().tcpPort = portOf(tcp);
    board().udpPort = portOf(udp);
    const std::string ports = fmt::format("{} {}", board().tcpPort, board().udpPort);
    if (!options.silent) {
        const Transports transports = makeTransports(tcp, udp);
        if (board().behaviour.lone) {
            offer(transports, 0x20000001, 1, filters::dispatchNetwork);
        } else {
            offer(transports, RPC_NETWORK_PROGRAM, RPC_NETWORK_VERSION, filters::dispatchNetwork);
            offer(transports, BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION, dispatchControl);
        }
    }
    if (!options.mapper.empty()) {
        serveMapper(options);
    }
    tell(ports);
    if (options.silent) {
        ::pause();
    } else {
        svc_run();
    }
    return 1;
}

}  // namespace

}  // namespace canned

int main(int count, char** words) { return canned::run(count, words); }
