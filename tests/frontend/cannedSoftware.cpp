#include "cannedBoard.h"

#include <array>
#include <cstring>
#include <span>

namespace canned {

namespace {

void fill(rpcNetworkSWVersion& version) {
    copy(version.product, "MSAN 4.2.17");
    copy(version.buildDirectory, "n/a");
    copy(version.buildTime, "2024-02-29");
    // A text that fills its array, with a byte that is no UTF-8 and an escape.
    std::memset(version.upgradeProduct, 'x', sizeof version.upgradeProduct);
    copy(version.packageRelease, "17\xE9\x1b[31m");
    copy(version.osRelease, "DORN medium 2.6");
    copy(version.fileSystem, "2.6.3");
    copy(version.bootLoader, "n/a");
    copy(version.recoveryFileSystem, "recovery-FS-1.8-2.noarch");
}

void fillComponent(const std::string& behaviour, int index, std::span<const char* const> lines,
                   rpcNetworkSWVersionComp& component) {
    component.index = -1;
    if (behaviour == "endless") {
        component.index = index;
    } else if (index >= 0 && static_cast<std::size_t>(index) < lines.size() &&
               behaviour != "none") {
        copy(component.line, lines[static_cast<std::size_t>(index)]);
        component.index = index + 1;
    }
}

}  // namespace

bool answerSoftware(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_get_sw_data:
            fill(as<rpcNetworkSWVersion>(result));
            return true;
        case rpc_network_get_package_data:
            copy(as<rpcNetworkPackageVersion>(result).name, "VANTORIX MSAN");
            copy(as<rpcNetworkPackageVersion>(result).release, "2.6-3");
            return true;
        case rpc_network_get_sw_comp_apl_data:
            fillComponent(board().behaviour.components, as<int>(argument),
                          std::array{"olt_manager = 4.2-17", "web_em = 4.2-5"},
                          as<rpcNetworkSWVersionComp>(result));
            return true;
        case rpc_network_get_sw_comp_plat_data:
            fillComponent(board().behaviour.components, as<int>(argument),
                          std::array{"kernel = 5.10"}, as<rpcNetworkSWVersionComp>(result));
            return true;
        case rpc_network_set_ont_nmg:
            return take<rpcNetworkInfo>(state.ont, argument);
        case rpc_network_get_ont_nmg:
            return give<rpcNetworkInfo>(result, state.ont);
        default:
            return false;
    }
}

}  // namespace canned
