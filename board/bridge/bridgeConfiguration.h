#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace bridge {

/// What the host process tells the bridge about its surroundings.
struct Configuration {
    /// Existing directory that keeps the rules of the remote-access list, file name
    /// `remote-access.json`, across restarts. Empty: they are not kept.
    std::filesystem::path stateDirectory;
    /// Name of the nftables table, family inet, that is the bridge's own in this network namespace.
    /// Empty: lists are kept in memory and nothing is filtered.
    std::string filterTable;
    /// The Linux name of a port's interface; nothing for a port that does not exist.
    std::function<std::optional<std::string>(int portId)> portName;
};

/// To be called before the first access list is made; until then lists are kept in memory. Reads
/// what is stored; a damaged file is renamed to `<name>.damaged-<UTC time>`, which is logged. Also
/// supplies the framework with the counters that its control program tells. Throws
/// std::system_error when the file can be neither read nor set aside.
void configure(Configuration configuration);

/// The product's `networkAddRARule`: source network and mask in host byte order, whether to permit,
/// place in the list (0: the end). Returns 0 on success.
using AddRemoteAccessRule =
    std::function<int(unsigned int address, unsigned int netmask, int permit, unsigned int place)>;

/// Puts the stored rules into force through the product, which starts with an empty list. The host
/// calls it once the entities run and before requests are served. Until it has returned the stored
/// rules are not touched; a rule that cannot be put into force is logged, stays stored and is tried
/// again at the next start. An empty function stands for a product without the operation: all rules
/// stay stored.
void replayRemoteAccessRules(const AddRemoteAccessRule& add);

}  // namespace bridge
