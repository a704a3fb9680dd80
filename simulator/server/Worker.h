// One server thread: waits for the sockets it is given and serves what comes.
#pragma once

#include "simulator/server/Poller.h"
#include "simulator/server/Site.h"

#include <atomic>
#include <thread>

namespace sim {

class Worker {
public:
    // The site is borrowed and has to outlive the thread.
    explicit Worker(const Site& site);
    ~Worker(); // stops

    // Before Start.
    std::string Open() { return m_poller.Open(); }
    // Also gives this thread what the devices of the endpoint do by themselves.
    std::string Add(Endpoint& endpoint);
    // Makes this thread add one record to every log in that interval. 0: never.
    void AppendRecords(std::uint32_t everyMs) { m_appendEveryMs = everyMs; }

    void Start();
    void Stop(); // waits for the thread

private:
    void Run();
    void Receive(ServerContext& context, Endpoint& endpoint);
    void OnDatagram(ServerContext& context, Endpoint& endpoint, std::span<const std::uint8_t> datagram,
                    const bacnet::BipAddress& from);
    void OnBroadcast(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu);
    void RunTimers(ServerContext& context);
    void RunDevices(ServerContext& context);
    int TimeToWait(std::int64_t nowMs) const;

    const Site& m_site;
    Poller m_poller;
    bacnet::DatagramBatch m_batch;
    FrameSender m_sender;
    TimerQueue m_timers;
    Scratch m_scratch;
    std::uint32_t m_appendEveryMs = 0;
    std::int64_t m_appendAtMs = 0;
    std::vector<DeviceServer*> m_devices;
    std::int64_t m_runAtMs = 0;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace sim
