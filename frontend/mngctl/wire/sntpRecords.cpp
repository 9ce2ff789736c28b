#include "mngctl/wire/records.h"

namespace mngctl {

void fields(FieldVisitor& visit, rpcSntpSrv& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.number("ntpVersion", record.ntpVersion);
    visit.number("priority", record.priority);
}

void fields(FieldVisitor& visit, rpcSntpSrvHost& record) {
    visit.fixedText("host", record.host);
    visit.number("ntpVersion", record.ntpVersion);
    visit.number("priority", record.priority);
    visit.number("addressType", record.addressType);
}

void fields(FieldVisitor& visit, rpcSntpConfig& record) {
    visit.number("mode", record.mode);
    visit.list("servers", record.servers);
}

void fields(FieldVisitor& visit, rpcSntpConfigHost& record) {
    visit.number("mode", record.mode);
    visit.list("servers", record.servers);
}

void fields(FieldVisitor& visit, rpcSntpClientInfo& record) {
    visit.number("state", record.state);
    visit.number("mode", record.mode);
    visit.number("leapIndicator", record.leapIndicator);
    visit.number("stratum", record.stratum);
    visit.number("pollInterval", record.pollInterval);
    visit.number("offset", record.offset);
    visit.address("referenceAddress", record.referenceAddress);
    visit.number("delay", record.delay);
    visit.number("dispersion", record.dispersion);
    visit.fixedText("lastUpdate", record.lastUpdate);
}

void fields(FieldVisitor& visit, rpcSntpClientInfoHost& record) {
    visit.number("state", record.state);
    visit.number("mode", record.mode);
    visit.number("leapIndicator", record.leapIndicator);
    visit.number("stratum", record.stratum);
    visit.number("pollInterval", record.pollInterval);
    visit.number("offset", record.offset);
    visit.fixedText("referenceHost", record.referenceHost);
    visit.number("delay", record.delay);
    visit.number("dispersion", record.dispersion);
    visit.fixedText("lastUpdate", record.lastUpdate);
}

void fields(FieldVisitor& visit, rpcSntpClientUnicastInfo& record) {
    visit.number("pollInterval", record.pollInterval);
    visit.number("timeout", record.timeout);
    visit.number("retries", record.retries);
}

void fields(FieldVisitor& visit, rpcSntpSrvInfo& record) {
    visit.number("state", record.state);
    visit.address("ipAddress", record.ipAddress);
    visit.number("stratum", record.stratum);
    visit.number("reachability", record.reachability);
    visit.number("offset", record.offset);
    visit.number("delay", record.delay);
}

void fields(FieldVisitor& visit, rpcSntpSrvInfoHost& record) {
    visit.number("state", record.state);
    visit.fixedText("host", record.host);
    visit.number("stratum", record.stratum);
    visit.number("reachability", record.reachability);
    visit.number("offset", record.offset);
    visit.number("delay", record.delay);
}

void fields(FieldVisitor& visit, rpcSntpInfo& record) {
    visit.record("client", record.client);
    visit.record("unicast", record.unicast);
    visit.list("servers", record.servers);
}

void fields(FieldVisitor& visit, rpcSntpInfoHost& record) {
    visit.record("client", record.client);
    visit.record("unicast", record.unicast);
    visit.list("servers", record.servers);
}

void fields(FieldVisitor& visit, rpcSntpConfigWS& record) {
    visit.number("result", record.result);
    visit.record("config", record.config);
}

void fields(FieldVisitor& visit, rpcSntpConfigWSHost& record) {
    visit.number("result", record.result);
    visit.record("config", record.config);
}

void fields(FieldVisitor& visit, rpcSntpInfoWS& record) {
    visit.number("result", record.result);
    visit.record("info", record.info);
}

void fields(FieldVisitor& visit, rpcSntpInfoWSHost& record) {
    visit.number("result", record.result);
    visit.record("info", record.info);
}

}  // namespace mngctl
