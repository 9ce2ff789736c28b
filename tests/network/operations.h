#pragma once

#include "fake/Platform.h"
#include "network/Network.h"

#include <functional>
#include <string>
#include <vector>

/// An imported call of an operation, or a lock that it takes, and what the operation returns when
/// this call fails: once, and from then on for good.
struct ImportedCall {
    ImportedCall(const char* function, int result) : ImportedCall(function, result, result) {}
    ImportedCall(const char* function, int once, int forGood)
        : name(function), resultOnce(once), resultForGood(forGood) {}

    std::string name;
    int resultOnce;
    int resultForGood;
};

/// An operation of the entity as the failure sweep knows it.
struct Operation {
    std::string name;
    /// Brings the board and the entity into the state that the operation is to find.
    std::function<void(fake::Platform&)> prepare;
    std::function<int(Network&)> call;
    /// All calls that can fail, in the order in which the operation makes them when none does.
    /// Requests to the kernel for an interface go by their own names ("ioctl SIOCSIFADDR").
    std::vector<ImportedCall> calls;
    /// What it returns then.
    int success = 0;
};

/// All of them; an operation of several ways has a row for each. Their calls are all that the board
/// writes down; of the clock it writes down the setting only. Not among them is the reading of the
/// component lists, which happens once in the life of a process, and the event thread's loop, which
/// does not end by itself.
const std::vector<Operation>& operations();

/// The part of them that sets and tells domain and name servers.
std::vector<Operation> resolverOperations();

/// The part of them that manages the board's servers and its time.
std::vector<Operation> managementOperations();

/// The part of them that runs the board's programs, the ONT's interface and the factory settings.
std::vector<Operation> boardOperations();
