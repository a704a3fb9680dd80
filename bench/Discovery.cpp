// Discovery: how long after the last I-Am of a crowd all of its devices are known.
#include "bench/Crowd.h"
#include "bench/Harness.h"
#include "bench/Site.h"

#include <fmt/format.h>

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLimitMilliseconds = 10;
constexpr double kNever = 1e6;

// Notes when the last of the devices 1 to count has announced itself.
class Found final : public CIAMCallback {
public:
    explicit Found(std::uint32_t count) : m_known(count + 1), m_missing(count) {}
    void OnIAm(BACSTAC_ADDRESS const&, unsigned const& device) override {
        const std::lock_guard lock(m_mutex);
        if (device >= m_known.size() || m_known[device])
            return;
        m_known[device] = true;
        if (--m_missing != 0)
            return;
        m_last = Clock::now();
        m_all.notify_all();
    }
    bool Wait(Clock::time_point& last) {
        std::unique_lock lock(m_mutex);
        if (!m_all.wait_for(lock, std::chrono::seconds(5), [&] { return m_missing == 0; }))
            return false;
        last = m_last;
        return true;
    }
    std::uint32_t Missing() {
        const std::lock_guard lock(m_mutex);
        return m_missing;
    }

private:
    std::mutex m_mutex; // guards all below
    std::condition_variable m_all;
    std::vector<bool> m_known;
    std::uint32_t m_missing;
    Clock::time_point m_last;
};

// A port of its own: the crowd would drown whoever else listens on the usual one.
std::uint16_t Port() {
    return static_cast<std::uint16_t>(49000 + getpid() % 1000);
}

Sample Discover(std::uint32_t count) {
    Crowd crowd(count, Port());
    sim::SimulatorConfig nobody;
    nobody.Port = Port();
    const auto client = OpenClient(nobody);
    Found found(count);
    const int handle = client->RegisterIAMCallback(&found);
    BACSTAC_ADDRESS everybody{};
    everybody.Network = 0xFFFF;
    if (client->WhoIs(everybody, 0, 4194303) != BACSTAC_OK)
        Fail("Who-Is cannot be sent");
    const Clock::time_point sent = crowd.LastSent();
    Clock::time_point last;
    const bool all = found.Wait(last);
    client->UnregisterIAMCallback(handle);
    std::vector<unsigned> listed;
    client->GetDevLst(listed, 65535);
    if (!all || listed.size() != count) {
        fmt::print(stderr, "bdc-bench: {} of {} devices were not found\n", found.Missing(), count);
        return {kNever, kLimitMilliseconds};
    }
    return {std::chrono::duration<double, std::milli>(last - sent).count(), kLimitMilliseconds};
}

} // namespace

void AddDiscoveryFigures(std::vector<Figure>& figures) {
    for (const std::uint32_t count : {1000U, 10'000U})
        figures.push_back(
            {fmt::format("discovery/{}", count), "ms", Better::Lower, 1,
             "from the sending of the last I-Am of so many devices that answer one Who-Is at once until all are "
             "known, beside 10 ms; nothing is pinned",
             [count] { return Discover(count); }});
}

} // namespace bench
