#include "tests/board/varo/network/DhcpTest.h"

#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace varotest {

namespace {

namespace fs = std::filesystem;

/// A process's file in proc(5); empty when it has gone. It may go while the file is read, which an
/// iterator over the stream would tell by an exception.
std::string readOf(const std::string& process, const char* file) {
    const std::ifstream stream("/proc/" + process + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

/// Parent of a process; 0 when it has gone or has ended.
pid_t parentOf(const std::string& process) {
    const std::string text = readOf(process, "stat");
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) {
        return 0;
    }
    std::istringstream fields(text.substr(nameEnd + 1));
    char state = 0;
    pid_t parent = 0;
    fields >> state >> parent;
    return state == 'Z' ? 0 : parent;
}

}  // namespace

DhcpTest::DhcpTest() {
    configuration.dhcpClient = {"busybox", "udhcpc"};
    configure();
}

void DhcpTest::startDnsmasq(const std::vector<std::string>& more, const std::string& ready) {
    std::vector<std::string> command{"ip",
                                     "netns",
                                     "exec",
                                     "lan",
                                     "dnsmasq",
                                     "-k",
                                     "-C",
                                     "/dev/null",
                                     "-p",
                                     "0",
                                     "-i",
                                     "lan0",
                                     "--bind-interfaces",
                                     "--leasefile-ro",
                                     "--log-dhcp",
                                     "--log-facility=-",
                                     "--user=root"};
    command.insert(command.end(), more.begin(), more.end());
    server = std::make_unique<Process>(command);
    ASSERT_TRUE(server->awaitOutput(ready)) << server->output();
}

void DhcpTest::startServer(const std::vector<std::string>& more) {
    std::vector<std::string> options{"--no-ping",
                                     "--dhcp-authoritative",
                                     "--domain=example.org",
                                     "--dhcp-range=192.0.2.50,192.0.2.50,255.255.255.0,10m",
                                     "--dhcp-option=option:router,192.0.2.1",
                                     "--dhcp-option=option:dns-server,192.0.2.53,192.0.2.54"};
    options.insert(options.end(), more.begin(), more.end());
    startDnsmasq(options, "sockets bound exclusively");
}

void DhcpTest::useClient(const std::string& script) {
    const fs::path client = directory.path() / "client";
    // Its arguments are those of udhcpc: -f -i IF -s SCRIPT.
    writeFile(client, "REPORT=$5\n" + script);
    configuration.dhcpClient = {"sh", client.string()};
    configure();
}

std::vector<pid_t> DhcpTest::clients() {
    std::vector<pid_t> found;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos &&
            parentOf(name) == ::getpid() &&
            readOf(name, "cmdline").find("mng0") != std::string::npos) {
            found.push_back(std::stoi(name));
        }
    }
    return found;
}

std::string DhcpTest::resolver() {
    int source = 0;
    varoLib_s_dns dns{};
    EXPECT_EQ(varoGetDnsWS(&source, &dns), varo::success);
    return fmt::format("{} {:08x} {:08x} {}", source, dns.ip_pri, dns.ip_sec, dns.domain);
}

}  // namespace varotest
