// The same reads with BACnet stacks of other people as the clients: JavaScript packages in Node.js, which
// packaging/install-node-packages installs. Where they are not installed, these figures do not exist.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Rate.h"
#include "bench/Site.h"

#include "api/bacnet/Enums.h"

#include <fmt/format.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace bench {
namespace {

constexpr double kSeconds = 1.0;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_PROPERTY_ID kAll = 8; // of ReadPropertyMultiple: ALL
constexpr const char* kInstalled = BDC_SOURCE_DIR "/build/node";
constexpr const char* kScript = BDC_SOURCE_DIR "/tests/interop/node/rate.js";

sim::SimulatorConfig OneInput() {
    sim::SimulatorConfig config = OneDevice(1);
    config.Devices[0].Objects[0].IntrinsicReporting = true;
    return config;
}

std::string Address(std::uint32_t ip) {
    return fmt::format("{}.{}.{}.{}", ip >> 24, ip >> 16 & 0xFF, ip >> 8 & 0xFF, ip & 0xFF);
}

// What rate.js prints for a package.
double PeerRate(const sim::SimulatorConfig& config, const std::string& package, const std::string& step) {
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client); // the process that is started inherits it
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / fmt::format("bdc-bench-{}.json", getpid());
    std::ofstream(file) << fmt::format(R"({{"bind": "{}", "port": {}, "seconds": {}, "step": {{"to": "{}", {}}}}})",
                                       Address(LoopbackBlock() - 8), config.Port, kSeconds, Address(LoopbackBlock()),
                                       step);
    const std::string command =
        fmt::format("NODE_PATH='{}/node_modules' node '{}' '{}' '{}'", kInstalled, kScript, package, file.string());
    std::FILE* const pipe = popen(command.c_str(), "r");
    double rate = 0;
    const bool read = pipe != nullptr && std::fscanf(pipe, "%lf", &rate) == 1;
    const bool ended = pipe != nullptr && pclose(pipe) == 0;
    std::filesystem::remove(file);
    if (!read || !ended)
        Fail("no rate from " + command);
    return rate;
}

double OurReadRate(const sim::SimulatorConfig& config) {
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    const auto client = OpenClient(config);
    return CallRate(kSeconds, [&] {
        float value = 0;
        if (client->ReadProperty(config.Devices[0].Instance, kPoint, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value,
                                 sizeof value, nullptr) != BACSTAC_OK)
            Fail("ReadProperty fails");
    });
}

double OurReadAllRate(const sim::SimulatorConfig& config) {
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    const auto client = OpenClient(config);
    const BACSTAC_ADDRESS address = client->GetDevAddr(config.Devices[0].Instance);
    std::array<std::array<char, 256>, 64> buffers{};
    std::array<BACSTAC_READ_RESULT_ITEM, 64> items{};
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].Contents = {-1, buffers[i].data(), static_cast<std::uint32_t>(buffers[i].size()), 0};
    return CallRate(kSeconds, [&] {
        unsigned count = items.size();
        if (client->ReadPropertyList(address, kPoint, items.data(), &count, nullptr) != BACSTAC_OK)
            Fail("ReadPropertyList fails");
    });
}

void AddPeer(std::vector<Figure>& figures, const std::string& name, const std::string& package) {
    const std::string read = fmt::format(R"("do": "read", "type": {}, "instance": {}, "property": {})", kPoint.Type,
                                         kPoint.Instance, PROP_PRESENT_VALUE);
    const std::string readAll = fmt::format(
        R"("do": "readMultiple", "objects": [{{"type": {}, "instance": {}, "properties": [{{"id": {}}}]}}])",
        kPoint.Type, kPoint.Instance, kAll);
    figures.push_back({"peers/" + name + "_read", "1/s", Better::Higher, 1,
                       "ReadProperty, one caller and the device on processor 0, beside the package " + package, [=] {
                           const auto config = OneInput();
                           return Sample{OurReadRate(config), PeerRate(config, package, read)};
                       }});
    figures.push_back({"peers/" + name + "_read_all", "1/s", Better::Higher, 1,
                       "all properties of an analog input at once, as above, beside the package " + package, [=] {
                           const auto config = OneInput();
                           return Sample{OurReadAllRate(config), PeerRate(config, package, readAll)};
                       }});
}

} // namespace

void AddPeerFigures(std::vector<Figure>& figures) {
    if (!std::filesystem::exists(std::string(kInstalled) + "/installed.json")) {
        fmt::print(stderr, "bdc-bench: no figures of peers: packaging/install-node-packages installs them\n");
        return;
    }
    AddPeer(figures, "node_bacnet", "node-bacnet");
    AddPeer(figures, "bacnet_js", "@bacnet-js/client");
}

} // namespace bench
