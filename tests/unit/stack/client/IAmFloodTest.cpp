// I-Am announcements by the ten thousand, while other work goes on.
#include "api/bacnet/Log.h"
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/transport/UdpSocket.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"
#include "tests/support/Loopback.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace {

using namespace std::chrono_literals;
using bacnet::DatagramBatch;
using bacnet::LiveDirectory;
using bacnet::UdpSocket;
using testing_support::LoopbackBlock;

constexpr unsigned RATE = 50000; // a second
constexpr std::size_t TEN_SECONDS = 500000;
constexpr unsigned VICTIM = 1000;

// Octets that the program has from the heap; 0 with a sanitizer, which keeps a heap of its own.
std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

class Errors : public CQilBAC_ErrLog::ISink {
public:
    void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
        const std::lock_guard lock(m_lock);
        if (kind == CQilBAC_ErrLog::KIND_ERROR)
            m_lines.push_back(text);
    }
    std::vector<std::string> Take() {
        const std::lock_guard lock(m_lock);
        return std::exchange(m_lines, {});
    }

private:
    std::mutex m_lock;
    std::vector<std::string> m_lines;
};

class CountingListener : public CIAMCallback {
public:
    explicit CountingListener(std::chrono::microseconds effort = {}) : m_effort(effort) {}
    void OnIAm(BACSTAC_ADDRESS const&, unsigned const&) override {
        ++Count;
        const auto until = std::chrono::steady_clock::now() + m_effort;
        while (m_effort.count() != 0 && std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
    }
    std::atomic<std::uint64_t> Count{0};

private:
    const std::chrono::microseconds m_effort;
};

// Holds on to the thread that tells it, until it is let go.
class Blocker : public CIAMCallback {
public:
    void OnIAm(BACSTAC_ADDRESS const&, unsigned const&) override {
        Entered = true;
        while (!Leave)
            std::this_thread::sleep_for(1ms);
    }
    std::atomic<bool> Entered{false};
    std::atomic<bool> Leave{false};
};

class IAmFlood : public testing::Test {
protected:
    void SetUp() override {
        sim::Counts counts;
        counts.Trends = 0;
        counts.Points = 3;
        counts.BaseInstance = VICTIM;
        counts.FirstIp = m_block.Ip(10);
        counts.Port = m_block.Port();
        m_simulator = std::make_unique<sim::Simulator>(sim::GenerateConfig(counts));
        std::string failure;
        ASSERT_TRUE(m_simulator->Start(failure)) << failure;
        CQilBAC_ErrLog::Instance().SetSink(m_errors);
        UdpSocket::Options options;
        options.SendBuffer = 1 << 20;
        ASSERT_EQ(m_flooder.Open({m_block.Ip(20), m_block.Port()}, options), "");
        OpenClient({});
    }
    void OpenClient(const bacnet::TransactionSettings& settings) {
        m_client.reset();
        bacnet::ClientConfig config;
        config.Transactions = settings;
        config.Ports.emplace_back();
        config.Ports[0].BindAddress = m_block.Text(1);
        config.Ports[0].UdpPort = m_block.Port();
        std::string failure;
        m_client = bacnet::BacnetClient::Open(config, failure);
        ASSERT_NE(m_client, nullptr) << failure;
        const BACSTAC_ADDRESS local{};
        for (int i = 0; i < 100 && !m_client->FindDev(VICTIM); ++i) {
            m_client->WhoIs(local, VICTIM, VICTIM);
            std::this_thread::sleep_for(20ms);
        }
        ASSERT_TRUE(m_client->FindDev(VICTIM));
    }
    void TearDown() override {
        m_client.reset();
        CQilBAC_ErrLog::Instance().SetSink(nullptr);
    }

    // I-Am of this instance as a datagram.
    static std::vector<std::uint8_t> Announcement(unsigned instance, bool broadcast) {
        std::uint8_t octets[32];
        bacnet::Writer writer(octets);
        bacnet::EncodeIAm({instance, 1476, 3, 260}, writer);
        const auto parameters = writer.Written();
        std::vector<std::uint8_t> frame{0x81, std::uint8_t(broadcast ? 0x0B : 0x0A), 0, 0, 0x01, 0x00, 0x10, 0x00};
        frame.insert(frame.end(), parameters.begin(), parameters.end());
        frame[3] = static_cast<std::uint8_t>(frame.size());
        return frame;
    }
    // Sends count announcements at the rate, of ever new instances, directed or turn by turn as broadcasts too; then
    // the first of each batch is that of a device which is known at another address.
    void Flood(std::size_t count, bool broadcasts) {
        const bacnet::BipAddress network{LoopbackBlock::BROADCAST_IP, m_block.Port()};
        const bacnet::BipAddress victim{m_block.Ip(1), m_block.Port()};
        const auto begun = std::chrono::steady_clock::now();
        for (std::size_t sent = 0; sent < count;) {
            std::vector<std::vector<std::uint8_t>> frames;
            std::vector<bacnet::OutgoingDatagram> batch;
            for (std::size_t i = 0; i < DatagramBatch::CAPACITY; ++i) {
                const bool broadcast = broadcasts && i % 2 == 0;
                const auto other = static_cast<unsigned>(10000 + (sent + i) % 300000);
                frames.push_back(Announcement(broadcasts && i == 0 ? VICTIM : other, broadcast));
                batch.push_back({broadcast ? network : victim, {}});
            }
            for (std::size_t i = 0; i < frames.size(); ++i)
                batch[i].Octets = frames[i];
            m_flooder.SendMany(batch);
            sent += batch.size();
            std::this_thread::sleep_until(begun + std::chrono::microseconds(sent * 1000000 / RATE));
        }
    }
    // Reads from the one device until told to stop; how often, and how many of these did not succeed.
    struct Reads {
        unsigned Done = 0;
        unsigned Failed = 0;
        std::chrono::steady_clock::duration Longest{};
    };
    Reads ReadUntil(const std::atomic<bool>& stop) {
        Reads reads;
        while (!stop || reads.Done == 0) {
            std::uint32_t value = 0;
            const auto begun = std::chrono::steady_clock::now();
            const BACSTAC_STATUS status = m_client->ReadProperty(VICTIM, {OBJ_DEVICE, VICTIM}, PROP_SYSTEM_STATUS, -1,
                                                                 &value, sizeof value, nullptr);
            reads.Longest = std::max(reads.Longest, std::chrono::steady_clock::now() - begun);
            ++reads.Done;
            reads.Failed += status == BACSTAC_OK ? 0 : 1;
        }
        return reads;
    }
    Reads ReadDuringFlood(std::size_t count, bool broadcasts) {
        std::atomic<bool> over{false};
        std::thread flooder([&] {
            Flood(count, broadcasts);
            over = true;
        });
        const Reads reads = ReadUntil(over);
        flooder.join();
        return reads;
    }

    static constexpr BACSTAC_PROPERTY_ID PROP_SYSTEM_STATUS = 112;

    const std::shared_ptr<Errors> m_errors = std::make_shared<Errors>();
    LoopbackBlock m_block;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    UdpSocket m_flooder;
};

TEST_F(IAmFlood, OtherWorkGoesOnForTenSeconds) {
    CountingListener listener;
    const int handle = m_client->RegisterIAMCallback(&listener);
    const std::size_t before = HeapInUse();
    const Reads reads = ReadDuringFlood(TEN_SECONDS, true);
    m_client->UnregisterIAMCallback(handle);
    EXPECT_EQ(reads.Failed, 0U) << "of " << reads.Done;
    EXPECT_GE(reads.Done, 1000U);
    EXPECT_LT(reads.Longest, 3s) << "not even a repetition";
    EXPECT_GT(listener.Count.load(), TEN_SECONDS / 10);
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_LE(devices.size(), LiveDirectory::MAX_LEARNED);
    EXPECT_LE(HeapInUse(), before + LiveDirectory::MAX_LEARNED * 300 + (8U << 20)) << "the directory and the queues";
    EXPECT_EQ(m_client->GetDevAddr(VICTIM).Mac[3], m_block.Ip(10) & 0xFF) << "the first one is kept";
    const std::vector<std::string> errors = m_errors->Take();
    EXPECT_EQ(
        std::ranges::count_if(errors, [](const auto& line) { return line.find("is used twice") != std::string::npos; }),
        1);
    EXPECT_LE(errors.size(), 3U) << "once each: also the directory is full, announcements were dropped";
    RecordProperty("reads", static_cast<int>(reads.Done));
}

TEST_F(IAmFlood, ASlowListenerCostsAnnouncementsAndNothingElse) {
    CountingListener listener(300us);
    const int handle = m_client->RegisterIAMCallback(&listener);
    const std::size_t count = 12000; // beyond the queue's room
    const Reads reads = ReadDuringFlood(count, false);
    EXPECT_EQ(reads.Failed, 0U) << "of " << reads.Done;
    EXPECT_LT(reads.Longest, 3s);
    const std::atomic<bool> stopped{true};
    EXPECT_EQ(ReadUntil(stopped).Failed, 0U);
    // What was queued is served in the end: Unregister waits for the call under way only.
    m_client->UnregisterIAMCallback(handle);
    EXPECT_LE(m_errors->Take().size(), 1U);
}

TEST_F(IAmFlood, AListenerThatBlocksDoesNotKeepSlowDevicesFromBeingRead) {
    UdpSocket device;
    UdpSocket::Options options;
    options.ReceiveTimeoutMs = 5000;
    ASSERT_EQ(device.Open({m_block.Ip(30), m_block.Port()}, options), "");
    constexpr int count = 5;
    std::thread answerer([&device] {
        DatagramBatch batch;
        for (int i = 0; i < count && device.Receive(batch, 1, true) == 1; ++i) {
            // BVLL, NPDU of 2 octets, header of 4 octets, then object and property, which the answer repeats.
            const auto request = batch.Octets(0);
            std::vector<std::uint8_t> answer{0x81, 0x0A, 0, 0, 0x01, 0x00, 0x30, request[8], 0x0C};
            answer.insert(answer.end(), request.begin() + 10, request.end());
            answer.insert(answer.end(), {0x3E, 0x91, 0x00, 0x3F}); // enumerated 0
            answer[3] = static_cast<std::uint8_t>(answer.size());
            std::this_thread::sleep_for(50ms); // longer than a caller leads
            device.Send(batch.From(0), answer);
        }
    });
    Blocker blocker;
    const int handle = m_client->RegisterIAMCallback(&blocker);
    m_flooder.Send({m_block.Ip(1), m_block.Port()}, Announcement(5, false));
    while (!blocker.Entered)
        std::this_thread::sleep_for(1ms);
    const bacnet::MacAddress mac = bacnet::ToMac({m_block.Ip(30), m_block.Port()});
    BACSTAC_ADDRESS address{0, 0, 0, {}, 6};
    std::copy_n(mac.Data(), 6, address.Mac);
    for (int i = 0; i < count; ++i) {
        CPropertyContents contents(64, nullptr);
        const auto begun = std::chrono::steady_clock::now();
        EXPECT_EQ(m_client->ReadProperty(address, {OBJ_DEVICE, 7}, PROP_SYSTEM_STATUS, -1, contents, nullptr),
                  BACSTAC_OK);
        EXPECT_LT(std::chrono::steady_clock::now() - begun, 2900ms) << "no repetition";
    }
    blocker.Leave = true;
    m_client->UnregisterIAMCallback(handle);
    answerer.join();
}

TEST_F(IAmFlood, WhatTheQueueHasNoRoomForIsCountedAndLoggedOnce) {
    // While a listener keeps the background thread, a reader leads and takes what comes for others.
    // A caller leads for a moment only, so its calls are short.
    bacnet::TransactionSettings settings;
    settings.TimeoutMs = 50;
    settings.Retries = 0;
    OpenClient(settings);
    Blocker blocker;
    const int handle = m_client->RegisterIAMCallback(&blocker);
    m_flooder.Send({m_block.Ip(1), m_block.Port()}, Announcement(5, false));
    while (!blocker.Entered)
        std::this_thread::sleep_for(1ms);
    std::atomic<bool> stop{false};
    std::thread reader([&] { ReadUntil(stop); });
    const auto& dropped = m_client->Transactions().Counters().RequestsDropped;
    for (int i = 0; i < 200 && dropped.Value() < 100; ++i)
        Flood(1000, false);
    EXPECT_GE(dropped.Value(), 100U);
    blocker.Leave = true;
    stop = true;
    reader.join();
    m_client->UnregisterIAMCallback(handle);
    std::vector<std::string> errors;
    for (int i = 0; i < 2000 && errors.empty(); ++i) {
        errors = m_errors->Take();
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(errors, std::vector<std::string>{"Other stations send requests faster than they are taken: some are "
                                               "dropped"});
    for (int i = 0; i < 10; ++i)
        m_flooder.Send({m_block.Ip(1), m_block.Port()}, Announcement(6, false));
    for (int i = 0; i < 2000 && !m_client->FindDev(6); ++i)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(m_client->FindDev(6));
    EXPECT_TRUE(m_errors->Take().empty()) << "once";
}

} // namespace
