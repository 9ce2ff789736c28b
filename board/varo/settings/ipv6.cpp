#include "board/varo/link/management.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>
#include <string>

namespace varo {

namespace {

/// Between two addresses of a list.
constexpr char separator = ' ';

/// Edits what is set by hand with nobody else's changes in between. Nothing is stored when `edit`
/// throws.
template <class Edit>
void changeByHand(Edit edit) {
    const auto change = Library::instance().change();
    Ipv6Settings settings = change.store().session().read(ipv6Setting().group());
    edit(change.configuration().managementInterface, settings);
    change.store().session().write(ipv6Setting().group(), singleRow, settings);
}

/// Acts on the interface; where none is configured, settings are kept only. Throws Failure
/// (noSuchInterface).
template <class Act>
void onLink(const std::string& name, Act act) {
    if (!name.empty()) {
        Netlink netlink;
        act(netlink, requiredLink(netlink, name).index);
    }
}

void checkIsAnother(Netlink& netlink, int index, const Ipv6Address& gateway) {
    for (const auto& address : netlink.ipv6Addresses(index)) {
        if (address.prefix.address == gateway) {
            throw Failure(invalidValue, fmt::format("the gateway {} is the board's own address",
                                                    ipv6Text(gateway)));
        }
    }
}

/// The addresses as one text; those that do not fit are counted.
std::string listText(const std::vector<Netlink::AddressInUse>& addresses, std::size_t longest,
                     std::size_t& leftOut) {
    std::string text;
    for (const auto& address : addresses) {
        const std::string next = prefixText(address.prefix);
        if (text.size() + 1 + next.size() > longest) {
            ++leftOut;
            continue;
        }
        if (!text.empty()) {
            text += separator;
        }
        text += next;
    }
    return text;
}

/// What the kernel has; an interface that is not there has nothing.
void readInForce(varoLib_s_ipv6& record, const Configuration& configuration,
                 const Ipv6Settings& settings) {
    Netlink netlink;
    const auto link = netlink.link(configuration.managementInterface);
    if (!link) {
        return;
    }
    const auto addresses = netlink.ipv6Addresses(link->index);
    const auto byHand = storedPrefix(settings);
    auto configured = std::find_if(addresses.begin(), addresses.end(), [&](const auto& each) {
        return byHand && each.prefix == *byHand;
    });
    if (configured == addresses.end()) {
        configured = std::find_if(addresses.begin(), addresses.end(),
                                  [](const auto& each) { return each.isLeased; });
    }
    if (configured != addresses.end()) {
        copyInto(record.ipv6Addr, ipv6Text(configured->prefix.address));
        record.prefixLen = configured->prefix.length;
    }
    std::size_t leftOut = 0;
    copyInto(record.ipv6AddrList, listText(addresses, sizeof record.ipv6AddrList - 1, leftOut));
    if (leftOut != 0) {
        Library::instance().log(
            LOG_WARNING, fmt::format("{} of {} IPv6 addresses have no room in the list", leftOut,
                                     addresses.size()));
    }
    if (const auto gateway = netlink.ipv6Gateway(link->index)) {
        copyInto(record.ipv6Gw, ipv6Text(*gateway));
    }
}

/// What is stored, where there is no interface to read from.
void readStored(varoLib_s_ipv6& record, const Ipv6Settings& settings) {
    if (const auto prefix = storedPrefix(settings)) {
        copyInto(record.ipv6Addr, ipv6Text(prefix->address));
        record.prefixLen = prefix->length;
        copyInto(record.ipv6AddrList, prefixText(*prefix));
    }
    if (const auto gateway = storedGateway(settings)) {
        copyInto(record.ipv6Gw, ipv6Text(*gateway));
    }
}

}  // namespace

/// What is set by hand, none from the factory; the DHCPv6 client's addresses stand beside it.
const Setting<Ipv6Settings>& ipv6Setting() {
    using Record = Ipv6Settings;
    static const auto& setting = *new Setting<Record>({
        .group = {"ipv6",
                  Rows::single,
                  {},
                  {
                      column("address", &Record::address),
                      column("prefix_length", &Record::prefixLength),
                      column("gateway", &Record::gateway),
                  }},
        .withNext = true,
    });
    return setting;
}

}  // namespace varo

/// The address takes the place of the one that was set by hand before; the interface's others stay.
int varoSetIpv6Addr(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        const varoLib_s_ipv6& record = varo::required(ipv6);
        const varo::Ipv6Prefix prefix =
            varo::checkedPrefix(varo::textIn("address", record.ipv6Addr), record.prefixLen);
        varo::changeByHand([&](const std::string& name, varo::Ipv6Settings& settings) {
            varo::onLink(name, [&](varo::Netlink& netlink, int index) {
                // The new one first, for the kernel may refuse it.
                varo::putAddressByHand(netlink, name, index, prefix);
                const auto before = varo::storedPrefix(settings);
                if (before && before->address != prefix.address) {
                    varo::removeAddress(netlink, name, index, *before);
                }
            });
            varo::copyInto(settings.address, varo::ipv6Text(prefix.address));
            settings.prefixLength = prefix.length;
        });
    });
}

int varoRemoveIpv6Addr() {
    return varo::answer(__func__, [&] {
        varo::changeByHand([&](const std::string& name, varo::Ipv6Settings& settings) {
            const auto prefix = varo::storedPrefix(settings);
            if (!prefix) {
                throw varo::Failure(varo::notThere, "no IPv6 address is set by hand");
            }
            varo::onLink(name, [&](varo::Netlink& netlink, int index) {
                varo::removeAddress(netlink, name, index, *prefix);
            });
            varo::copyInto(settings.address, "");
            settings.prefixLength = 0;
        });
    });
}

/// The gateway takes the place of the one that was set by hand before, and goes before those that
/// routers advertise.
int varoSetIpv6Gw(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        const varoLib_s_ipv6& record = varo::required(ipv6);
        const varo::Ipv6Address gateway =
            varo::checkedIpv6Gateway(varo::textIn("gateway", record.ipv6Gw));
        varo::changeByHand([&](const std::string& name, varo::Ipv6Settings& settings) {
            varo::onLink(name, [&](varo::Netlink& netlink, int index) {
                varo::checkIsAnother(netlink, index, gateway);
                varo::putRoute(netlink, name, index, gateway, false);
            });
            varo::copyInto(settings.gateway, varo::ipv6Text(gateway));
        });
    });
}

int varoRemoveIpv6Gw() {
    return varo::answer(__func__, [&] {
        varo::changeByHand([&](const std::string& name, varo::Ipv6Settings& settings) {
            const auto gateway = varo::storedGateway(settings);
            if (!gateway) {
                throw varo::Failure(varo::notThere, "no IPv6 gateway is set by hand");
            }
            varo::onLink(name, [&](varo::Netlink& netlink, int index) {
                varo::removeRoute(netlink, name, index, *gateway);
            });
            varo::copyInto(settings.gateway, "");
        });
    });
}

/// The address is the one set by hand, or else the one that a DHCPv6 server has granted, as long as
/// the interface has it.
int varoGetIpv6(varoLib_s_ipv6* ipv6) {
    return varo::answer(__func__, [&] {
        varoLib_s_ipv6& record = varo::required(ipv6);
        const auto opened = varo::Library::instance().opened();
        const varo::Ipv6Settings settings = varo::ipv6Setting().stored(opened->store);
        varoLib_s_ipv6 read{};
        if (opened->configuration.managementInterface.empty()) {
            varo::readStored(read, settings);
        } else {
            varo::readInForce(read, opened->configuration, settings);
        }
        record = read;
    });
}
