#include "module/console/TriggerTags.h"

#include "api/bacnet/Log.h"
#include "api/driver/Driver.h"
#include "api/kernel/QLProgramCore.h"
#include "module/console/MessageSink.h"
#include "module/console/Messages.h"

#include <cstring>

CTriggerTable::CTriggerTable(const CTriggerTable& other) {
    *this = other;
}

CTriggerTable& CTriggerTable::operator=(const CTriggerTable& other) {
    if (this == &other)
        return *this;
    const std::scoped_lock lock(m_mutex, other.m_mutex);
    m_names.clear(); // these two point into the map
    m_byTag.clear();
    m_triggers = other.m_triggers;
    for (auto& [tagId, trigger] : m_triggers) {
        m_names.emplace(trigger.name, tagId);
        m_byTag.emplace(tagId, &trigger);
    }
    return *this;
}

CTriggerTable::Map::iterator CTriggerTable::Find(std::string_view name) {
    const auto it = m_names.lower_bound({name, 0});
    return it != m_names.end() && it->first == name ? m_triggers.find(it->second) : m_triggers.end();
}

CTriggerTable::Map::iterator CTriggerTable::FindTriggerTag(const char* name) {
    const std::lock_guard lock(m_mutex);
    return Find(name ? name : "");
}

void CTriggerTable::Remove(IQLProgramCore* kernel, std::uint8_t gate, const char* name) {
    std::uint32_t tagId = 0;
    {
        const std::lock_guard lock(m_mutex);
        const auto it = Find(name);
        if (it == m_triggers.end())
            return;
        tagId = it->first;
    }
    if (kernel)
        kernel->RqGateMsg(gate, 1, &tagId, QL_GATE_CANCEL);
    {
        const std::lock_guard lock(m_mutex);
        const auto it = m_triggers.find(tagId);
        if (it != m_triggers.end() && it->second.name == name) {
            m_names.erase({it->second.name, tagId});
            m_byTag.erase(tagId);
            m_triggers.erase(it);
        }
    }
    LogDebugInfo("BACnet: Info, RegisterTriggerTag(%s), Trigger tag removed", name);
}

bool CTriggerTable::Register(CDriver* driver, IMessageSink& sink, const char* name, const char* tagName,
                             unsigned message, std::int32_t lParam) {
    if (!name)
        name = "";
    IQLProgramCore* const kernel = driver ? &driver->GetKernel() : nullptr;
    const std::uint8_t gate = driver ? driver->GetGateId() : std::uint8_t{0};

    Remove(kernel, gate, name);
    if (!tagName || !*tagName)
        return true;

    std::uint32_t tagId = 0;
    if (!kernel || kernel->GetTagIdByName(gate, tagName, tagId) != QL_OK) {
        LogErr("BACnet: Error, RegisterTriggerTag(%s), Tag %s not found", name, tagName);
        return false;
    }

    std::string owner;
    bool inserted = false;
    {
        const std::lock_guard lock(m_mutex);
        const auto [it, isNew] = m_triggers.try_emplace(tagId, CTriggerTag{name, TRIGGER_START_VALUE, message, lParam});
        inserted = isNew;
        if (inserted) {
            m_names.emplace(it->second.name, tagId);
            m_byTag.emplace(tagId, &it->second);
        } else {
            owner = it->second.name;
        }
    }
    if (!inserted) {
        LogErr("BACnet: Error, RegisterTriggerTag(%s), Tag %s already used for %s", name, tagName, owner.c_str());
        return false;
    }
    LogDebugInfo("BACnet: Info, RegisterTriggerTag(%s), Trigger tag %s inserted", name, tagName);

    // The present value acts before change messages are asked for.
    double value = 0;
    if (kernel->GetTagValue(gate, QL_VALUE_AS_DOUBLE, tagId, value, 0, 0) == QL_OK)
        OnTagChange(sink, tagId, value);

    if (kernel->RqGateMsg(gate, 1, &tagId, QL_GATE_SUBSCRIBE) != QL_OK) {
        LogErr("BACnet: Error, RqGateMsg(%d) for tag %s, failed", static_cast<int>(tagId), tagName);
        return false;
    }
    return true;
}

void CTriggerTable::OnTagChange(IMessageSink& sink, std::uint32_t tagId, double value) {
    std::string name;
    std::uint32_t message = 0;
    std::int32_t lParam = 0;
    const bool isUp = value != 0.0; // also for what is not a number
    {
        const std::lock_guard lock(m_mutex);
        const auto it = m_byTag.find(tagId);
        if (it == m_byTag.end())
            return;
        CTriggerTag& trigger = *it->second;
        const bool wasUp = trigger.value != 0.0;
        trigger.value = value;
        if (isUp == wasUp)
            return;
        name = trigger.name;
        message = trigger.message;
        lParam = trigger.lParam;
    }
    LogDebugInfo(isUp ? "BACnet: Info, Triggering up %s" : "BACnet: Info, Triggering down %s", name.c_str());
    sink.Post(message, isUp ? TRIGGER_UP : TRIGGER_DOWN, lParam);
}

std::vector<std::string> EnumDigitalTags(IQLProgramCore& kernel, std::uint8_t gate) {
    constexpr std::uint32_t LAST_ID =
        0xFFFF; // local ids have 16 bits: an end, should the kernel never say that there is one
    std::vector<std::string> names;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    QLResult status = kernel.OpenTagEnumeration(gate, first, count, 0, 0);
    for (std::uint32_t index = 0; status != QL_NO_SUCH_TAG && index <= LAST_ID; ++index) {
        TagDefinition definition{};
        definition.size = sizeof(definition);
        status = kernel.GetTagDefinition(gate, index, definition);
        if (status == QL_OK && definition.type == TAG_TYPE_DIGITAL)
            names.emplace_back(definition.name, strnlen(definition.name, sizeof(definition.name)));
    }
    return names;
}
