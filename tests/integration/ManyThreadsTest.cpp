// Any number of threads in the stack at once, each of which gets its own answers.
#include "tests/integration/NumberedSite.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

namespace {

using namespace numbered;

constexpr std::uint32_t DEVICES = 4;

// Nothing is lost here, so a device that waits for a busy thread is not to give up on it.
sim::SimulatorConfig PatientDevices(const testing_support::LoopbackBlock& block) {
    sim::SimulatorConfig config = Devices(block, DEVICES, 0);
    for (sim::DeviceConfig& device : config.Devices)
        device.SegmentTimeoutMs = 5000;
    return config;
}

class ManyThreads : public testing::Test {
protected:
    ManyThreads() : m_simulator(PatientDevices(m_block)) {
        std::string failure;
        if (!m_simulator.Start(failure))
            throw std::runtime_error(failure);
        bacnet::TransactionSettings settings;
        settings.Retries = 5;
        m_client = Station(
            m_block, 2, settings, DEVICES, 0, [](std::uint32_t device) { return 199 + device; }, 0);
    }
    // Runs body(thread, tally) on so many threads.
    template <class Body>
    Tally OnThreads(unsigned count, Body body) {
        std::mutex mutex;
        Tally all;
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < count; ++i)
            threads.emplace_back([&, i] {
                Tally tally;
                body(i, tally);
                const std::lock_guard lock(mutex);
                all += tally;
            });
        for (std::thread& thread : threads)
            thread.join();
        return all;
    }

    testing_support::LoopbackBlock m_block;
    sim::Simulator m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

TEST_F(ManyThreads, EightReadFourDevicesTwoHundredTimesEach) {
    const Tally tally = OnThreads(8, [this](unsigned thread, Tally& own) {
        for (unsigned i = 0; i < 200; ++i)
            Read(*m_client, Place::Of(thread * 1000 + i, DEVICES), own);
    });
    EXPECT_EQ(tally.Right, 1600U) << tally.Complaint;
}

TEST_F(ManyThreads, ThirtyTwoMixBlockingOutstandingAndSegmentedCalls) {
    const Tally tally = OnThreads(32, [this](unsigned thread, Tally& own) {
        switch (thread % 4) {
        case 0:
        case 1:
            for (unsigned i = 0; i < 100; ++i)
                (i % 2 == 0 ? Read : ReadPlainly)(*m_client, Place::Of(thread * 1000 + i, DEVICES), own);
            break;
        case 2: {
            std::vector<Place> places;
            for (unsigned i = 0; i < 100; ++i)
                places.push_back(Place::Of(thread * 1000 + i, DEVICES));
            ReadTogether(*m_client, places, 8, own);
            break;
        }
        default:
            for (unsigned i = 0; i < 10; ++i)
                ReadInSegments(*m_client, thread * 100 + i, 1 + (thread + i) % DEVICES, 100, own);
        }
    });
    EXPECT_EQ(tally.Wrong, 0U) << tally.Complaint;
    EXPECT_EQ(tally.Unanswered, 0U) << "the longest call took " << tally.LongestMs << " ms";
    EXPECT_EQ(tally.Right, 24U * 100 + 8 * 10);
    // A request of a hundred values and its answer are at least six segments each.
    EXPECT_GE(m_simulator.GetStats()[sim::Counter::segments], 8U * 10 * 6);
}

} // namespace
