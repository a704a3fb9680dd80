#include "platform/stack/transport/TableQueries.h"

namespace bacnet {

TableRead TableQueries::Ask(const BipAddress& station, BvlcFunction function, std::chrono::milliseconds wait,
                            const std::function<bool()>& send, std::vector<std::uint8_t>& payload) {
    Query query{station, BvlcFunction::read_bdt_ack, BvlcResult::read_bdt_nak, TableRead::silent, &payload};
    if (function == BvlcFunction::read_fdt) {
        query.Answer = BvlcFunction::read_fdt_ack;
        query.Nak = BvlcResult::read_fdt_nak;
    }
    std::unique_lock lock(m_lock);
    m_waiting.push_back(&query);
    for (int i = 0; i < TRIES && query.Result == TableRead::silent; ++i) {
        lock.unlock();
        const bool sent = send();
        lock.lock();
        if (!sent && query.Result == TableRead::silent) {
            query.Result = TableRead::failed;
            break;
        }
        m_changed.wait_for(lock, wait, [&query] { return query.Result != TableRead::silent; });
    }
    std::erase(m_waiting, &query);
    return query.Result;
}

bool TableQueries::OnMessage(const BvllMessage& message, const BipAddress& from) {
    const std::lock_guard lock(m_lock);
    bool wanted = false;
    for (Query* query : m_waiting) {
        if (query->Station != from || query->Result != TableRead::silent)
            continue;
        if (message.Function == query->Answer) {
            query->Payload->assign(message.Payload.begin(), message.Payload.end());
            query->Result = TableRead::done;
        } else if (message.Function == BvlcFunction::result &&
                   message.ResultCode == static_cast<std::uint16_t>(query->Nak)) {
            query->Result = TableRead::refused;
        } else {
            continue;
        }
        wanted = true;
    }
    if (wanted)
        m_changed.notify_all();
    return wanted;
}

} // namespace bacnet
