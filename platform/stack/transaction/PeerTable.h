// Which transactions are outstanding with which peer. Sharded by peer: calls to different devices rarely meet at a
// lock, and no lock is held while anything is sent or waited for.
//
// A peer is entered with the first request to it and stays; what comes from stations that were never asked enters
// nothing.
#pragma once

#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transaction/InvokeIds.h"
#include "platform/stack/transaction/Transaction.h"
#include "platform/stack/transaction/Waiter.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace bacnet {

// A peer's identity: network and station behind a router, or port and the part of the MAC that the link calls identity.
struct PeerKey {
    std::uint32_t Scope = 0; // remote network, or LOCAL_SCOPE + port
    std::uint8_t Length = 0;
    std::array<std::uint8_t, 19> Octets{};

    static constexpr std::uint32_t LOCAL_SCOPE = 0x10000;
    static PeerKey Of(const Station& station, const IDataLink& link);
    friend bool operator==(const PeerKey&, const PeerKey&) = default;
};

struct PeerKeyHash {
    std::size_t operator()(const PeerKey& key) const;
};

class PeerTable {
public:
    enum class Enter : std::uint8_t { done, busy, closed };

    // Who answers within this time answers at once. A transaction learns when it enters whether its peer did so the
    // last time.
    static constexpr Millis PROMPT_MS = IDataLink::TICK;

    // What a PDU has led to. The caller sends Answer to To, then wakes.
    struct Dispatched {
        bool Matched = false;
        Reply Answer; // with Segments set: the caller then sends what TakeSegment gives
        Station To;
        Waiter* Wake[2] = {}; // the owner of a transaction, one who waits for an invoke id
        Millis Deadline = 0;  // OnTime: when to ask again
    };

    // See TransactionSettings.
    explicit PeerTable(std::uint32_t idRestMs, std::uint32_t idSeed = 0) : m_idRestMs(idRestMs), m_idSeed(idSeed) {}
    PeerTable(const PeerTable&) = delete;
    PeerTable& operator=(const PeerTable&) = delete;

    // Gives the transaction, whose Peer and Owner are set, its invoke id; from now on answers reach it. waitForId, if
    // not null, is signalled when an id of a busy peer becomes free; StopWaiting must be called after the wait.
    Enter Add(const PeerKey& key, Transaction& transaction, Millis now, Waiter* waitForId);
    void StopWaiting(const PeerKey& key, const Waiter& waiter);

    Dispatched OnPdu(const PeerKey& key, const Station& from, const Apdu& pdu, Millis now);
    // Takes the next segment of the peer's request with this invoke id, whoever may be its owner: the PDU is put into
    // frame, to is where it goes. False when none is to be sent now. Called again and again by whoever has learnt that
    // there are segments to send; each is handed out once, also when two threads ask.
    bool TakeSegment(const PeerKey& key, std::uint8_t invokeId, Frame& frame, Station& to);
    // Asks the transaction what is due; a finished one has left the table. Owner is not called: it is the owner who
    // asks. One that an answer has ended meanwhile has nothing due.
    Transaction::Due OnTime(const PeerKey& key, Transaction& transaction, Millis now, Dispatched& result);
    // Ends it, without a call of Owner; false when it has ended already.
    bool GiveUp(const PeerKey& key, Transaction& transaction, Outcome outcome, Millis now, Dispatched& result);
    // The way to the peer has changed.
    void Redirect(const PeerKey& key, Transaction& transaction, const Station& station);

    // Ends all with this outcome; nothing enters any more. Owners are called and woken.
    void Close(Outcome outcome, Millis now);

private:
    static constexpr std::size_t SHARDS = 16;

    struct Peer {
        explicit Peer(std::uint8_t firstId) : Ids(firstId) {}
        InvokeIds Ids;
        std::vector<Transaction*> Active;
        std::vector<Waiter*> WaitingForId; // in the order they came
        bool Prompt = false;               // its last answer came within PROMPT_MS of the request
    };
    struct Shard {
        std::mutex Mutex;
        std::unordered_map<PeerKey, std::unique_ptr<Peer>, PeerKeyHash> Peers; // Mutex
    };

    std::uint8_t FirstId(const PeerKey& key) const;
    static Transaction* Find(const Peer& peer, std::uint8_t invokeId);
    Shard& ShardOf(const PeerKey& key) { return m_shards[PeerKeyHash{}(key) % SHARDS]; }
    void Drop(Peer& peer, Transaction& transaction, Millis now, Dispatched& result);

    const std::uint32_t m_idRestMs;
    const std::uint32_t m_idSeed;
    std::atomic<bool> m_closed{false};
    std::array<Shard, SHARDS> m_shards;
};

} // namespace bacnet
