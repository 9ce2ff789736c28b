#pragma once

#include "control.h"

#include <netinet/in.h>

#include <memory>
#include <string>
#include <vector>

namespace test {

/// A client of the control program, made of what rpcgen generates from its interface file.
class ControlClient {
public:
    /// Over IPPROTO_UDP or IPPROTO_TCP. Throws std::runtime_error when the program is not there.
    explicit ControlClient(int protocol = IPPROTO_TCP);

    /// The result and the reply, as in "0: text". Throws std::runtime_error when the call fails.
    std::string externalMessage(const std::string& name, const std::string& value);
    std::string setShelfId(const std::string& id);
    std::string setFeature(const std::string& name, bool on);
    std::string setProfileMode(bool on);
    std::string setClearConfig(bool on);
    std::string applyDefaults();
    std::string stop();

    /// One line for each value: "shelfId a", "feature 12 on", "entity bridge started", ...
    std::vector<std::string> status();

    /// The status, and one line for each rule: "permit c0000200 ffffff00 5 packets 140 bytes".
    std::vector<std::string> ruleCounters();

    /// How the server answers an argument that does not decode.
    clnt_stat sendBrokenMessage();

private:
    std::string finish(clnt_stat result, controlReply& reply);

    struct Closer {
        void operator()(CLIENT* handle) const { clnt_destroy(handle); }
    };
    std::unique_ptr<CLIENT, Closer> client;
};

}  // namespace test
