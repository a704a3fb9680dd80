// What TransactionLayer and AsyncCaller share. Internal to this folder.
#pragma once

#include "platform/stack/transaction/PeerTable.h"
#include "platform/stack/transaction/PortPump.h"
#include "platform/stack/transaction/TransactionLayer.h"

#include <atomic>
#include <memory>
#include <vector>

namespace bacnet {

class LayerCore {
public:
    LayerCore(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler,
              const IClock& clock);

    void Start();
    void Shutdown();
    bool Stopping() const { return m_stopping.load(std::memory_order_relaxed); }

    // What the network layer hands up, on the thread that received.
    void OnApdu(const ApduIndication& indication);

    // Encodes the request's PDU into frame. False: it does not fit.
    static bool BuildRequest(const Transaction& transaction, Frame& frame);
    // Fails a request that can't be sent to this station in one piece.
    bool Fits(const Station& station, std::size_t parameters, std::uint16_t maxApdu) const;
    // The longest answer in one piece that can come from there.
    std::uint16_t MaxAnswer(const Station& station) const;
    bool SendPdu(const Station& destination, const Apdu& header, std::span<const std::uint8_t> payload,
                 bool expectingReply);
    // Before a request is repeated: counts, and looks for a better way to a station behind a router.
    void Resend(const PeerKey& key, Transaction& transaction, const BACSTAC_ADDRESS& destination, Millis now);
    // Without background threads: one tick of each port.
    void ReceiveAll();
    // Sends the reply and wakes those whom a dispatched PDU concerns.
    void Follow(const PeerTable::Dispatched& dispatched);
    // How many datagrams a leader asks for at once: one when nobody else waits, which is cheaper.
    std::size_t ReceiveLimit() const { return InFlight.load(std::memory_order_relaxed) > 1 ? NpduBatch::CAPACITY : 1; }
    PortPump& Pump(std::uint8_t port) { return *m_pumps[port]; }

    NetworkLayer& Network;
    const TransactionSettings Settings;
    const IClock& Clock;
    PeerTable Peers;
    TransactionCounters Counters;
    std::atomic<int> InFlight{0}; // blocking and other calls that wait for answers

private:
    void OnRequest(const Station& source, bool broadcast, std::span<const std::uint8_t> octets);
    void OnUnmatched(const ApduIndication& indication, const Apdu& pdu);

    IRequestHandler* m_handler;
    std::vector<std::unique_ptr<PortPump>> m_pumps; // one for each port, constant
    std::atomic<bool> m_stopping{false};
};

} // namespace bacnet
