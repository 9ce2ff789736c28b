#include "exported/ExportedCall.h"

#include "fake/Platform.h"

#include <cstring>

using fake::Platform;

namespace {

/// The content of a text field, which need not be terminated.
template <std::size_t size>
std::string shownField(const char (&text)[size]) {
    return fake::quoted({text, strnlen(text, size)});
}

}  // namespace

ExportedFunctions& exportedFunctions() {
    static ExportedFunctions functions;
    return functions;
}

std::string shown(const rpcSntpConfig* config) {
    std::string text = fmt::format("{{{}", config->mode);
    for (const rpcSntpSrv& server : config->servers) {
        text += fmt::format(" [{} {} {}]", server.ipAddress, server.ntpVersion, server.priority);
    }
    return text + "}";
}

std::string shown(const rpcSntpConfigHost* config) {
    std::string text = fmt::format("{{{}", config->mode);
    for (const rpcSntpSrvHost& server : config->servers) {
        text += fmt::format(" [{} {} {} {}]", shownField(server.host), server.ntpVersion,
                            server.priority, server.addressType);
    }
    return text + "}";
}

int ExportedCall::end() {
    Platform& platform = Platform::current();
    const int status = platform.script.failureOf(name);
    platform.journal.write(fmt::format("{}({}) -> {}", name, argumentList, status));
    return status;
}

void ExportedCall::addArgument(const std::string& argument) {
    argumentList += argumentList.empty() ? argument : ", " + argument;
}

void ExportedCall::fillOne(OutputText text) {
    note(text.place);
    if (fills()) {
        putText(text.place, text.size);
    }
}

void ExportedCall::noteValues(const Network::ArpInfo& info) {
    std::vector<std::uint32_t>& values = exportedFunctions().valuesBefore;
    values = {info.ipAddr};
    values.insert(values.end(), std::begin(info.macAddr), std::end(info.macAddr));
    values.insert(values.end(),
                  {info.slot, info.port, static_cast<std::uint32_t>(info.type), info.value});
}

void ExportedCall::noteValues(const Network::HttpInfo& info) {
    exportedFunctions().valuesBefore = {info.httpEnabled, info.httpsEnabled, info.httpsPort,
                                        static_cast<std::uint32_t>(info.httpsProtocol)};
}

void ExportedCall::noteValues(const Network::RemoteAccessRule& rule) {
    exportedFunctions().valuesBefore = {rule.sequenceNumber, rule.ipAddr, rule.netmask,
                                        rule.permit};
}

void ExportedCall::putText(char* place, std::size_t size) {
    const std::string text = telling.text(++filled, size - 1);
    std::memcpy(place, text.c_str(), size);
}

void ExportedCall::put(Network::ArpInfo& r) {
    putAll(r.ipAddr, r.macAddr, r.slot, r.port, r.type, r.value);
}

void ExportedCall::put(Network::HttpInfo& r) {
    putAll(r.httpEnabled, r.httpsEnabled, r.httpsPort, r.httpsProtocol);
}

void ExportedCall::put(Network::RemoteAccessRule& r) {
    putAll(r.sequenceNumber, r.ipAddr, r.netmask, r.permit);
}

#define RECORD(type, memorySize, wireSize, ...) \
    void ExportedCall::put(type& record) { __VA_ARGS__ }
#define ARGUMENT(type, memorySize, wireSize, ...)
#define FIELD(name, place) put(record.name);
#define FLAG(name, place) putFlag(record.name);
#include "network/rpc/records.def"
