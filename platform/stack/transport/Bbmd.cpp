#include "platform/stack/transport/Bbmd.h"

#include <algorithm>
#include <utility>

namespace bacnet {

namespace {

std::vector<std::uint8_t> ResultOf(BvlcResult result) {
    std::vector<std::uint8_t> octets(6);
    EncodeResult(result, std::span<std::uint8_t, 6>(octets));
    return octets;
}

} // namespace

Bbmd::Bbmd(const BipAddress& self, const BbmdSettings& settings)
    : m_self(self), m_foreignLimit(std::min(settings.ForeignDevices, MAX_TABLE_ENTRIES)),
      m_acceptWrite(settings.AcceptWrite) {
    Put(settings.Table);
}

void Bbmd::Put(std::vector<BdtEntry> table) {
    m_table.clear();
    for (const BdtEntry& entry : table)
        if (m_table.size() < MAX_TABLE_ENTRIES && !InTable(entry.Address))
            m_table.push_back(entry);
    if (InTable(m_self))
        return;
    if (m_table.size() == MAX_TABLE_ENTRIES)
        m_table.pop_back();
    m_table.insert(m_table.begin(), BdtEntry{m_self});
}

bool Bbmd::Serve(const BvllMessage& message, const BipAddress& from, std::int64_t now,
                 std::vector<std::uint8_t>& answer) {
    const std::lock_guard lock(m_lock);
    switch (message.Function) {
    case BvlcFunction::read_bdt:
        answer = message.Payload.empty() ? EncodeBdt(BvlcFunction::read_bdt_ack, m_table)
                                         : ResultOf(BvlcResult::read_bdt_nak);
        return true;
    case BvlcFunction::read_fdt:
        answer = message.Payload.empty() ? EncodeReadFdtAck(ListForeign(now)) : ResultOf(BvlcResult::read_fdt_nak);
        return true;
    case BvlcFunction::write_bdt:
        answer = ResultOf(Write(message.Payload));
        return true;
    case BvlcFunction::register_foreign_device:
        answer = ResultOf(Register(from, message.Payload, now));
        return true;
    case BvlcFunction::delete_fdt_entry:
        answer = ResultOf(Delete(message.Payload));
        return true;
    default:
        return false;
    }
}

BvlcResult Bbmd::Write(std::span<const std::uint8_t> payload) {
    std::vector<BdtEntry> table;
    if (!m_acceptWrite || !DecodeBdt(payload, table) || table.size() > MAX_TABLE_ENTRIES)
        return BvlcResult::write_bdt_nak;
    Put(std::move(table));
    return BvlcResult::success;
}

BvlcResult Bbmd::Register(const BipAddress& device, std::span<const std::uint8_t> payload, std::int64_t now) {
    std::uint16_t timeToLive = 0;
    // A device of the table gets each broadcast already.
    if (!DecodeRegisterForeignDevice(payload, timeToLive) || InTable(device))
        return BvlcResult::register_foreign_device_nak;
    Expire(now);
    const Foreign entry{device, timeToLive, now + timeToLive * std::int64_t{1000} + GRACE};
    const auto known = std::find_if(m_foreign.begin(), m_foreign.end(),
                                    [&device](const Foreign& each) { return each.Address == device; });
    if (known != m_foreign.end())
        *known = entry;
    else if (m_foreign.size() < m_foreignLimit)
        m_foreign.push_back(entry);
    else
        return BvlcResult::register_foreign_device_nak;
    return BvlcResult::success;
}

BvlcResult Bbmd::Delete(std::span<const std::uint8_t> payload) {
    BipAddress device;
    const bool deleted =
        DecodeDeleteFdtEntry(payload, device) &&
        std::erase_if(m_foreign, [&device](const Foreign& each) { return each.Address == device; }) != 0;
    return deleted ? BvlcResult::success : BvlcResult::delete_fdt_entry_nak;
}

bool Bbmd::Targets(Way way, const BipAddress& from, const BipAddress& origin, std::int64_t now,
                   std::vector<BipAddress>& targets) {
    targets.clear();
    const std::lock_guard lock(m_lock);
    Expire(now);
    switch (way) {
    case Way::own_network:
        // Another device of the table on this very network distributes its broadcasts itself.
        if (InTable(from) && from != m_self)
            return false;
        break;
    case Way::table:
        if (!InTable(from))
            return false;
        break;
    case Way::foreign:
        if (std::none_of(m_foreign.begin(), m_foreign.end(),
                         [&from](const Foreign& each) { return each.Address == from; }))
            return false;
        break;
    }
    if (way != Way::table)
        for (const BdtEntry& entry : m_table)
            if (entry.Address != m_self)
                targets.push_back({entry.Address.Ip | ~entry.Mask, entry.Address.Port});
    for (const Foreign& entry : m_foreign)
        if (entry.Address != from && entry.Address != origin)
            targets.push_back(entry.Address);
    return true;
}

bool Bbmd::GetsUnicasts() const {
    const std::lock_guard lock(m_lock);
    const auto self =
        std::find_if(m_table.begin(), m_table.end(), [this](const BdtEntry& entry) { return entry.Address == m_self; });
    return self == m_table.end() || self->Mask == 0xFFFFFFFF;
}

std::vector<BdtEntry> Bbmd::Table() const {
    const std::lock_guard lock(m_lock);
    return m_table;
}

std::vector<FdtEntry> Bbmd::ForeignDevices(std::int64_t now) {
    const std::lock_guard lock(m_lock);
    return ListForeign(now);
}

std::vector<FdtEntry> Bbmd::ListForeign(std::int64_t now) {
    Expire(now);
    std::vector<FdtEntry> entries;
    for (const Foreign& each : m_foreign) {
        const std::int64_t seconds = std::min<std::int64_t>((each.Until - now) / 1000, UINT16_MAX);
        entries.push_back({each.Address, each.TimeToLive, static_cast<std::uint16_t>(seconds)});
    }
    return entries;
}

void Bbmd::Expire(std::int64_t now) {
    std::erase_if(m_foreign, [now](const Foreign& each) { return each.Until <= now; });
}

bool Bbmd::InTable(const BipAddress& address) const {
    return std::any_of(m_table.begin(), m_table.end(),
                       [&address](const BdtEntry& entry) { return entry.Address == address; });
}

} // namespace bacnet
