#pragma once

#include "framework/BLEntity.h"
#include "framework/BLLManager.h"
#include "framework/Notification.h"
#include "framework/singleton.h"
#include "network/relaxed.h"
#include "network/rpc/wireRecords.h"
#include "platform/acl.h"
#include "rte/BLL/core/rpcProxy.h"
#include "varo/records.h"

#include <pthread.h>

#include <cstdarg>
#include <cstdint>
#include <list>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

/// The network entity: owns the configuration of the board's management network. Persistent values
/// live in varoLib and in the platform services; the entity adds validation, the order of steps and
/// the side effects on neighbouring settings.
///
/// Operations return 0 on success and -1 on failure unless said otherwise. Those that read or
/// change configuration take the framework's lock themselves; when it is refused, the operation
/// writes the lock-failure text to the framework log and returns -1 without looking at its
/// arguments.
///
/// The virtual operations are grouped by feature in the order of their slots, which is part of the
/// contract: append only.
class __attribute__((visibility("default"))) Network : public BLEntity, public singleton<Network> {
public:
    // Records of the virtual interface. Addresses are in host byte order.

    struct settings_t {
        settings_t() {}
    };

    struct NetworkInfo {
        std::uint32_t ipAddr;
        std::uint32_t netmask;
        unsigned char macAddr[6];
        unsigned char spareMacAddr[6];  ///< always zero
        std::uint32_t dhcpEnabled;
        std::uint32_t vendorClassEnabled;
        std::uint32_t mngVlanId;    ///< 0 while a move is incomplete
        std::uint32_t mngVlanMode;  ///< always 0
        std::uint32_t defVid;
        std::uint32_t defVlanMode;  ///< 1 tagged, 2 native
        std::uint32_t option82Enabled;
        std::uint32_t reserved;  ///< always 0
    };

    struct NetworkInfoIpv6 {
        char ipv6Addr[100];
        std::uint32_t prefixLen;
        char ipv6Gw[100];
    };

    struct RemoteAccessRule {
        std::uint32_t sequenceNumber;  ///< 1-based position in the list
        std::uint32_t ipAddr;
        std::uint32_t netmask;
        bool permit;
    };

    struct ArpInfo {
        std::uint32_t ipAddr;
        unsigned char macAddr[6];
        std::uint32_t slot;
        std::uint32_t port;
        std::int32_t type;
        std::uint32_t value;
    };

    enum SProtocol : int { sprotocolTls = 0, sprotocolSsl = 1, sprotocolBoth = 2 };

    struct HttpInfo {
        bool httpEnabled;
        bool httpsEnabled;
        std::uint32_t httpsPort;
        SProtocol httpsProtocol;
    };

    Network();

    // Entity interface towards the framework: slots 0 to 5, then the destructor pair.
    void applyConfiguration(boost::shared_ptr<Storage::Setting> setting) override;
    void saveConfiguration(boost::shared_ptr<Storage::Setting> setting) const override;
    int start() override;
    int applyDefaultSettings() override;
    /// Waits for the poll thread, which goes on: it stores into the poll flag the value on which
    /// the loop runs. A host that must end in bounded time ends without waiting for this call.
    int stop() override;
    void getDependencies(std::list<std::string>& names) override;
    ~Network() override;

    // IPv4 address and management VLAN.
    virtual int setIp(unsigned int ipAddr, unsigned int netmask);
    virtual int setVlan(unsigned int vlanId);
    virtual int setDefVlanMode(unsigned int defVid, unsigned int defMode);
    virtual int getNetworkInfo(NetworkInfo* info);
    virtual int getNetworkInfoIpv6(NetworkInfoIpv6* info);
    virtual int setGateway(unsigned int gateway);
    virtual int getGateway(unsigned int* gateway);
    virtual int setProtocol(bool dhcp);

    // DHCP client options.
    virtual int setVendor(bool dhcp, bool vendor);
    virtual int setOption82(bool dhcp, bool option82);
    virtual int setCircuitId(varoLib_s_dhcp* dhcp);

    // Remote access.
    virtual int addRARule(unsigned int ipAddr, unsigned int netmask, bool permit,
                          unsigned int index);
    virtual int removeRARule(unsigned int index);
    virtual int iterateRules(unsigned int index, RemoteAccessRule* rule);

    // Software inventory. Text buffers hold 100 bytes.
    virtual int getSWData(char* product, char* buildDirectory, char* buildTime,
                          char* upgradeProduct, char* packageRelease, char* osRelease,
                          char* fileSystem, char* bootLoader, char* recoveryFileSystem);
    virtual int getVerisonLineApl(char* line, int* index);
    virtual int getVerisonLinePlat(char* line, int* index);
    virtual int getPackageData(char* name, char* version);

    // FTP server.
    virtual int enableFtp(bool on);
    virtual int getFtpState();

    // ARP listing is not offered.
    virtual int getNextArp(int index, ArpInfo* info);

    // Settings of the web server one by one, not supported: the set has a single switch.
    virtual int setHttpSPort(unsigned int port);
    virtual int setHttpSProto(SProtocol protocol);
    virtual int enableHttpSServer(bool on);
    virtual int enableHttpServer(bool on);
    virtual int getHttpInfo(HttpInfo* info);

    // Domain and host name. Output buffers hold 100 bytes.
    virtual int setDomainname(const char* domainname);
    virtual int getDomainname(char* domainname);
    virtual int getDomainnameWS(int* dnsSource, char* domainname);
    virtual int setHostname(const char* hostname);
    virtual int getHostname(char* hostname);

    // Clock and time zone.
    virtual int setTimeInfo(const std::string& text);
    virtual int getTimeInfo(char* time);
    virtual int setTimezoneOffset(int offset);
    virtual int setTimezoneName(const char* name);
    virtual int getTimezoneInfo(int* offset, char* name);

    // IPv4 name servers.
    virtual int setDnsServers(unsigned int primary, unsigned int secondary);
    virtual int deleteDnsServers();
    virtual int getDnsServers(unsigned int* primary, unsigned int* secondary);
    virtual int getDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary);

    // Telnet and SSH servers.
    virtual int getTelnetConfig(bool* on);
    virtual int telnetEnable(bool on);
    virtual int getSshConfig(bool* on);
    virtual int sshEnable(bool on);

    // SNTP client.
    virtual int updateSntpConfig(rpcSntpConfig* config);
    virtual int updateSntpConfigHost(rpcSntpConfigHost* config);
    virtual int getSntpConfig(rpcSntpConfig* config);
    virtual int getSntpConfigWS(int* source, rpcSntpConfig* config);
    virtual int getSntpConfigWSHost(int* source, rpcSntpConfigHost* config);
    virtual int getSntpInfo(rpcSntpInfo* info);
    virtual int getSntpInfoWS(int* source, rpcSntpInfo* info);
    virtual int getSntpInfoWSHost(int* source, rpcSntpInfoHost* info);

    // SNMP agent.
    virtual int snmptrapAdd(const char* community, unsigned int ipAddress, bool add);
    virtual int getSnmptrapConfig(rpcSnmpTrapConfig* config);
    virtual int snmptrapChange(const char* community, unsigned int oldAddress,
                               unsigned int newAddress);
    virtual int snmptrapPort(unsigned int port);
    virtual int snmpCommunityAdd(const char* name, rpcSnmpCommunityAccess access, bool add);
    virtual int snmpCommunityChange(const char* name, rpcSnmpCommunityAccess access);
    virtual int snmpCommunityGet(rpcSnmpCommunityConfig* config);
    virtual int snmpSystemChange(const char* text, rpcSnmpSystemSelector selector);
    virtual int snmpSystemGet(rpcSnmpSystemConfig* config);

    // Limit on terminal sessions.
    virtual int ptyGetMaxSess(unsigned int* maxSessions, unsigned int* value);
    virtual int ptySetMaxSess(unsigned int maxSessions);

    // Time zone and daylight-saving rule of the SNTP client.
    virtual int setSntpTimezoneDstStart(unsigned int month, unsigned int week,
                                        unsigned int dayInWeek, int time);
    virtual int setSntpTimezoneDstEnd(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                      int time);
    virtual int setSntpTimezoneDstOffset(int dstOffset);
    virtual int setSntpTimezone(int offset, const char* linuxName);
    virtual int getSntpTimezoneInfo(rpcNetworkSntpTimezone* info);

    // Number of remote-access rules; -1 as an unsigned value when the lock is refused.
    virtual unsigned int getAclIdx();

    // IPv6 address and gateway. The list buffer holds 2000 bytes, the gateway buffer 100.
    virtual int getIpv6Addr(char* addresses, char* gateway);
    virtual int setIpv6Addr(char* address, unsigned int prefixLength);
    virtual int setIpv6Gw(char* gateway);
    virtual int removeIpv6Addr();
    virtual int removeIpv6Gw();

    // IPv6 domain and name servers. The domain buffer holds 100 bytes, a server buffer 99.
    virtual int setIPv6Domainname(const char* domainname);
    virtual int getIPv6Domainname(int* dnsSource, char* domainname);
    virtual int deleteIPv6DnsServers();
    virtual int getIPv6DnsServers(int* dnsSource, char* primary, char* secondary);
    /// A server text of more than 255 characters ends the process.
    virtual int setIPv6DnsServers(const char* primary, const char* secondary);

    // DHCPv6 client.
    virtual int getIPv6Proto(bool* state);
    virtual int setIPv6Proto(bool on);

    // Operations outside the virtual interface.

    /// The single switch of the web server set.
    int networkHttpServerSet(bool on);
    int networkHttpGet(bool& on) const;
    bool isHttpServerInstalled() const;
    /// Returns 1 when the event server's directory is there, and 0 otherwise.
    int createHassesServerDir() const;

    // The web event channel.
    int hassComm_init();
    const char* hassComm_GetVersion();
    /// Returns the result of pthread_create(3).
    int hassComm_createThread();
    static void* hassComm_Proc(void* self);
    /// Calls the subscribers of the web event once per cycle of 100 seconds until it is asked to
    /// end, which it notices after a cycle only.
    int hassComm_receiveMsgLoop();
    int hassComm_stop();
    void hassComm_stopThread();
    /// Opens the event server's counter. Always returns 0.
    int semaf_init();
    /// Whether the event server's counter is above 0; -1 while it is not open.
    int semaf_checkHassesSem();

    /// Management interface of the integrated ONT.
    int setOntMng(unsigned int ipAddr, unsigned int netmask, unsigned int vlanId);
    int getOntMng(unsigned int* ipAddr, unsigned int* netmask, unsigned int* vlanId);

    /// Handler of the framework's external messages: run-time knobs by name.
    void externalMessage(const std::string& name, const std::string& value,
                         std::ostringstream* reply);

    /// Handler of the shelf's change of identity, which the circuit id carries.
    void onShelfIdVlanChange(const std::string& shelfId);

    /// Writes option 82 anew if it is on, by the given record or else by the one in force. The
    /// caller holds the lock. The name's spelling is part of the interface.
    void dhcpCehckBeforeSetOption82(varoLib_s_dhcp* dhcp);

    /// Writes to the system log when the threshold is at least the level (syslog(3) priorities).
    void networkBleSyslog(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

private:
    /// An event of the management address; handlers take an address in host byte order.
    using AddressEvent = Notification::Event<unsigned int>;
    using WebEvent = Notification::Event<>;

    /// Start-up work at the end of construction.
    void networkBleInit();

    // IPv4. The callers hold the lock.
    /// Fills an interface record for the management port; false when the registry does not know it.
    bool getIntf(unsigned int ipAddr, unsigned int netmask, varoLib_s_interface* interface);
    /// Cuts a mask to its leading run of ones, complemented on demand. Always true.
    bool correctNetmask(unsigned int* mask, bool negate);
    /// Position of the board in the shelf, 0 when it is not known.
    void getIpmiBoardPos(unsigned int* position);

    // Software inventory.
    /// Stores the first line, at most 99 characters, that a tool program or a pipeline prints; an
    /// empty text when there is none. Mode 0 is a pipeline, 1 to 3 name the program's directory.
    void parseSoftwareInfo(const std::string& command, int mode, char* out);
    /// Fills the component lists, once in the life of the process.
    void initVersComp();

    // The remote-access list in the bridge. The callers hold the lock, or start or stop the entity.
    /// Creates the list and its catch-all; not bound to the port yet.
    bool initNetworkAcl();
    bool destroyNetworkAcl();
    /// Binds the list to the management port, and takes it off.
    bool assignNetworkAcl();
    bool deassignNetworkAcl();
    /// Forgets the rules, without touching the bridge.
    void networkRAClear();

    /// Watches the management interface until the poll flag says stop.
    int Poll();
    static void* PollThread(void* self);

    // What follows is not exported: steps that no more than one file of the library takes, and what
    // all operations share.

    [[gnu::visibility("hidden")]] void pollOnce();
    [[gnu::visibility("hidden")]] int switchDhcp(bool on, const char* operation);
    [[gnu::visibility("hidden")]] void detachAddress(unsigned int ipAddr, unsigned int netmask);
    [[gnu::visibility("hidden")]] bool attachAddress(unsigned int ipAddr, unsigned int netmask);
    [[gnu::visibility("hidden")]] void fillDhcp(NetworkInfo& info);
    [[gnu::visibility("hidden")]] void fillAddress(NetworkInfo& info);
    [[gnu::visibility("hidden")]] bool ensureVlan(unsigned int vlanId);
    [[gnu::visibility("hidden")]] bool moveManagementPort(unsigned int vlanId);
    [[gnu::visibility("hidden")]] bool createUserRule(bool permit, unsigned int index,
                                                      unsigned int& ruleId);
    [[gnu::visibility("hidden")]] void rememberRule(unsigned int ruleId, unsigned int index);
    [[gnu::visibility("hidden")]] int removeAllRules();
    [[gnu::visibility("hidden")]] int removeRuleAt(unsigned int index);
    [[gnu::visibility("hidden")]] bool removeFromBridge(unsigned int ruleId);
    /// Reads the time-zone record, changes it and writes it back.
    template <class Update, class Change>
    int changeTimeZone(const char* operation, const Update& update, Change change);
    /// The groups of factory settings (defaults.cpp).
    class [[gnu::visibility("hidden")]] FactorySettings;

    /// Writes to the system log what is done, and what calls return.
    [[gnu::visibility("hidden")]] void trace(const char* format, ...)
        __attribute__((format(printf, 2, 3)));
    /// Writes a failure to the system log, if there is one. Whether there is.
    [[gnu::visibility("hidden")]] bool reportIf(bool failure, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    /// The result of an operation by the status of its last call: -1 if that is not 0, which the
    /// second form reports.
    static int resultOf(int status) { return status != 0 ? -1 : 0; }
    [[gnu::visibility("hidden")]] int resultOf(int status, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    /// A pointer as "%p" takes it.
    static const void* address(const void* pointer) { return pointer; }
    [[gnu::visibility("hidden")]] void writeSyslog(int level, const char* format,
                                                   std::va_list arguments)
        __attribute__((format(printf, 3, 0)));

    /// The one way into the configuration lock: runs the body under it, or reports the refusal.
    template <class Body>
    int withExclusiveLock(Body body) const {
        return underLock<BLLManager::exclusiveLock_t>(body);
    }
    template <class Body>
    int withSharedLock(Body body) const {
        return underLock<BLLManager::sharedLock_t>(body);
    }
    template <class Lock, class Body>
    int underLock(Body& body) const {
        const Lock lock;
        if (!lock.isObtained()) {
            return reportRefusedLock();
        }
        return body();
    }
    [[gnu::visibility("hidden")]] int reportRefusedLock() const;

public:
    /// The address of "mng0" has changed, or is about to: handlers before the change get an address
    /// and their answer does not stop it, those after it the new one; in host byte order. From the
    /// poll loop the former get the old address, from setIp the new one. Handlers run on the thread
    /// that notices, under setIp with the configuration locked exclusively.
    AddressEvent mngAddrChanged;

private:
    RPCProxy rpcProxy;
    Relaxed<std::int16_t> severity;  ///< threshold of the system log
    ACLContainer_t acl;              ///< held for the entity's lifetime; not used
    std::uint32_t mngVlanId;
    std::uint32_t boardPos;
    char aclName[41];              ///< "RA_" and the Linux name of the management port
    std::uint32_t ruleIds[200];    ///< in list order; unused slots 0
    std::uint32_t defaultRuleId;   ///< the catch-all behind all rules
    std::uint32_t ruleIdx;         ///< number of rules
    std::uint32_t aclInitialized;  ///< the list and its catch-all exist
    std::uint32_t aclAssigned;     ///< the list is bound to the port
    bool webServerOn;
    std::string lockErrorMsg;
    pthread_t pollThread;
    Relaxed<bool> pollStop;                ///< the poll loop runs while it is false
    Relaxed<std::uint32_t> currentIpAddr;  ///< address of "mng0" seen last, host byte order

public:
    /// Post-handlers are called once a cycle of 100 seconds while the web server set is on, on the
    /// event thread and without a lock; that thread outlives the set by up to a cycle. A change of
    /// the handlers holds from the next cycle on.
    WebEvent webEvent;

private:
    std::mutex componentsGuard;  ///< protects the two lists
    std::vector<std::string> applicationLines;
    std::vector<std::string> platformLines;
};
