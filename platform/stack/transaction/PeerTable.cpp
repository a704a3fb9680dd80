#include "platform/stack/transaction/PeerTable.h"

#include <algorithm>
#include <cstring>

namespace bacnet {

PeerKey PeerKey::Of(const Station& station, const IDataLink& link) {
    PeerKey key;
    const bool remote = station.Network != 0;
    const MacAddress& mac = remote ? station.Remote : station.Mac;
    key.Scope = remote ? station.Network : LOCAL_SCOPE + station.Port;
    key.Length = static_cast<std::uint8_t>(remote ? mac.Length() : link.IdentityLength(mac));
    std::copy_n(mac.Data(), key.Length, key.Octets.begin());
    return key;
}

std::size_t PeerKeyHash::operator()(const PeerKey& key) const {
    static_assert(sizeof(PeerKey) == 24, "no padding, so that three words are the whole key");
    std::uint64_t words[3];
    std::memcpy(words, &key, sizeof(words));
    std::uint64_t hash = 0;
    for (const std::uint64_t word : words) {
        hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

// Another one for each peer: what one has learnt of our ids says nothing of those of the next.
std::uint8_t PeerTable::FirstId(const PeerKey& key) const {
    constexpr unsigned HIGHEST_OCTET = 56;
    return static_cast<std::uint8_t>(((PeerKeyHash{}(key) | 1) * m_idSeed * 0x9E3779B97F4A7C15U) >> HIGHEST_OCTET);
}

PeerTable::Enter PeerTable::Add(const PeerKey& key, Transaction& transaction, Millis now, Waiter* waitForId) {
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    if (m_closed.load(std::memory_order_relaxed))
        return Enter::closed;
    std::unique_ptr<Peer>& peer = shard.Peers[key];
    if (!peer)
        peer = std::make_unique<Peer>(FirstId(key));
    if (!peer->Ids.Take(now, transaction.InvokeId)) {
        if (waitForId != nullptr)
            peer->WaitingForId.push_back(waitForId);
        return Enter::busy;
    }
    transaction.PromptPeer = peer->Prompt;
    peer->Active.push_back(&transaction);
    return Enter::done;
}

void PeerTable::StopWaiting(const PeerKey& key, const Waiter& waiter) {
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    const auto peer = shard.Peers.find(key);
    if (peer == shard.Peers.end())
        return;
    auto& waiting = peer->second->WaitingForId;
    const auto found = std::find(waiting.begin(), waiting.end(), &waiter);
    if (found != waiting.end())
        waiting.erase(found);
}

void PeerTable::Drop(Peer& peer, Transaction& transaction, Millis now, Dispatched& result) {
    const auto found = std::find(peer.Active.begin(), peer.Active.end(), &transaction);
    *found = peer.Active.back();
    peer.Active.pop_back();
    peer.Ids.Free(transaction.InvokeId, now, transaction.NeedsRest() ? now + m_idRestMs : now);
    if (!peer.WaitingForId.empty()) {
        result.Wake[1] = peer.WaitingForId.front();
        peer.WaitingForId.erase(peer.WaitingForId.begin());
    }
}

Transaction* PeerTable::Find(const Peer& peer, std::uint8_t invokeId) {
    const auto found = std::find_if(peer.Active.begin(), peer.Active.end(),
                                    [invokeId](const Transaction* item) { return item->InvokeId == invokeId; });
    return found == peer.Active.end() ? nullptr : *found;
}

bool PeerTable::TakeSegment(const PeerKey& key, std::uint8_t invokeId, Frame& frame, Station& to) {
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    const auto found = shard.Peers.find(key);
    Transaction* const transaction = found == shard.Peers.end() ? nullptr : Find(*found->second, invokeId);
    Apdu segment;
    if (transaction == nullptr || !transaction->TakeSegment(segment))
        return false;
    to = transaction->Peer;
    frame.Clear();
    return frame.Append(segment.Payload) && PrependApdu(frame, segment);
}

PeerTable::Dispatched PeerTable::OnPdu(const PeerKey& key, const Station& from, const Apdu& pdu, Millis now) {
    Dispatched result;
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    const auto found = shard.Peers.find(key);
    if (found == shard.Peers.end())
        return result;
    Peer& peer = *found->second;
    Transaction* const active = Find(peer, pdu.InvokeId);
    if (active == nullptr)
        return result;
    Transaction& transaction = *active;
    if (!transaction.OnPdu(pdu, now, result.Answer))
        return result;
    result.Matched = true;
    // A station behind a router is answered by the way it just used; a local one where it was asked, even when it
    // answers from another port.
    if (result.Answer.Send)
        result.To = from.Network != 0 ? from : transaction.Peer;
    if (transaction.Done()) {
        peer.Prompt = now - transaction.Begun() <= PROMPT_MS;
        Drop(peer, transaction, now, result);
        result.Wake[0] = transaction.Owner->OnFinished(transaction);
    }
    return result;
}

Transaction::Due PeerTable::OnTime(const PeerKey& key, Transaction& transaction, Millis now, Dispatched& result) {
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    if (transaction.Done())
        return Transaction::Due::nothing;
    const Transaction::Due due = transaction.OnTime(now, result.Answer);
    result.To = transaction.Peer;
    result.Deadline = transaction.Deadline();
    Peer& peer = *shard.Peers.find(key)->second;
    if (due != Transaction::Due::nothing)
        peer.Prompt = false;
    if (due == Transaction::Due::finished)
        Drop(peer, transaction, now, result);
    return due;
}

bool PeerTable::GiveUp(const PeerKey& key, Transaction& transaction, Outcome outcome, Millis now, Dispatched& result) {
    Shard& shard = ShardOf(key);
    const std::lock_guard lock(shard.Mutex);
    if (transaction.Done())
        return false;
    // The device is spared the segments that nobody waits for any more, and need not keep those that it has taken.
    if (transaction.Now() == Transaction::State::segmented_confirmation ||
        transaction.Now() == Transaction::State::segmented_request) {
        result.Answer.Send = true;
        result.Answer.Header.Type = PduType::abort;
        result.Answer.Header.InvokeId = transaction.InvokeId;
        result.Answer.Header.Reason = ABORT_OTHER;
        result.To = transaction.Peer;
    }
    transaction.Finish(outcome);
    Drop(*shard.Peers.find(key)->second, transaction, now, result);
    return true;
}

void PeerTable::Redirect(const PeerKey& key, Transaction& transaction, const Station& station) {
    const std::lock_guard lock(ShardOf(key).Mutex);
    transaction.Peer = station;
}

void PeerTable::Close(Outcome outcome, Millis now) {
    m_closed.store(true);
    std::vector<Waiter*> wake;
    for (Shard& shard : m_shards) {
        const std::lock_guard lock(shard.Mutex);
        for (auto& [key, peer] : shard.Peers) {
            while (!peer->Active.empty()) {
                Transaction& transaction = *peer->Active.back();
                Dispatched ended;
                transaction.Finish(outcome);
                Drop(*peer, transaction, now, ended);
                wake.push_back(transaction.Owner->OnFinished(transaction));
                wake.push_back(ended.Wake[1]);
            }
            wake.insert(wake.end(), peer->WaitingForId.begin(), peer->WaitingForId.end());
            peer->WaitingForId.clear();
        }
    }
    for (Waiter* waiter : wake)
        if (waiter != nullptr)
            waiter->Signal();
}

} // namespace bacnet
