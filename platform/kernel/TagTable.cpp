#include "platform/kernel/TagTable.h"

#include "platform/kernel/Text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace {

bool IsType(std::uint16_t type) {
    return type == TAG_TYPE_ANALOG || type == TAG_TYPE_COUNTER || type == TAG_TYPE_TEXT || type == TAG_TYPE_DIGITAL;
}

bool IsName(std::string_view name) {
    return !name.empty() && name.size() < sizeof TagDefinition::name && name.find(':') == std::string_view::npos &&
           !HasControlCharacter(name);
}

bool IsValueOf(std::uint16_t type, const TagValue& value) {
    return std::holds_alternative<std::monostate>(value) ||
           std::holds_alternative<std::string>(value) == (type == TAG_TYPE_TEXT);
}

bool IsSameNumber(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

QLMessage ChangeMessage(std::uint32_t id, double value) {
    QLTagChangeMessage change{};
    change.code = QL_MSG_TAG_CHANGE;
    change.tagId = id;
    QLMessage message;
    std::memcpy(message.data(), &change, sizeof change);
    std::memcpy(message.data() + offsetof(QLTagChangeMessage, value), &value, sizeof value);
    return message;
}

} // namespace

const char* AddTagResultText(AddTagResult result) {
    switch (result) {
    case AddTagResult::Added:
        return "tag added";
    case AddTagResult::BadName:
        return "a tag's name has 1 to 47 bytes, no \":\" and no control characters";
    case AddTagResult::BadType:
        return "unknown tag type";
    case AddTagResult::BadValue:
        return "the value is not of the tag's type";
    case AddTagResult::NameTaken:
        return "there is a tag of this name";
    case AddTagResult::NumberTaken:
        return "the tag's number was given already";
    case AddTagResult::Full:
        return "a station has at most 65535 tags";
    }
    return "";
}

AddTagResult TagTable::Add(const TagSettings& settings, std::uint32_t& id) {
    if (!IsName(settings.name)) {
        return AddTagResult::BadName;
    }
    if (!IsType(settings.type)) {
        return AddTagResult::BadType;
    }
    if (!IsValueOf(settings.type, settings.value)) {
        return AddTagResult::BadValue;
    }
    const std::unique_lock lock(m_lock);
    if (m_byName.count(settings.name) != 0) {
        return AddTagResult::NameTaken;
    }
    const std::size_t number = settings.number ? *settings.number : m_slots.size();
    if (number >= MAX_TAGS) {
        return AddTagResult::Full;
    }
    // A slot without a name was passed over; one with a name is, or was, that tag's, which may come back.
    if (number < m_slots.size()) {
        const Slot& slot = m_slots[number];
        if (!slot.deleted || (!slot.settings.name.empty() && slot.settings.name != settings.name)) {
            return AddTagResult::NumberTaken;
        }
    }
    while (m_slots.size() <= number) {
        m_slots.emplace_back();
    }
    id = static_cast<std::uint32_t>(number);
    Slot& slot = m_slots[number];
    slot.settings = settings;
    slot.settings.number = static_cast<std::uint16_t>(number);
    slot.value = std::exchange(slot.settings.value, {});
    slot.deleted = false;
    m_byName.emplace(slot.settings.name, id);
    return AddTagResult::Added;
}

QLResult TagTable::Remove(std::uint32_t id) {
    const std::unique_lock lock(m_lock);
    QLResult result;
    Slot* slot = FindSlot(id, result);
    if (slot != nullptr) {
        m_byName.erase(slot->settings.name);
        slot->deleted = true;
        slot->value = {};
        slot->subscribers.clear();
    }
    return result;
}

QLResult TagTable::SetNumber(std::uint32_t id, double value) {
    const std::shared_lock lock(m_lock);
    QLResult result;
    Slot* slot = FindSlot(id, result);
    if (slot == nullptr) {
        return result;
    }
    if (slot->settings.type == TAG_TYPE_TEXT) {
        return QL_WRONG_TYPE;
    }
    // The messages are posted under the slot's lock, so that they stand in the queues in the order of the changes.
    const std::lock_guard slotLock(slot->lock);
    const double* old = std::get_if<double>(&slot->value);
    const bool changes = old == nullptr || !IsSameNumber(*old, value);
    slot->value = value;
    if (changes && !slot->subscribers.empty()) {
        const QLMessage message = ChangeMessage(id, value);
        for (const Subscriber& subscriber : slot->subscribers) {
            subscriber.connection->Post(message);
        }
    }
    return QL_OK;
}

QLResult TagTable::SetText(std::uint32_t id, std::string_view text) {
    const std::shared_lock lock(m_lock);
    QLResult result;
    Slot* slot = FindSlot(id, result);
    if (slot == nullptr) {
        return result;
    }
    if (slot->settings.type != TAG_TYPE_TEXT) {
        return QL_WRONG_TYPE;
    }
    const std::lock_guard slotLock(slot->lock);
    slot->value = std::string(text);
    return QL_OK;
}

QLResult TagTable::GetNumber(std::uint32_t id, double& value) const {
    const std::shared_lock lock(m_lock);
    QLResult result;
    const Slot* slot = FindSlot(id, result);
    if (slot == nullptr) {
        return result;
    }
    if (slot->settings.type == TAG_TYPE_TEXT) {
        return QL_WRONG_TYPE;
    }
    const std::lock_guard slotLock(slot->lock);
    const double* number = std::get_if<double>(&slot->value);
    if (number == nullptr) {
        return QL_NO_VALUE;
    }
    value = *number;
    return QL_OK;
}

QLResult TagTable::GetDefinition(std::uint32_t id, TagDefinition& definition) const {
    const std::shared_lock lock(m_lock);
    QLResult result;
    const Slot* slot = FindSlot(id, result);
    if (slot != nullptr) {
        const TagSettings& settings = slot->settings;
        definition = {};
        definition.size = sizeof definition;
        definition.type = settings.type;
        FillBuffer(definition.name, sizeof definition.name, settings.name);
        FillBuffer(definition.description, sizeof definition.description, settings.description);
        FillBuffer(definition.unit, sizeof definition.unit, settings.unit);
        definition.historyEnabled = settings.historyEnabled ? 1 : 0;
        definition.flags = settings.historyCopy ? TAG_FLAG_HISTORY_COPY : 0;
    }
    return result;
}

std::optional<std::uint32_t> TagTable::Find(std::string_view name) const {
    const std::shared_lock lock(m_lock);
    const auto found = m_byName.find(name);
    return found == m_byName.end() ? std::nullopt : std::optional(found->second);
}

std::optional<TagInfo> TagTable::Get(std::uint32_t id) const {
    const std::shared_lock lock(m_lock);
    QLResult result;
    const Slot* slot = FindSlot(id, result);
    if (slot == nullptr) {
        return std::nullopt;
    }
    TagInfo info{id, slot->settings};
    const std::lock_guard slotLock(slot->lock);
    info.settings.value = slot->value;
    return info;
}

std::uint32_t TagTable::Slots() const {
    const std::shared_lock lock(m_lock);
    return static_cast<std::uint32_t>(m_slots.size());
}

bool TagTable::IsEmpty() const {
    const std::shared_lock lock(m_lock);
    return m_byName.empty();
}

QLResult TagTable::Subscribe(std::span<const std::uint32_t> ids, const std::shared_ptr<Connection>& connection) {
    const std::shared_lock lock(m_lock);
    const QLResult result = CheckSubscription(ids);
    if (result != QL_OK) {
        return result;
    }
    for (const std::uint32_t id : ids) {
        Slot& slot = m_slots[id];
        const std::lock_guard slotLock(slot.lock);
        const auto found = FindSubscriber(slot, *connection);
        if (found != slot.subscribers.end()) {
            ++found->times;
        } else {
            slot.subscribers.push_back({connection, 1});
        }
    }
    return QL_OK;
}

QLResult TagTable::Cancel(std::span<const std::uint32_t> ids, const Connection& connection) {
    const std::shared_lock lock(m_lock);
    const QLResult result = CheckSubscription(ids);
    if (result != QL_OK) {
        return result;
    }
    for (const std::uint32_t id : ids) {
        Slot& slot = m_slots[id];
        const std::lock_guard slotLock(slot.lock);
        const auto found = FindSubscriber(slot, connection);
        if (found != slot.subscribers.end() && --found->times == 0) {
            slot.subscribers.erase(found);
        }
    }
    return QL_OK;
}

void TagTable::Forget(std::uint32_t id, const Connection& connection) {
    const std::shared_lock lock(m_lock);
    Slot& slot = m_slots[id];
    const std::lock_guard slotLock(slot.lock);
    const auto found = FindSubscriber(slot, connection);
    if (found != slot.subscribers.end()) {
        slot.subscribers.erase(found);
    }
}

std::vector<TagTable::Subscriber>::iterator TagTable::FindSubscriber(Slot& slot, const Connection& connection) {
    return std::find_if(slot.subscribers.begin(), slot.subscribers.end(),
                        [&](const Subscriber& subscriber) { return subscriber.connection.get() == &connection; });
}

const TagTable::Slot* TagTable::FindSlot(std::uint32_t id, QLResult& result) const {
    if (id >= m_slots.size()) {
        result = QL_NO_SUCH_TAG;
        return nullptr;
    }
    result = m_slots[id].deleted ? QL_DELETED_TAG : QL_OK;
    return result == QL_OK ? &m_slots[id] : nullptr;
}

TagTable::Slot* TagTable::FindSlot(std::uint32_t id, QLResult& result) {
    return const_cast<Slot*>(std::as_const(*this).FindSlot(id, result));
}

QLResult TagTable::CheckSubscription(std::span<const std::uint32_t> ids) const {
    for (const std::uint32_t id : ids) {
        QLResult result;
        const Slot* slot = FindSlot(id, result);
        if (slot == nullptr) {
            return result;
        }
        if (slot->settings.type == TAG_TYPE_TEXT) {
            return QL_WRONG_TYPE; // the message carries a number
        }
    }
    return QL_OK;
}
