#include "tests/board/varo/network/NetworkTest.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace varotest {

namespace {

constexpr std::chrono::seconds patience{30};

varoLib_s_interface interfaceRecord(const std::string& address, const std::string& mask,
                                    const std::string& name) {
    varoLib_s_interface record{};
    record.ipAddr = ipv4(address);
    record.netmask = ipv4(mask);
    setText(record.name, name);
    return record;
}

varoLib_s_route routeRecord(const std::string& gateway) {
    varoLib_s_route record{};
    record.gateway = ipv4(gateway);
    return record;
}

std::string text(std::uint32_t address) {
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 255, address >> 8 & 255,
                       address & 255);
}

}  // namespace

varo::Log AwaitedLog::receiver() {
    return [this](int level, const std::string& line) {
        const std::lock_guard lock(mutex);
        lines.push_back(fmt::format("{} {}", level, line));
        more.notify_all();
    };
}

bool AwaitedLog::await(const std::string& wanted) {
    std::unique_lock lock(mutex);
    return more.wait_for(lock, patience, [&] { return countLocked(wanted) > 0; });
}

int AwaitedLog::count(const std::string& wanted) const {
    const std::lock_guard lock(mutex);
    return countLocked(wanted);
}

int AwaitedLog::countLocked(const std::string& wanted) const {
    return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const auto& line) {
        return line.find(wanted) != std::string::npos;
    }));
}

std::string AwaitedLog::all() const {
    const std::lock_guard lock(mutex);
    return fmt::format("{}", fmt::join(lines, "\n"));
}

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

std::uint32_t ipv4(const std::string& address) {
    in_addr parsed{};
    if (inet_pton(AF_INET, address.c_str(), &parsed) != 1) {
        throw std::invalid_argument(address);
    }
    return ntohl(parsed.s_addr);
}

ClosedNetworkTest::ClosedNetworkTest() {
    layCable();
    configuration.stateDirectory = state;
    configuration.log = lines.receiver();
    configuration.managementInterface = "mng0";
    configuration.dhcpScript = std::filesystem::read_symlink("/proc/self/exe");
    configuration.dhcpVendorClass = "test class";
    logEverything();
    configure();
}

ClosedNetworkTest::~ClosedNetworkTest() {
    varoLibDestroy();
    // The receiver goes with the test.
    varo::configure({});
    if (HasFailure()) {
        std::fputs((lines.all() + "\n").c_str(), stderr);
    }
    cutCable();
}

void ClosedNetworkTest::layCable() {
    shell(
        "ip link add mng0 type veth peer name lan0 netns lan && "
        "ip -n lan address add 192.0.2.1/24 dev lan0 && "
        "ip link set mng0 up && ip -n lan link set lan0 up");
}

void ClosedNetworkTest::cutCable() { shell("! ip link show mng0 || ip link delete mng0"); }

void ClosedNetworkTest::logEverything() const {
    varo::Configuration storeOnly;
    storeOnly.stateDirectory = state;
    varo::configure(storeOnly);
    varoLib_s_internalConfig config{};
    if (varoLibInit() != 0 || varoUpdateInternalConfig(&config, 7) != 0) {
        throw std::runtime_error("the log level cannot be stored");
    }
    varoLibDestroy();
}

void ClosedNetworkTest::open() { ASSERT_EQ(varoLibInit(), varo::success); }

int ClosedNetworkTest::attach(const std::string& address, const std::string& mask,
                              const std::string& name) {
    auto record = interfaceRecord(address, mask, name);
    return varoAttachIpToIntf(&record);
}

int ClosedNetworkTest::detach(const std::string& address, const std::string& mask,
                              const std::string& name) {
    auto record = interfaceRecord(address, mask, name);
    return varoDettachIpFromIntf(&record);
}

int ClosedNetworkTest::addRoute(const std::string& gateway) {
    auto record = routeRecord(gateway);
    return varoAddRoute(&record);
}

int ClosedNetworkTest::deleteRoute(const std::string& gateway) {
    auto record = routeRecord(gateway);
    return varoDeleteRoute(&record);
}

int ClosedNetworkTest::switchDhcp(bool on) {
    varoLib_s_dhcp record{};
    EXPECT_EQ(varoGetDhcp(&record), varo::success);
    record.updateSelector = 2;
    record.dhcpEnabled = on ? 1 : 0;
    return varoUpdateDhcp(&record);
}

bool ClosedNetworkTest::isDhcpOn() {
    varoLib_s_dhcp record{};
    EXPECT_EQ(varoGetDhcp(&record), varo::success);
    return record.dhcpEnabled != 0;
}

std::string ClosedNetworkTest::addresses(const std::string& name) {
    std::istringstream output(shell("ip -o -4 address show dev " + name));
    std::string result;
    for (std::string line; std::getline(output, line);) {
        std::istringstream fields(line);
        std::string number, interface, family, address;
        fields >> number >> interface >> family >> address;
        result += (result.empty() ? "" : " ") + address;
        if (line.find(" dynamic ") != std::string::npos) {
            result += " dynamic";
        }
    }
    return result;
}

std::string ClosedNetworkTest::gateways() {
    std::istringstream output(shell("ip -4 route show default dev mng0"));
    std::string result;
    for (std::string line; std::getline(output, line);) {
        std::istringstream fields(line);
        std::string word, via, gateway;
        fields >> word >> via >> gateway;
        result += (result.empty() ? "" : " ") + gateway;
    }
    return result;
}

std::string ClosedNetworkTest::route() {
    varoLib_s_route record{};
    const int result = varoGetRouteByDst(&record);
    return result == 0 ? text(record.gateway) : fmt::format("result {}", result);
}

std::string ClosedNetworkTest::stored() const {
    return sql(file, "SELECT address, netmask, gateway FROM ipv4");
}

void NetworkTest::SetUp() {
    open();
    ASSERT_EQ(switchDhcp(false), varo::success);
}

void NetworkTest::restart() {
    close();
    open();
}

}  // namespace varotest
