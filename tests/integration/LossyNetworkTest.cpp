// The stack over networks that lose, double, delay and reorder, against simulated devices.
#include "tests/integration/NumberedSite.h"
#include "tests/support/LossyRelay.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>

namespace {

using namespace numbered;

constexpr std::uint32_t LOCAL = 4;
constexpr std::uint32_t REMOTE = 2;
constexpr unsigned LANES = LOCAL + 1; // of one station: the devices and the router
constexpr unsigned STATIONS = 8;      // at once
constexpr unsigned SEEDS = 200;
constexpr BACSTAC_OBJECT_ID NOTES{OBJ_FILE, 1}; // of device 1

bacnet::TransactionSettings Hurried() {
    bacnet::TransactionSettings settings;
    settings.TimeoutMs = 60;
    settings.Retries = 5;
    settings.SegmentTimeoutMs = 60;
    settings.AnswerTimeoutMs = 2000;
    return settings;
}

class OverALossyNetwork : public testing::Test {
protected:
    OverALossyNetwork()
        : m_simulator([this] {
              sim::SimulatorConfig config = Devices(m_block, LOCAL, REMOTE);
              config.Threads = 2;
              sim::ObjectConfig file;
              file.Id = NOTES;
              file.File.emplace();
              config.Devices[0].Objects.push_back(file);
              return config;
          }()) {
        std::string failure;
        if (!m_simulator.Start(failure))
            throw std::runtime_error(failure);
    }
    // Everything that one station does with its own seed.
    Tally Run(unsigned station, std::uint64_t seed);

    testing_support::LoopbackBlock m_block;
    sim::Simulator m_simulator;
    std::atomic<std::uint64_t> m_lost{0};
};

Tally OverALossyNetwork::Run(unsigned station, std::uint64_t seed) {
    const unsigned front = 20 + station * LANES;
    testing_support::LossyRelay relay(seed, {});
    for (std::uint32_t i = 0; i < LOCAL; ++i)
        relay.Add({m_block.Ip(front + i), m_block.Port()}, {m_block.Ip(200 + i), m_block.Port()});
    relay.Add({m_block.Ip(front + LOCAL), m_block.Port()}, {m_block.Ip(ROUTER_HOST), m_block.Port()});
    relay.Start();
    const auto client = Station(
        m_block, 2 + station, Hurried(), LOCAL, REMOTE, [front](std::uint32_t device) { return front + device - 1; },
        front + LOCAL);
    std::mutex mutex;
    Tally all;
    std::vector<std::thread> threads;
    const auto start = [&](auto body) {
        threads.emplace_back([&, body] {
            Tally tally;
            body(tally);
            const std::lock_guard lock(mutex);
            all += tally;
        });
    };
    for (unsigned thread = 0; thread < 3; ++thread)
        start([&, thread](Tally& tally) {
            for (unsigned i = 0; i < 8; ++i) {
                const Place place = Place::Of(seed * 1000 + thread * 100 + i, LOCAL + REMOTE);
                if (i % 2 == 0)
                    Read(*client, place, tally);
                else
                    ReadPlainly(*client, place, tally);
            }
        });
    start([&](Tally& tally) {
        std::vector<Place> places;
        for (unsigned i = 0; i < 60; ++i)
            places.push_back(Place::Of(seed * 1000 + 500 + i, LOCAL + REMOTE));
        ReadTogether(*client, places, 12, tally);
    });
    start([&](Tally& tally) {
        for (unsigned i = 0; i < 2; ++i)
            ReadInSegments(*client, seed * 10 + i, 1 + static_cast<std::uint32_t>(seed + i) % (LOCAL + REMOTE), 50,
                           tally);
    });
    for (std::thread& thread : threads)
        thread.join();
    client->Shutdown();
    m_lost += relay.Lost();
    return all;
}

TEST_F(OverALossyNetwork, EachCallEndsInItsTimeAndNoAnswerGoesToTheWrongCall) {
    std::atomic<std::uint64_t> next{1};
    std::mutex mutex;
    Tally all;
    std::vector<std::thread> stations;
    for (unsigned station = 0; station < STATIONS; ++station)
        stations.emplace_back([&, station] {
            for (std::uint64_t seed = next++; seed <= SEEDS; seed = next++) {
                const Tally tally = Run(station, seed);
                EXPECT_EQ(tally.Wrong, 0U) << "seed " << seed << ": " << tally.Complaint;
                const std::lock_guard lock(mutex);
                all += tally;
            }
        });
    for (std::thread& station : stations)
        station.join();
    const bacnet::TransactionSettings settings = Hurried();
    // The stack's own bound, and what a busy machine may add.
    const std::int64_t bound = settings.TimeoutMs * (1 + settings.Retries) + 2 * settings.AnswerTimeoutMs;
    EXPECT_LE(all.LongestMs, bound + 3000);
    EXPECT_EQ(all.Right + all.Wrong + all.Unanswered, SEEDS * (3 * 8 + 60 + 2));
    EXPECT_GE(all.Right * 100, (all.Right + all.Unanswered) * 95) << "retries make up for the losses";
    EXPECT_GE(m_lost, SEEDS * 10U) << "the network was a bad one";
    RecordProperty("right", std::to_string(all.Right));
    RecordProperty("unanswered", std::to_string(all.Unanswered));
    RecordProperty("longest_ms", std::to_string(all.LongestMs));
}

// What was appended although the station heard nothing of it may be there, too; what it heard of is there once.
TEST_F(OverALossyNetwork, WhatIsAppendedToAFileIsThereOnce) {
    constexpr unsigned WRITES = 60;
    testing_support::LossyRelay relay(7, {.LossPercent = 25});
    relay.Add({m_block.Ip(20), m_block.Port()}, {m_block.Ip(200), m_block.Port()});
    relay.Start();
    const auto client = Station(
        m_block, 2, Hurried(), 1, 0, [](std::uint32_t) { return 20U; }, 21);
    std::string heardOf;
    std::string notHeardOf;
    for (unsigned i = 0; i < WRITES; ++i) {
        char octet = static_cast<char>(i + 1);
        BACSTAC_WRITE_FILE_SPEC spec{};
        spec.Access = BACSTAC_FILE_STREAM;
        spec.Start = -1;
        spec.Stream.Data = &octet;
        spec.Stream.Length = 1;
        BACSTAC_WRITE_FILE_RESULT result{};
        const bool written = client->WriteFile(1, NOTES, &spec, &result, nullptr) == BACSTAC_OK;
        (written ? heardOf : notHeardOf).push_back(octet);
    }
    client->Shutdown();
    std::string octets = m_simulator.FindDevice(1)->FileOctets(NOTES).value();
    EXPECT_EQ(std::set<char>(octets.begin(), octets.end()).size(), octets.size()) << "nothing is there twice";
    std::erase_if(octets, [&](char octet) { return notHeardOf.find(octet) != std::string::npos; });
    EXPECT_EQ(octets, heardOf);
    EXPECT_GE(relay.Lost(), WRITES / 4);
}

} // namespace
