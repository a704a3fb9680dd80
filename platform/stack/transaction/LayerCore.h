// What TransactionLayer and AsyncCaller share. Internal to this folder.
#pragma once

#include "platform/stack/transaction/PeerTable.h"
#include "platform/stack/transaction/PortPump.h"
#include "platform/stack/transaction/RequestAssembly.h"
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
    // Before Begin: decides how the transaction's request, to its Peer, is sent: in one piece, or in segments of how
    // many octets. False: not at all, it is too long.
    bool Plan(Transaction& transaction, std::size_t parameters, const CallOptions& options);
    // Sends the request of a transaction that the table has; false: the system refused.
    bool SendSegments(const PeerKey& key, std::uint8_t invokeId);
    bool SendPdu(const Station& destination, const Apdu& header, std::span<const std::uint8_t> payload,
                 bool expectingReply);
    // Before a request is sent: the station that it goes to, as far as known. One behind a router that is not known, or
    // that is busy, is waited for until a time that is Settings.RouterWaitMs after the first look.
    enum class Way : std::uint8_t { open, wait, none, invalid };
    Way FindWay(const BACSTAC_ADDRESS& destination, Millis now, Millis until, Station& station);
    // Before a request is repeated: counts, and looks for a better way to a station behind a router. False: a router
    // has said that the request is too long for the way, which the table has a limit for now; it must not be repeated.
    bool Resend(const PeerKey& key, Transaction& transaction, const BACSTAC_ADDRESS& destination, Millis now);
    // Without background threads: one tick of each port.
    void ReceiveAll();
    // Sends the reply and wakes those whom a dispatched PDU concerns.
    void Follow(const PeerTable::Dispatched& dispatched);
    // How many datagrams a leader asks for at once: one when nobody else expects an answer now, which is cheaper.
    std::size_t ReceiveLimit() const { return Expected.load(std::memory_order_relaxed) > 1 ? NpduBatch::CAPACITY : 1; }
    PortPump& Pump(std::uint8_t port) { return *m_pumps[port]; }

    NetworkLayer& Network;
    const TransactionSettings Settings;
    const IClock& Clock;
    PeerTable Peers;
    AssemblyBudget Budget;
    TransactionCounters Counters;
    std::atomic<int> Expected{0}; // calls whose devices are to answer at once

private:
    void OnRequest(const Station& source, bool broadcast, std::span<const std::uint8_t> octets);
    // Takes a segment; true once it has completed the request, whose parameters are then in whole.
    bool OnRequestSegment(const Station& source, const Apdu& segment, std::unique_ptr<AnswerBuffer>& whole);
    void OnUnmatched(const ApduIndication& indication, const Apdu& pdu);

    IRequestHandler* m_handler;
    RequestAssembly m_requests;
    std::vector<std::unique_ptr<PortPump>> m_pumps; // one for each port, constant
    std::atomic<bool> m_stopping{false};
};

} // namespace bacnet
