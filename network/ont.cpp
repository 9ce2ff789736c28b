// Management interface of the integrated ONT: address, mask, MAC and state by requests to the
// kernel (netdevice(7)), the VLAN in the bridge. Nothing is taken back when a step fails.

#include "network/Network.h"
#include "platform/zubridge.h"

#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr char ontInterface[] = "ont0";

/// The VLAN of an interface that is switched off.
constexpr unsigned int idleVlan = 1;

constexpr std::size_t macSize = 6;

/// Requests for the ONT's interface, which return 0 or the error (errno(3)). That no socket could
/// be opened shows in the first of them.
class OntInterface {
public:
    OntInterface() : descriptor(socket(AF_INET, SOCK_DGRAM, 0)) {
        std::memcpy(request.ifr_name, ontInterface, sizeof ontInterface);
    }
    ~OntInterface() {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    OntInterface(const OntInterface&) = delete;
    OntInterface& operator=(const OntInterface&) = delete;

    int setAddress(unsigned int address) { return putAddress(SIOCSIFADDR, address); }
    int setNetmask(unsigned int netmask) { return putAddress(SIOCSIFNETMASK, netmask); }
    int getAddress(unsigned int& address) { return fetchAddress(SIOCGIFADDR, address); }
    int getNetmask(unsigned int& netmask) { return fetchAddress(SIOCGIFNETMASK, netmask); }

    int readFlags() {
        const int error = perform(SIOCGIFFLAGS);
        flags = request.ifr_flags;
        return error;
    }
    int writeFlags(bool isUp) {
        const int changed = isUp ? flags | IFF_UP : flags & ~IFF_UP;
        request.ifr_flags = flags = static_cast<short>(changed);
        return perform(SIOCSIFFLAGS);
    }

    int setMac(const unsigned char (&mac)[macSize]) {
        request.ifr_hwaddr = {};
        request.ifr_hwaddr.sa_family = ARPHRD_ETHER;
        std::memcpy(request.ifr_hwaddr.sa_data, mac, sizeof mac);
        return perform(SIOCSIFHWADDR);
    }

private:
    int descriptor;
    ifreq request{};
    short flags = 0;

    int perform(unsigned long what) { return ioctl(descriptor, what, &request) == 0 ? 0 : errno; }

    /// Host byte order, as everywhere here but in the requests themselves.
    int putAddress(unsigned long what, unsigned int address) {
        sockaddr_in value{};
        value.sin_family = AF_INET;
        value.sin_addr.s_addr = htonl(address);
        std::memcpy(&request.ifr_addr, &value, sizeof request.ifr_addr);
        return perform(what);
    }
    int fetchAddress(unsigned long what, unsigned int& address) {
        request.ifr_addr = {};
        const int error = perform(what);
        if (error != 0) {
            return error;
        }
        sockaddr_in value{};
        std::memcpy(&value, &request.ifr_addr, sizeof request.ifr_addr);
        address = ntohl(value.sin_addr.s_addr);
        return 0;
    }
};

zubridge& bridge() { return singleton<zubridge>::instance(); }

void logRefusedMac(Network& network, const unsigned char (&mac)[macSize]) {
    network.networkBleSyslog(
        LOG_ERR, "[networkBLE]: setOntMng: Error seting mac %2.2x:%2.2x:%2.2x:%2.2x:%2.2x:%2.2x\n",
        mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

}  // namespace

int Network::setOntMng(unsigned int ipAddr, unsigned int netmask, unsigned int vlanId) {
    NetworkInfo info{};
    if (reportIf(Network::getNetworkInfo(&info) != 0,
                 "[networkBLE]: setOntMng: Could not read network info.\n")) {
        return -1;
    }
    const bool isOn = ipAddr != 0;
    if (isOn && vlanId == info.mngVlanId) {
        networkBleSyslog(
            LOG_WARNING,
            "[networkBLE]: setOntMng: ont0 vlan is the same as managment port one (%d).\n", vlanId);
        // No socket has been opened yet: what is closed is the number that stands for it, 0.
        close(STDIN_FILENO);
        return -1;
    }
    OntInterface interface;
    int error = interface.setAddress(ipAddr);
    if (reportIf(error != 0,
                 "[networkBLE]: setOntMng: Could not set the ip to 0x%x. Errorcode : %d %s\n",
                 ipAddr, error, std::strerror(error))) {
        return -1;
    }
    error = isOn ? interface.setNetmask(netmask) : 0;
    if (reportIf(
            error != 0,
            "[networkBLE]: setOntMng: Could not set the subnet mask to 0x%x. Errorcode : %d %s\n",
            netmask, error, std::strerror(error))) {
        return -1;
    }
    error = interface.readFlags();
    if (reportIf(error != 0,
                 "[networkBLE]: setOntMng: Could not read the flags. Errorcode : %d %s\n", error,
                 std::strerror(error))) {
        return -1;
    }
    constexpr const char* flagsFailed =
        "[networkBLE]: setOntMng: Could not set the flags. Errorcode : %d %s\n";
    // The MAC changes only while the interface is down.
    error = interface.writeFlags(false);
    if (reportIf(error != 0, flagsFailed, error, std::strerror(error))) {
        return -1;
    }
    unsigned char mac[macSize] = {};
    if (reportIf(bridge().mngSystemMacGet(zuHandle_t{}, mac) != 0,
                 "[networkBLE]: setOntMng: Could not read the mac. \n")) {
        return -1;
    }
    error = interface.setMac(mac);
    if (reportIf(error != 0, "[networkBLE]: setOntMng: Could not set the mac. Errorcode : %d %s\n",
                 error, std::strerror(error))) {
        logRefusedMac(*this, mac);
        return -1;
    }
    error = isOn ? interface.writeFlags(true) : 0;
    if (reportIf(error != 0, flagsFailed, error, std::strerror(error))) {
        return -1;
    }
    const unsigned int storedVlan = isOn ? vlanId : idleVlan;
    return resultOf(bridge().gponOntMngVlanSet(storedVlan),
                    "[networkBLE]: setOntMng: Could not set the vlan %d.\n", storedVlan);
}

int Network::getOntMng(unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId) {
    OntInterface interface;
    int error = interface.getAddress(*ipAddr);
    if (reportIf(error != 0, "[networkBLE]: getOntMng: Could not get the ip. Errorcode : %d %s\n",
                 error, std::strerror(error))) {
        return -1;
    }
    error = interface.getNetmask(*netmask);
    if (reportIf(error != 0,
                 "[networkBLE]: getOntMng: Could not get the subnet mask. Errorcode : %d %s\n",
                 error, std::strerror(error))) {
        return -1;
    }
    // The message names the setter, whose wording it shares.
    return resultOf(bridge().gponOntMngVlanGet(vlanId),
                    "[networkBLE]: setOntMng: Could not read the vlan.\n");
}
