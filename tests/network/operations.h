#pragma once

#include "fake/Platform.h"
#include "network/Network.h"

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// A call of an exported function, or of the entity where there is none.
struct OperationCall {
    std::string name;
    std::function<int()> make;
    /// With null pointers wherever an exported function takes pointers and does not itself look
    /// behind them; empty for a call of the entity.
    std::function<int()> makeWithNulls{};

    bool isExported() const { return static_cast<bool>(makeWithNulls); }
};

/// An operation as all tests know it that go over all of them, in one of its ways.
struct Operation {
    /// The good run is what the operation does when nothing fails: all of the board's journal but
    /// the log, by the names of the calls, locks among them; "~" stands for the release of a lock.
    /// Requests to the kernel for an interface go by their own names ("SIOCSIFADDR").
    ///
    /// Each of the calls fails in turn. By itself a name says that the operation then returns -1
    /// and does nothing more but log, close and release. "name=0" says that it returns 0 then,
    /// whatever it does; "name=0/-1" that it returns 0 if the call fails once and -1 if it fails
    /// for good. "name?" is no call that can fail, but a question, or one that the board refuses.
    Operation(OperationCall operation, std::string run)
        : call(std::move(operation)), goodRun(std::move(run)) {}

    /// On a board that is brought into this state first.
    Operation& on(std::function<void(fake::Platform&)> state) {
        prepare = std::move(state);
        return *this;
    }
    /// Another way of an operation that has a row already.
    Operation& as(std::string nameOfTheWay) {
        way = std::move(nameOfTheWay);
        return *this;
    }
    /// What the good run returns, if not 0.
    Operation& returns(int result) {
        success = result;
        return *this;
    }
    /// The lock that its good run begins with is for a part of the work only.
    Operation& locksForAPart() {
        isLockOfAPart = true;
        return *this;
    }

    std::string name() const { return way.empty() ? call.name : call.name + "_" + way; }
    /// The lock under which it works: "exclusiveLock", "sharedLock", or empty for none.
    std::string lock() const {
        const std::string first = goodRun.substr(0, goodRun.find(' '));
        return first.ends_with("Lock") && !isLockOfAPart ? first : "";
    }

    OperationCall call;
    std::string goodRun;
    std::string way;
    std::function<void(fake::Platform&)> prepare;
    int success = 0;
    bool isLockOfAPart = false;
};

/// All of them. Every exported function has a row; so has the entity's part that is not exported,
/// but for the reading of the component lists, which happens once in the life of a process, and the
/// loops of its threads.
const std::vector<Operation>& operations();
/// One row of each exported function.
std::vector<Operation> exportedOperations();

std::vector<Operation> addressingOperations();
std::vector<Operation> boardOperations();
std::vector<Operation> managementOperations();
std::vector<Operation> resolverOperations();

/// Rows on a board in that state, but for those that name one of their own.
std::vector<Operation> onBoard(const std::function<void(fake::Platform&)>& state,
                               std::vector<Operation> rows);
std::vector<Operation> joined(std::initializer_list<std::vector<Operation>> parts);

/// What a failing test prints of a row.
void PrintTo(const Operation& operation, std::ostream* out);

/// Room for whatever the operations fill.
struct OperationBuffers {
    char texts[9][2000];
    int number;
    unsigned int numbers[3];
    bool flag;
    Network::NetworkInfoIpv6 infoIpv6;
    Network::RemoteAccessRule rule;
    Network::ArpInfo arp;
    Network::HttpInfo http;
    rpcNetworkInfo info;
    rpcSntpConfig sntp;
    rpcSntpConfigHost sntpHost;
    rpcSntpInfo sntpInfo;
    rpcSntpInfoHost sntpInfoHost;
    rpcSnmpTrapConfig trap;
    rpcSnmpCommunityConfig communities;
    rpcSnmpSystemConfig system;
    rpcNetworkSntpTimezone zone;
};
extern OperationBuffers buffers;

template <class Parameter>
Parameter withoutPointer(Parameter value) {
    if constexpr (std::is_pointer_v<Parameter>) {
        return nullptr;
    } else {
        return value;
    }
}

template <class... Parameters>
OperationCall exportedCall(const char* name, int (*function)(Parameters...),
                           std::type_identity_t<Parameters>... arguments) {
    return {name, [=] { return function(arguments...); },
            [=] { return function(withoutPointer(arguments)...); }};
}
template <class Function>
OperationCall lookingCall(const char* name, Function function) {
    return {name, function, function};
}

/// A call of an exported function, and of one that looks behind its pointers itself.
#define EXPORTED(function, ...) exportedCall(#function, function __VA_OPT__(, ) __VA_ARGS__)
#define EXPORTED_THAT_LOOKS(function, ...) \
    lookingCall(#function, [] { return function(__VA_ARGS__); })

/// A call of the entity.
template <class Function>
OperationCall entityCall(const char* name, Function function) {
    return {name, [=] { return static_cast<int>(function(singleton<Network>::instance())); }};
}
#define ENTITY(operation, ...) \
    entityCall(#operation, [](Network& network) { return network.operation(__VA_ARGS__); })
