#include "FilterNetwork.h"

#include "board/support/Descriptor.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace test {

namespace {

constexpr const char* boardAddress = "192.0.2.1";
constexpr unsigned short boardPort = 7000;
constexpr const char* lastPacket = "last";
constexpr int patience = 10'000;

int boardNamespace = -1;
int hostNamespace = -1;

void check(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

int newNamespace() {
    check(unshare(CLONE_NEWNET) == 0, "a network namespace");
    const int opened = open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
    check(opened != -1, "/proc/self/ns/net");
    return opened;
}

void enter(int networkNamespace) { check(setns(networkNamespace, CLONE_NEWNET) == 0, "setns"); }

sockaddr_in socketAddress(const std::string& address, unsigned short port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    check(inet_pton(AF_INET, address.c_str(), &result.sin_addr) == 1, address.c_str());
    return result;
}

template <class Address>
auto* generic(Address& address) {
    return reinterpret_cast<sockaddr*>(&address);
}

}  // namespace

void makeNetwork() {
    // Packets of one processor are handled in order.
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(sched_getcpu(), &first);
    check(sched_setaffinity(0, sizeof first, &first) == 0, "one processor");

    boardNamespace = newNamespace();
    hostNamespace = newNamespace();
    enter(boardNamespace);
    shell(
        "ip link set lo up && ip link add mng0 type veth peer name host0 && "
        "ip link set host0 netns /proc/" +
        std::to_string(getpid()) + "/fd/" + std::to_string(hostNamespace) +
        " && ip address add 192.0.2.1/24 dev mng0 && ip link set mng0 up && "
        "ip route add default via 192.0.2.2");
    onHost([] {
        shell(
            "ip link set lo up && ip link set host0 up && ip address add 192.0.2.2/24 dev host0 && "
            "ip address add 192.0.2.3/24 dev host0 && ip address add 198.51.100.7/32 dev host0 && "
            "ip address add 203.0.113.9/32 dev host0");
    });
}

void onHost(const std::function<void()>& work) {
    enter(hostNamespace);
    try {
        work();
    } catch (...) {
        enter(boardNamespace);
        throw;
    }
    enter(boardNamespace);
}

UdpSocket::UdpSocket(const std::string& address, unsigned short port)
    : descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    check(descriptor != -1, "socket");
    const int space = 4 << 20;
    setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &space, sizeof space);
    sockaddr_in own = socketAddress(address, port);
    check(bind(descriptor, generic(own), sizeof own) == 0, "bind");
}

UdpSocket::~UdpSocket() { close(descriptor); }

void UdpSocket::send(const std::string& address, unsigned short port,
                     const std::string& text) const {
    sockaddr_in other = socketAddress(address, port);
    check(sendto(descriptor, text.data(), text.size(), 0, generic(other), sizeof other) ==
              static_cast<ssize_t>(text.size()),
          "sendto");
}

std::string UdpSocket::receive() const {
    pollfd readable{descriptor, POLLIN, 0};
    if (poll(&readable, 1, patience) != 1) {
        ADD_FAILURE() << "nothing was received";
        return "";
    }
    std::array<char, 100> text{};
    const ssize_t size = recv(descriptor, text.data(), text.size(), 0);
    check(size >= 0, "recv");
    return {text.data(), static_cast<std::size_t>(size)};
}

unsigned short UdpSocket::port() const {
    sockaddr_in own{};
    socklen_t size = sizeof own;
    check(getsockname(descriptor, generic(own), &size) == 0, "getsockname");
    return ntohs(own.sin_port);
}

Probe::Probe() : board("0.0.0.0", boardPort), loopback("127.0.0.1") {}

std::vector<std::string> Probe::taken(const std::vector<std::string>& sources) {
    onHost([&] {
        for (const std::string& source : sources) {
            UdpSocket(source).send(boardAddress, boardPort, source);
        }
    });
    loopback.send("127.0.0.1", boardPort, lastPacket);
    std::vector<std::string> result;
    for (std::string text = board.receive(); text != lastPacket; text = board.receive()) {
        if (text.empty()) {
            break;
        }
        result.push_back(text);
    }
    return result;
}

int Probe::countTaken(const std::string& source, int packets) {
    int count = 0;
    std::optional<UdpSocket> sender;
    onHost([&] { sender.emplace(source); });
    for (int sent = 0; sent < packets; ++sent) {
        sender->send(boardAddress, boardPort, source);
        loopback.send("127.0.0.1", boardPort, lastPacket);
        std::string text = board.receive();
        if (text == source) {
            ++count;
            text = board.receive();
        }
        if (text != lastPacket) {
            ADD_FAILURE() << "received: " << text;
            return -1;
        }
    }
    return count;
}

}  // namespace test
