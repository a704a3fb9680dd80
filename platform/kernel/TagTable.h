// The station's tags: definitions, present values, and the connections that want to know when a value changes. Ids here
// are local: a tag's number, without a station. Any thread may call any operation at any time; changes of different
// tags do not wait for each other.
#pragma once

#include "platform/kernel/Connection.h"
#include "platform/kernel/Tag.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class TagTable {
public:
    // The low half of a tag id holds a number. The last one is left out: 0xFFFFFFFF stands for no tag, and whoever
    // walks the tags by index meets the end before the index reaches the station's half.
    static constexpr std::size_t MAX_TAGS = 0xFFFF;

    AddTagResult Add(const TagSettings& settings, std::uint32_t& id);
    // Leaves a deleted slot. Subscriptions to the tag end without a message.
    QLResult Remove(std::uint32_t id);

    // A change of the value goes to the subscribers, in the order of the changes. Storing the value that is there
    // already (NaN being like NaN, and -0.0 like 0.0) is no change.
    QLResult SetNumber(std::uint32_t id, double value);
    QLResult SetText(std::uint32_t id, std::string_view text);
    QLResult GetNumber(std::uint32_t id, double& value) const;

    QLResult GetDefinition(std::uint32_t id, TagDefinition& definition) const;
    std::optional<std::uint32_t> Find(std::string_view name) const;
    std::optional<TagInfo> Get(std::uint32_t id) const;
    std::uint32_t Slots() const; // one past the last number, deleted slots included
    bool IsEmpty() const;        // true when there is no tag at all

    // All of the tags or none. A connection that subscribes twice has to cancel twice; it gets each message once.
    // Cancelling what was not subscribed does nothing.
    QLResult Subscribe(std::span<const std::uint32_t> ids, const std::shared_ptr<Connection>& connection);
    QLResult Cancel(std::span<const std::uint32_t> ids, const Connection& connection);
    // Ends the subscription however often it was asked for. Tags that are gone are passed over.
    void Forget(std::uint32_t id, const Connection& connection);

private:
    struct Subscriber {
        std::shared_ptr<Connection> connection;
        std::size_t times;
    };
    // settings (but for its value) and deleted change only while the table is locked alone.
    struct Slot {
        TagSettings settings;
        bool deleted = true;
        mutable std::mutex lock;             // taken after the table's, before the queue of a connection
        TagValue value;                      // guarded by lock
        std::vector<Subscriber> subscribers; // guarded by lock
    };

    // Called with the table locked. Null: result says why.
    Slot* FindSlot(std::uint32_t id, QLResult& result);
    const Slot* FindSlot(std::uint32_t id, QLResult& result) const;
    // Called with the slot locked.
    static std::vector<Subscriber>::iterator FindSubscriber(Slot& slot, const Connection& connection);
    QLResult CheckSubscription(std::span<const std::uint32_t> ids) const;

    mutable std::shared_mutex m_lock;
    std::deque<Slot> m_slots;                                     // guarded by m_lock; slots never move
    std::unordered_map<std::string_view, std::uint32_t> m_byName; // guarded by m_lock; the names are the slots'
};
