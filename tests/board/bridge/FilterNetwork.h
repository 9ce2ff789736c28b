#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// Two network namespaces, made of the one that the process is in: the board, with the interface
/// mng0 and the address 192.0.2.1, and a host on its other end with many addresses. To be made once
/// in a process, before it has threads. Throws std::system_error.
void makeNetwork();

/// Runs something in the namespace of the host; sockets that it makes stay there.
void onHost(const std::function<void()>& work);

/// A datagram socket; its address is in the namespace where it was made.
class UdpSocket {
public:
    /// Port 0: any.
    explicit UdpSocket(const std::string& address, unsigned short port = 0);
    ~UdpSocket();
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    void send(const std::string& address, unsigned short port, const std::string& text) const;
    /// Waits, 10 s at most, which fails the test.
    std::string receive() const;
    unsigned short port() const;

private:
    int descriptor;
};

/// Which of several packets the board takes. What the filter drops makes no noise: behind the
/// packets a last one comes over the loopback interface, which is never filtered, and packets are
/// handled in order.
class Probe {
public:
    Probe();

    /// The sources, among those of the host, whose packet was taken.
    std::vector<std::string> taken(const std::vector<std::string>& sources);
    bool takes(const std::string& source) { return !taken({source}).empty(); }

    /// How many of so many packets of a source are taken.
    int countTaken(const std::string& source, int packets);

private:
    UdpSocket board;
    UdpSocket loopback;
};

}  // namespace test
