// Confirmed and unconfirmed requests (ANSI/ASHRAE 135 clause 5.4, the requesting side) to any number of devices at
// once.
//
// Call blocks; any number of threads may call at once. A caller that waits receives for all: one of the callers waiting
// on a port holds its receive role, reads the socket itself, hands the answers of others to them, and passes the role
// on when it has its own. So a lone caller costs one send and one receive, and no switch of threads. Callers of devices
// that did not answer at once the last time keep away from the role. A background thread for each port receives
// broadcasts, and everything when no caller does.
//
// For one thread with many requests outstanding see AsyncCaller.h.
//
// Answers are matched by peer (remote network and station, or the part of the local MAC that the link calls identity),
// invoke id and service. A retry repeats the invoke id and the octets.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/network/Apdu.h"
#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transaction/AnswerBuffer.h"
#include "platform/stack/transaction/Clock.h"
#include "platform/stack/transaction/Outcome.h"
#include "platform/stack/transaction/Settings.h"

#include <cstdint>
#include <memory>
#include <span>

namespace bacnet {

class AsyncCaller;
class LayerCore;

// A request that another station sent us. Octets are valid until the call returns.
struct RequestIndication {
    Station From;
    BACSTAC_ADDRESS Source{}; // From in the contract's form
    bool Broadcast = false;
    bool Confirmed = false;
    // Service, Payload; InvokeId and the rest when confirmed. A segmented request comes whole, as if it had not been.
    Apdu Header;
};

class IRequestHandler {
public:
    virtual ~IRequestHandler() = default;
    // On a background thread of the layer, never on a caller's. One call at a time for each port. May send, may not
    // call Call (it would wait for itself) nor block for long.
    virtual void OnRequest(const RequestIndication& request) = 0;
};

struct TransactionCounters {
    Counter Malformed;       // not an APDU
    Counter Unmatched;       // answers that nobody waits for: late, doubled, foreign
    Counter Retries;         // requests sent again
    Counter RequestsDropped; // incoming requests beyond the queue's room
};

class TransactionLayer final : public IApduUser {
public:
    // network, with all ports added, clock and handler are borrowed and must outlive the layer. handler may be null:
    // confirmed requests are then rejected as unrecognized and others ignored.
    TransactionLayer(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler = nullptr);
    TransactionLayer(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler,
                     const IClock& clock);
    // Shutdown first; no thread may be in a call any more.
    ~TransactionLayer() override;

    // Starts the background threads.
    void Start();
    // Pending and later calls end with Outcome::shutdown at once; no further call into the handler after the return.
    // Not on a background thread.
    void Shutdown();

    // Sends request (the service's parameters) and waits for the answer. Any thread but a background thread. answer is
    // cleared first. A request that does not fit into one APDU goes in segments when the options say that the device
    // takes them. Lasts at most the timeout times one plus the retries, beside that the settings' RouterWaitMs, and
    // AnswerTimeoutMs when the request is segmented, and again when the answer is.
    CallResult Call(const BACSTAC_ADDRESS& destination, std::uint8_t service, std::span<const std::uint8_t> request,
                    AnswerBuffer& answer, const CallOptions& options = {});

    // Unconfirmed request to a station or, with MacLength 0, a broadcast. Never waits: a station behind an unknown
    // router is reached through a broadcast of its network layer.
    Outcome SendUnconfirmed(const BACSTAC_ADDRESS& destination, std::uint8_t service,
                            std::span<const std::uint8_t> request);
    // Any other PDU, as the serving side sends them.
    bool SendPdu(const Station& destination, const Apdu& header, std::span<const std::uint8_t> payload);

    const TransactionSettings& Settings() const;
    const TransactionCounters& Counters() const;
    NetworkLayer& Network() const;

    void OnApdu(const ApduIndication& indication) override;

private:
    friend class AsyncCaller;
    LayerCore& Core() const;

    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace bacnet
