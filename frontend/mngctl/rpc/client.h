#pragma once

#include "mngctl/rpc/rpcHandle.h"

#include <control.h>
#include <network.h>
#include <rpc/rpc_com.h>

#include <map>
#include <string>
#include <type_traits>

namespace mngctl {

inline constexpr Program networkProgram{RPC_NETWORK_PROGRAM, RPC_NETWORK_VERSION, "network"};
inline constexpr Program controlProgram{BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION, "control"};

/// Bytes of a text that is the whole argument of a procedure: the bound of xdr_wrapstring, which
/// both sides carry it with. A text in a record has none.
inline constexpr std::size_t loneTextMaximum = RPC_MAXDATASIZE;

/// A generated client stub.
template <class Argument, class Result>
using Stub = clnt_stat (*)(Argument*, Result*, CLIENT*);

/// A result with the memory that decoding allocated for it.
template <class Result>
class Decoded {
public:
    using Filter = bool_t (*)(XDR*, Result*);

    explicit Decoded(Filter release) : filter(release) {}
    ~Decoded() {
        XDR stream{};
        stream.x_op = XDR_FREE;
        filter(&stream, &value);
    }
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    Result& operator*() { return value; }
    Result* operator->() { return &value; }

private:
    Filter filter;
    Result value{};
};

/// Calls the board's programs. A handle for each program is made at the first call and kept; after
/// a failure, or when the board has closed it, the next call makes a new one.
class Client {
public:
    /// To be called before the first call. Handles that lead elsewhere are given up.
    void configure(const Settings& settings);

    /// Calls and waits for the answer. Nothing is sent twice, except where the first request
    /// provably reached nobody. Throws NoAnswer, Refused or UsageError.
    template <class Argument, class Result>
    void call(const Program& program, Stub<Argument, Result> stub,
              std::type_identity_t<Argument>& argument, Result& result) {
        perform(program, [&](CLIENT* handle) { return stub(&argument, &result, handle); });
    }

    /// Calls a procedure that takes nothing.
    template <class Result>
    void call(const Program& program, Stub<void, Result> stub, Result& result) {
        perform(program, [&](CLIENT* handle) { return stub(nullptr, &result, handle); });
    }

    /// Calls procedure 0 of the program, which does nothing but answer.
    void ping(const Program& program);

private:
    template <class Call>
    void perform(const Program& program, const Call& call) {
        if (attempt(program, call, true) == Attempt::NotDelivered) {
            attempt(program, call, false);
        }
    }

    enum class Attempt { Done, NotDelivered };

    template <class Call>
    Attempt attempt(const Program& program, const Call& call, bool mayRepeat) {
        const PipeSignalGuard guard;
        bool kept = false;
        Handle& handle = connected(program, kept);
        const clnt_stat status = call(handle.get());
        return status == RPC_SUCCESS ? Attempt::Done : failed(program, status, kept && mayRepeat);
    }

    Handle& connected(const Program& program, bool& kept);
    Attempt failed(const Program& program, clnt_stat status, bool mayRepeat);
    std::uint16_t givenPort(const Program& program) const;
    sockaddr_in resolve() const;
    [[noreturn]] void unreachable(const Program& program, std::uint16_t port, int error) const;

    Settings current;
    std::map<unsigned, Handle> handles;  ///< by program number
};

}  // namespace mngctl
