// One confirmed request from the requesting side (ANSI/ASHRAE 135 clause 5.4.4): what to do with each PDU that belongs
// to it, and when time has passed. Pure: says what to send, sends nothing; time is an argument. The lock of its peer
// covers it from the moment the peer table knows it until it is done.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transaction/AnswerBuffer.h"
#include "platform/stack/transaction/AssemblyBudget.h"
#include "platform/stack/transaction/Clock.h"
#include "platform/stack/transaction/Outcome.h"
#include "platform/stack/transaction/Reassembly.h"
#include "platform/stack/transaction/SegmentSender.h"
#include "platform/stack/transaction/Settings.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Transaction;
class Waiter;

class ITransactionOwner {
public:
    virtual ~ITransactionOwner() = default;
    // Under the peer's lock, as the last thing that is done to the transaction: its memory may be gone a moment later.
    // Returns who is to be woken once the lock is released, or null.
    virtual Waiter* OnFinished(Transaction& transaction) = 0;
};

// A header to send to the peer, nothing when Send is false; or segments of the request, which TakeSegment gives.
struct Reply {
    bool Send = false;
    bool Segments = false;
    Apdu Header;
};

class Transaction {
public:
    enum class State : std::uint8_t {
        idle,
        awaiting_confirmation,
        segmented_request,      // segments of the request are on their way; one in one piece does not come here
        segmented_confirmation, // segments of the answer are coming
        done,
    };
    enum class Due : std::uint8_t {
        nothing, // ask again at Deadline()
        resend,  // send the request, or what is left of it, again, with the same invoke id and octets
        finished,
    };

    // answer is borrowed and cleared. The request itself is sent by the owner.
    void Begin(const TransactionSettings& settings, std::uint8_t service, std::span<const std::uint8_t> parameters,
               const CallOptions& options, AnswerBuffer& answer, Millis now);

    // False: the PDU does not belong to this transaction in its present state.
    bool OnPdu(const Apdu& pdu, Millis now, Reply& reply);
    Due OnTime(Millis now, Reply& reply);
    void Finish(Outcome outcome, std::uint8_t reason = 0);

    State Now() const { return m_state; }
    bool Done() const { return m_state == State::done; }
    Millis Begun() const { return m_begun; }
    Millis Deadline() const { return m_deadline; }
    const CallResult& Result() const { return m_result; }
    // Late answers may still come: the invoke id must rest.
    bool NeedsRest() const { return m_resent || !m_result.Answered(); }
    // Octets of the headers of a request, in one piece and in segments (clause 20.1.2).
    static constexpr std::size_t REQUEST_HEADER = 4;
    static constexpr std::size_t SEGMENT_HEADER = 6;
    // Of the longest APDU that carries the request or a part of it.
    std::size_t RequestSize() const {
        return SegmentSize != 0 ? SegmentSize + SEGMENT_HEADER : m_parameters.size() + REQUEST_HEADER;
    }
    // The PDU that carries the request, when that is not segmented.
    Apdu RequestHeader() const;
    // The next segment that is to be sent now; false: none. segment's payload refers to the parameters.
    bool TakeSegment(Apdu& segment);
    std::span<const std::uint8_t> Parameters() const { return m_parameters; }
    std::uint32_t TimeoutMs() const { return m_timeoutMs; } // of one attempt
    // When the owner must ask after the sending at the latest.
    std::uint32_t FirstWaitMs() const { return SegmentSize != 0 ? m_segmentTimeoutMs : m_timeoutMs; }
    // Of all attempts: as long as a request may wait for an invoke id, too.
    Millis Patience() const { return static_cast<Millis>(m_timeoutMs) * (1 + m_retries); }

    // Set by the owner and the peer table.
    ITransactionOwner* Owner = nullptr;
    Station Peer;
    std::uint16_t MaxAnswer = MAX_APDU_IP; // longest APDU that we take from this peer
    std::uint8_t InvokeId = 0;
    bool PromptPeer = false; // set by the peer table alone: the last answer of the peer came at once
    // Set by the owner before Begin.
    std::size_t SegmentSize = 0;      // octets of the parameters that go into one segment; 0: all in one piece
    AssemblyBudget* Budget = nullptr; // of segmented answers; null: no common limit

private:
    bool OnSegment(const Apdu& pdu, Millis now, Reply& reply);
    bool OnSegmentAck(const Apdu& ack, Millis now, Reply& reply);
    void SendFromTheFirst(Millis now);
    bool AwaitsAnswer() const;
    Due OnSegmentTimeout(Millis now, Reply& reply);
    bool Matches(std::span<const std::uint8_t> answer) const;
    void Abort(Outcome outcome, std::uint8_t reason, Reply& reply);

    State m_state = State::idle;
    std::uint8_t m_service = 0;
    std::uint8_t m_retries = 0;
    std::uint8_t m_retriesLeft = 0;
    std::uint8_t m_segmentRetriesLeft = 0;
    std::uint8_t m_window = 1;
    bool m_resent = false;
    std::uint32_t m_timeoutMs = 0;
    std::uint32_t m_segmentTimeoutMs = 0;
    std::uint32_t m_answerTimeoutMs = 0;
    Millis m_begun = 0;
    Millis m_deadline = 0;
    Millis m_requestDeadline = 0; // of a segmented request as a whole
    Millis m_answerDeadline = 0;  // of a segmented answer as a whole
    std::size_t m_budgeted = 0;   // octets that were taken from Budget
    AnswerCheck m_check = nullptr;
    AnswerBuffer* m_answer = nullptr;
    std::span<const std::uint8_t> m_parameters;
    CallResult m_result;
    SegmentSender m_sender;
    Reassembly m_reassembly;
};

} // namespace bacnet
