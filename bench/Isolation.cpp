// What the callers of live devices notice of those that wait for a dead one.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Site.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kLive = 100;
constexpr int kWaiting = 8; // callers of the dead device
constexpr int kTurns = 5;   // with and without them, in turn
constexpr std::chrono::milliseconds kTimeout{300};
constexpr int kRetries = 3;
// A turn: a call of the dead device begins with it, is repeated three times, and ends a moment after it.
constexpr auto kTurn = kTimeout * (1 + kRetries) - std::chrono::milliseconds(50);
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

// How long each read took, in microseconds, of as many rounds over all live devices as a turn lasts.
std::vector<double> ReadAll(CBacGeneral& client, unsigned first) {
    std::vector<double> times;
    for (const auto end = Clock::now() + kTurn; Clock::now() < end;)
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

// Threads that call the dead device while they are told to. They are there all the time: what differs between the
// turns is what they wait for.
class DeadCallers {
public:
    DeadCallers(CBacGeneral& client, unsigned device) {
        for (int i = 0; i < kWaiting; ++i)
            m_threads.emplace_back([&client, device, this](const std::stop_token& stop) {
                while (AwaitTurn(stop)) {
                    if (Read(client, device) == BACSTAC_OK)
                        Fail("the dead device answers");
                    EndCall();
                }
            });
    }

    void Begin() {
        const std::lock_guard lock(m_mutex);
        m_calling = true;
        m_changed.notify_all();
    }
    // Returns when the last call has ended.
    void End() {
        std::unique_lock lock(m_mutex);
        m_calling = false;
        m_changed.wait(lock, [this] { return m_calls == 0; });
    }

private:
    bool AwaitTurn(const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait(lock, stop, [this] { return m_calling; }))
            return false;
        ++m_calls;
        return true;
    }
    void EndCall() {
        const std::lock_guard lock(m_mutex);
        --m_calls;
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    bool m_calling = false;              // m_mutex
    int m_calls = 0;                     // m_mutex: under way
    std::vector<std::jthread> m_threads; // joined before the others go
};

Sample Measure() {
    const auto config = Devices();
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    bacnet::TransactionSettings transactions;
    transactions.TimeoutMs = static_cast<std::uint32_t>(kTimeout.count());
    transactions.Retries = kRetries;
    const auto client = OpenClient(config, transactions);
    const unsigned first = config.Devices.front().Instance;
    DeadCallers callers(*client, config.Devices.back().Instance);
    ReadAll(*client, first); // warms up
    // The turn of the median ratio: what else the machine does falls on single turns.
    std::vector<Sample> turns;
    for (int turn = 0; turn < kTurns; ++turn) {
        const double without = Percentile99(ReadAll(*client, first));
        callers.Begin();
        const double with = Percentile99(ReadAll(*client, first));
        callers.End();
        turns.push_back({with, without});
    }
    std::ranges::sort(turns, {}, [](const Sample& turn) { return turn.limit / turn.value; });
    return turns[turns.size() / 2];
}

} // namespace

void AddIsolationFigures(std::vector<Figure>& figures) {
    figures.push_back(
        {"isolation/dead_device", "us", Better::Lower, kFloor,
         "99th percentile of a read from 100 live devices while 8 callers wait for a dead one, beside the same while "
         "those 8 threads sleep, in turns of 1.15 s; timeout 0.3 s, 3 retries; all on processor 0",
         Measure});
}

} // namespace bench
