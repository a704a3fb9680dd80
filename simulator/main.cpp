// bdcsim: BACnet devices on this machine's loopback network, from a file or by counts, until it is interrupted.
#include "simulator/ConfigFile.h"
#include "simulator/Generate.h"
#include "simulator/Profiles.h"
#include "simulator/Simulator.h"

#include "platform/stack/transport/Bvll.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int EXIT_DONE = 0;
constexpr int EXIT_FAILED = 1;
constexpr int EXIT_USAGE = 2;
constexpr std::size_t LINES = 20; // devices that are listed one by one

struct Options {
    std::string File;
    std::string FirstAddress = "127.1.0.1";
    std::string IAm = "broadcast";
    std::uint32_t IAmPerMs = 50;
    sim::Counts Counts;
    unsigned Threads = 1;
    std::uint32_t AppendEveryMs = 0;
    std::vector<std::string> Profiles;
    bool ListProfiles = false;
    bool Quiet = false;
};

void AddOptions(CLI::App& app, Options& options) {
    sim::Counts& counts = options.Counts;
    app.add_option("FILE", options.File, "Description of the simulation (TOML); without it devices are made by counts");
    app.add_option("--devices", counts.Devices, "Devices on the IP network")->capture_default_str();
    app.add_option("--points", counts.Points, "Data objects of a device, at least as many as its logs need");
    app.add_option("--trends", counts.Trends, "Trend logs of a device")->capture_default_str();
    app.add_option("--multiple", counts.Multiples, "Trend-log-multiple objects of a device")->capture_default_str();
    app.add_option("--members", counts.Members, "Properties that each of those logs")
        ->check(CLI::Range(1, 100))
        ->capture_default_str();
    app.add_option("--records", counts.Records, "Records in each log")->capture_default_str();
    app.add_option("--capacity", counts.Capacity, "Records that a log holds; 0: as many as are asked for");
    app.add_option("--interval", counts.IntervalSeconds, "Seconds from one record to the next")
        ->check(CLI::Range(1, 86400))
        ->capture_default_str();
    app.add_option("--status-every", counts.StatusEvery, "Every so many records a log-status record; 0: none");
    app.add_flag("--real", counts.OnlyReal, "All points are analog inputs");
    app.add_option("--museum", counts.Museums, "Devices besides that have an object of every type")
        ->check(CLI::Range(0, 1000));
    app.add_option("--seed", counts.Seed, "Other contents for another seed")->capture_default_str();
    app.add_option("--base-instance", counts.BaseInstance, "Instance of the first device")
        ->check(CLI::Range(0U, 4194302U))
        ->capture_default_str();
    app.add_option("--first-address", options.FirstAddress, "Address of the first device; the others count up")
        ->capture_default_str();
    app.add_option("--port", counts.Port, "UDP port of all devices")->capture_default_str();
    app.add_option("--router", counts.Networks, "Number of a network behind a router; may be given several times")
        ->check(CLI::Range(1, 65534));
    app.add_option("--routed", counts.RoutedDevices, "Devices on each of those networks")
        ->check(CLI::Range(0, 254))
        ->capture_default_str();
    app.add_option("--revision", counts.ProtocolRevision, "Protocol revision")
        ->check(CLI::Range(0, 30))
        ->capture_default_str();
    app.add_option("--max-apdu", counts.MaxApdu, "APDU size of the devices in octets")
        ->check(CLI::Range(50, 1476))
        ->capture_default_str();
    app.add_option("--i-am", options.IAm, "Where I-Am goes in answer to a broadcast Who-Is")
        ->check(CLI::IsMember({"broadcast", "unicast"}))
        ->capture_default_str();
    app.add_option("--i-am-per-ms", options.IAmPerMs, "Devices that answer a Who-Is in one millisecond; 0: all at once")
        ->capture_default_str();
    app.add_option("--threads", options.Threads, "Server threads")->check(CLI::Range(1, 64))->capture_default_str();
    app.add_option("--append-every", options.AppendEveryMs, "Milliseconds after which each log gets another record");
    app.add_option("--profile", options.Profiles,
                   "Has the devices behave badly in this way; may be given several times");
    app.add_flag("--list-profiles", options.ListProfiles, "Tell the ways to behave badly, and end");
    app.add_flag("--quiet", options.Quiet, "Do not list the devices");
}

void ListProfiles() {
    for (const sim::Profile& profile : sim::AllProfiles())
        std::printf("%-22s %s\n", profile.Name, profile.What);
}

// False, and said so, when there is no such profile.
bool ApplyProfiles(const Options& options, sim::SimulatorConfig& config) {
    for (const std::string& name : options.Profiles) {
        const sim::Profile* profile = sim::FindProfile(name);
        if (profile == nullptr) {
            std::fprintf(stderr, "bdcsim: there is no profile \"%s\"; --list-profiles tells them\n", name.c_str());
            return false;
        }
        for (sim::DeviceConfig& device : config.Devices)
            profile->Apply(device);
        for (sim::RouterConfig& router : config.Routers)
            for (sim::NetworkConfig& network : router.Networks)
                for (sim::DeviceConfig& device : network.Devices)
                    profile->Apply(device);
    }
    return true;
}

// What is the same for all devices of a simulation, whichever way it was described. Options that were given win over
// the file.
void ApplyOptions(const CLI::App& app, const Options& options, sim::SimulatorConfig& config) {
    if (app.count("--threads") > 0)
        config.Threads = options.Threads;
    if (app.count("--append-every") > 0)
        config.AppendEveryMs = options.AppendEveryMs;
    if (app.count("--i-am") > 0)
        config.IAm = options.IAm == "unicast" ? sim::IAmMode::unicast : sim::IAmMode::broadcast;
    if (app.count("--i-am-per-ms") > 0)
        config.IAmPerMs = options.IAmPerMs;
    if (app.count("--port") > 0)
        config.Port = options.Counts.Port;
}

std::string AddressText(const BACSTAC_ADDRESS& address) {
    if (address.Remote != 0)
        return "network " + std::to_string(address.Network) + ", station " + std::to_string(address.Mac[0]);
    bacnet::BipAddress link;
    bacnet::FromMac(bacnet::MacAddress(std::span(address.Mac, address.MacLength)), link);
    return bacnet::ToString(link);
}

void List(const sim::Simulator& simulator) {
    const std::size_t count = simulator.DeviceCount();
    for (std::size_t i = 0; i < count && i < LINES; ++i) {
        const sim::Device& device = simulator.GetDevice(i);
        const std::size_t objects = device.ObjectList().size();
        std::printf("device %u at %s: \"%s\", %zu objects, revision %u, %u octets\n", device.Instance(),
                    AddressText(simulator.AddressOf(i)).c_str(), device.Config().Name.c_str(), objects,
                    device.Config().ProtocolRevision, device.Config().MaxApdu);
    }
    if (count > LINES)
        std::printf("and %zu more, up to device %u at %s\n", count - LINES, simulator.GetDevice(count - 1).Instance(),
                    AddressText(simulator.AddressOf(count - 1)).c_str());
}

// Blocks the signals that end the program, for this thread and those it starts: they are waited for instead.
sigset_t BlockSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

int Serve(sim::SimulatorConfig config, bool quiet) {
    const sigset_t signals = BlockSignals();
    sim::Simulator simulator(std::move(config));
    std::string error;
    if (!simulator.Start(error)) {
        std::fprintf(stderr, "bdcsim: %s\n", error.c_str());
        return EXIT_FAILED;
    }
    if (!quiet)
        List(simulator);
    std::printf("serving %zu devices\n", simulator.DeviceCount());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&signals, &signal);
    simulator.Stop();
    const sim::Stats stats = simulator.GetStats();
    std::printf("served %llu requests\n", static_cast<unsigned long long>(stats.Requests()));
    return EXIT_DONE;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Simulated BACnet/IP devices on the loopback network. Ends on SIGINT or SIGTERM.", "bdcsim");
    AddOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    if (!bacnet::ParseIpV4(options.FirstAddress, options.Counts.FirstIp) || options.Counts.FirstIp >> 24 != 127) {
        std::fprintf(stderr, "bdcsim: --first-address has to be an address 127.x.y.z\n");
        return EXIT_USAGE;
    }
    if (options.ListProfiles) {
        ListProfiles();
        return EXIT_DONE;
    }
    sim::SimulatorConfig config;
    if (options.File.empty()) {
        config = sim::GenerateConfig(options.Counts);
    } else if (std::string errors; !sim::LoadConfig(options.File, config, errors)) {
        std::fprintf(stderr, "%s", errors.c_str());
        return EXIT_FAILED;
    }
    ApplyOptions(app, options, config);
    if (!ApplyProfiles(options, config))
        return EXIT_USAGE;
    return Serve(std::move(config), options.Quiet);
}
