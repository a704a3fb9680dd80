// What the callers of live devices notice of those that wait for a dead one.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Site.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kLive = 100;
constexpr int kWaiting = 8; // callers of the dead device
constexpr int kTurns = 7;   // with and without them, in turn
constexpr int kRoundsOfATurn = 150;
constexpr double kFloor = 1 / 1.1;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};

sim::SimulatorConfig Devices() {
    sim::Counts counts;
    counts.Devices = kLive + 1;
    counts.Trends = 0;
    counts.Points = 1;
    counts.OnlyReal = true;
    counts.FirstIp = LoopbackBlock();
    sim::SimulatorConfig config = sim::GenerateConfig(counts);
    config.Devices.back().Faults.push_back(sim::Fault::Silent());
    return config;
}

BACSTAC_STATUS Read(CBacGeneral& client, unsigned device) {
    float value = 0;
    return client.ReadProperty(device, kPoint, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value, sizeof value, nullptr);
}

// How long each read took, in microseconds, of some rounds over all live devices.
std::vector<double> ReadAll(CBacGeneral& client, unsigned first) {
    std::vector<double> times;
    for (int round = 0; round < kRoundsOfATurn; ++round)
        for (unsigned device = first; device < first + kLive; ++device) {
            const auto start = Clock::now();
            if (Read(client, device) != BACSTAC_OK)
                Fail("a live device does not answer");
            times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
        }
    return times;
}

double Percentile99(std::vector<double> times) {
    const auto at = times.begin() + static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
    std::nth_element(times.begin(), at, times.end());
    return *at;
}

class DeadCallers {
public:
    DeadCallers(CBacGeneral& client, unsigned device) {
        for (int i = 0; i < kWaiting; ++i)
            m_threads.emplace_back([&client, device, this] {
                while (!m_stop)
                    if (Read(client, device) == BACSTAC_OK)
                        Fail("the dead device answers");
            });
    }
    ~DeadCallers() { m_stop = true; }

private:
    std::atomic<bool> m_stop{false};
    std::vector<std::jthread> m_threads; // joined before m_stop goes
};

Sample Measure() {
    const auto config = Devices();
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    bacnet::TransactionSettings transactions;
    transactions.TimeoutMs = 300; // so that requests are repeated and given up while it is measured
    transactions.Retries = 1;
    const auto client = OpenClient(config, transactions);
    const unsigned first = config.Devices.front().Instance;
    // The turn of the median ratio: what else the machine does falls on single turns.
    std::vector<Sample> turns;
    for (int turn = 0; turn < kTurns; ++turn) {
        const double without = Percentile99(ReadAll(*client, first));
        const DeadCallers callers(*client, config.Devices.back().Instance);
        turns.push_back({Percentile99(ReadAll(*client, first)), without});
    }
    std::ranges::sort(turns, {}, [](const Sample& turn) { return turn.limit / turn.value; });
    return turns[turns.size() / 2];
}

} // namespace

void AddIsolationFigures(std::vector<Figure>& figures) {
    figures.push_back(
        {"isolation/dead_device", "us", Better::Lower, kFloor,
         "99th percentile of a read from 100 live devices while 8 callers wait for a dead one, beside the "
         "same without them, in turns; all on processor 0",
         Measure});
}

} // namespace bench
