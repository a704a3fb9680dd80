#include "simulator/server/RecentRequests.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::ConfirmedService;

constexpr std::size_t MAX_ENTRIES = 256;

// All others only read, and may be executed as often as they come.
constexpr ConfirmedService CHANGING[] = {
    ConfirmedService::acknowledgeAlarm,      ConfirmedService::subscribeCov,      ConfirmedService::atomicWriteFile,
    ConfirmedService::addListElement,        ConfirmedService::removeListElement, ConfirmedService::createObject,
    ConfirmedService::deleteObject,          ConfirmedService::writeProperty,     ConfirmedService::reinitializeDevice,
    ConfirmedService::writePropertyMultiple,
};

bool Changes(std::uint8_t service) {
    return std::find(std::begin(CHANGING), std::end(CHANGING), static_cast<ConfirmedService>(service)) !=
           std::end(CHANGING);
}

bool SameOctets(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace

const Outcome* RecentRequests::Find(const Requester& from, const bacnet::Apdu& request, std::int64_t nowMs) {
    while (!m_entries.empty() && m_entries.front().UntilMs <= nowMs)
        m_entries.pop_front();
    const auto at = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.InvokeId == request.InvokeId && entry.From == from;
    });
    if (at == m_entries.end())
        return nullptr;
    if (at->Service == request.Service && SameOctets(at->Request, request.Payload))
        return &at->Result;
    m_entries.erase(at);
    return nullptr;
}

void RecentRequests::Keep(const Requester& from, const bacnet::Apdu& request, const Outcome& outcome,
                          std::int64_t nowMs) {
    if (!Changes(request.Service))
        return;
    if (m_entries.size() == MAX_ENTRIES)
        m_entries.pop_front();
    const auto copy = [](std::span<const std::uint8_t> octets) {
        return std::vector<std::uint8_t>(octets.begin(), octets.end());
    };
    Entry& entry = m_entries.emplace_back(Entry{from, request.InvokeId, request.Service, copy(request.Payload),
                                                copy(outcome.Parameters), outcome, nowMs + m_keepMs});
    entry.Result.Parameters = entry.Answer;
    entry.Result.Restarts = false; // that is under way
}

} // namespace sim
