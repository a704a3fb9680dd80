// ReadProperty of one analog present value: what a call costs beyond the datagrams that it needs.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Site.h"

#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadProperty.h"
#include "platform/stack/transaction/AsyncCaller.h"

#include <fmt/format.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kSeconds = 1.0;
constexpr int kOutstanding = 32;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};

sim::Counts OneDevice() {
    sim::Counts counts;
    counts.Points = 1;
    counts.OnlyReal = true;
    counts.FirstIp = LoopbackBlock();
    return counts;
}

[[noreturn]] void Fail(BACSTAC_STATUS status) {
    fmt::print(stderr, "bdc-bench: ReadProperty gives status {}\n", status);
    std::_Exit(2);
}

void ReadOnce(CBacGeneral& client, unsigned device) {
    float value = 0;
    const BACSTAC_STATUS status =
        client.ReadProperty(device, kPoint, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value, sizeof value, nullptr);
    if (status != BACSTAC_OK)
        Fail(status);
}

double Rate(std::uint64_t calls, Clock::time_point start) {
    return static_cast<double>(calls) / std::chrono::duration<double>(Clock::now() - start).count();
}

// One caller that waits for each answer.
double BlockingRate(Pinning pinning) {
    const sim::Counts counts = OneDevice();
    const SimulatedSite site(counts, pinning.server);
    const PinnedScope pinned(pinning.client);
    const auto client = OpenClient(counts);
    std::uint64_t calls = 0;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration<double>(kSeconds);
    while ((calls & 0xFF) != 0 || Clock::now() < end) {
        ReadOnce(*client, counts.BaseInstance);
        ++calls;
    }
    return Rate(calls, start);
}

// 32 callers at once, each of which waits for its answer; nobody is pinned.
double CallersRate() {
    const sim::Counts counts = OneDevice();
    const SimulatedSite site(counts, -1);
    const auto client = OpenClient(counts);
    std::atomic<bool> stop{false};
    std::array<std::uint64_t, kOutstanding> calls{};
    std::vector<std::jthread> callers;
    const auto start = Clock::now();
    for (auto& count : calls)
        callers.emplace_back([&] {
            std::uint64_t done = 0;
            for (; !stop.load(std::memory_order_relaxed); ++done)
                ReadOnce(*client, counts.BaseInstance);
            count = done;
        });
    std::this_thread::sleep_for(std::chrono::duration<double>(kSeconds));
    stop = true;
    callers.clear();
    std::uint64_t total = 0;
    for (const auto count : calls)
        total += count;
    return Rate(total, start);
}

class Request final : public bacnet::AsyncRequest {
public:
    Request(bacnet::AsyncCaller& caller, const BACSTAC_ADDRESS& address, std::uint64_t& calls, const bool& stop)
        : m_caller(caller), m_calls(calls), m_stop(stop) {
        bacnet::Writer writer(m_octets);
        bacnet::EncodeReadProperty({kPoint, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX}, writer);
        Destination = address;
        Service = static_cast<std::uint8_t>(bacnet::ConfirmedService::readProperty);
        Parameters = writer.Written();
        m_caller.Submit(*this);
    }
    void OnDone(const bacnet::CallResult& result) override {
        bacnet::ReadPropertyAck ack;
        if (result.How != bacnet::Outcome::complex_ack || !bacnet::DecodeReadPropertyAck(Answer.Octets(), ack))
            Fail(BACSTAC_STATUS_INVALID_ANSWER);
        ++m_calls;
        if (!m_stop)
            m_caller.Submit(*this);
    }

private:
    bacnet::AsyncCaller& m_caller;
    std::uint64_t& m_calls;
    const bool& m_stop;
    std::array<std::uint8_t, 32> m_octets{};
};

// One caller with 32 requests outstanding.
double AsyncRate(Pinning pinning) {
    const sim::Counts counts = OneDevice();
    const SimulatedSite site(counts, pinning.server);
    const PinnedScope pinned(pinning.client);
    const auto client = OpenClient(counts);
    const BACSTAC_ADDRESS address = client->GetDevAddr(counts.BaseInstance);
    bacnet::AsyncCaller caller(client->Transactions());
    std::uint64_t calls = 0;
    bool stop = false;
    std::vector<std::unique_ptr<Request>> requests;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration<double>(kSeconds);
    for (int i = 0; i < kOutstanding; ++i)
        requests.push_back(std::make_unique<Request>(caller, address, calls, stop));
    while (Clock::now() < end)
        caller.Poll(100);
    const double rate = Rate(calls, start);
    stop = true;
    while (caller.Outstanding() != 0)
        caller.Poll(100);
    return rate;
}

} // namespace

void AddReadPropertyFigures(std::vector<Figure>& figures) {
    figures.push_back({"read_property/one_core", "1/s", Better::Higher, 0.4,
                       "one blocking caller and the device on processor 0, beside the bare ping-pong there", [] {
                           return Sample{BlockingRate(kOneCore), PingPongRate(kOneCore, 1, kSeconds)};
                       }});
    figures.push_back({"read_property/two_cores", "1/s", Better::Higher, 0.8,
                       "one blocking caller on processor 0, the device on 1, beside the bare ping-pong pinned so", [] {
                           return Sample{BlockingRate(kTwoCores), PingPongRate(kTwoCores, 1, kSeconds)};
                       }});
    figures.push_back({"read_property/callers32", "1/s", Better::Higher, 1.0,
                       "32 blocking callers and the device on any processor, beside 100,000 a second", [] {
                           return Sample{CallersRate(), 100'000};
                       }});
    figures.push_back({"read_property/callers32_ping_pong", "1/s", Better::Higher, 0,
                       "the same beside the bare ping-pong with 32 outstanding, on any processor", [] {
                           return Sample{CallersRate(), PingPongRate({-1, -1}, kOutstanding, kSeconds)};
                       }});
    figures.push_back({"read_property/async32", "1/s", Better::Higher, 0.5,
                       "one caller on processor 0 with 32 outstanding, the device on 1, beside the ping-pong with 32",
                       [] {
                           return Sample{AsyncRate(kTwoCores), PingPongRate(kTwoCores, kOutstanding, kSeconds)};
                       }});
}

} // namespace bench
