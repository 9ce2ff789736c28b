// The relay agents, as far as the product imports them.

#include "framework/relayAgents.h"

#include "fake/Platform.h"
#include "fake/quoted.h"

#include <fmt/core.h>

namespace {

void note(const char* operation, const std::string& text) {
    fake::Platform::current().journal.write(fmt::format("{}({})", operation, fake::quoted(text)));
}

}  // namespace

dhcpra::dhcpra() = default;
dhcpra::~dhcpra() = default;
void dhcpra::setSystemContact(const std::string& text) { note("dhcpra::setSystemContact", text); }
void dhcpra::setSystemLocation(const std::string& text) { note("dhcpra::setSystemLocation", text); }
void dhcpra::setSystemName(const std::string& text) { note("dhcpra::setSystemName", text); }

pppoeia::pppoeia() = default;
pppoeia::~pppoeia() = default;
void pppoeia::setSystemContact(const std::string& text) { note("pppoeia::setSystemContact", text); }
void pppoeia::setSystemLocation(const std::string& text) {
    note("pppoeia::setSystemLocation", text);
}
void pppoeia::setSystemName(const std::string& text) { note("pppoeia::setSystemName", text); }

template class singleton<dhcpra>;
template class singleton<pppoeia>;
